// Runs calls drawn at random on a function and on its model and compares every byte.
//
// Each case is run three times: with margins around what the model touches; cut to exactly that and
// laid against unmapped memory at its end; and at its start. What the model does not touch at all
// is unmapped.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/differential/drawn_call.h"

namespace differential {

// The functions under test, under a name.
struct target {
    tests::function_table functions;
    std::function<void()> select = [] {}; // called before each call of a function
    std::string how = "";                 // it is run, for the line that reports a failure
};

struct options {
    std::uint64_t seed = 1;
    unsigned first = 0;    // number of the first case
    unsigned cases = 2000; // how many are run
};

// Reads --seed N, --first N and --cases N. Returns false, and says why on standard error, if there
// is anything else.
bool parse(int argc, char **argv, options &);

struct outcome {
    unsigned cases = 0;   // on which every target agreed with the model
    unsigned redrawn = 0; // thrown away because they did not fit their buffers
    // Of functions, not of models; and bytes that were compared after them.
    unsigned long long calls = 0, bytes = 0;
    std::string failure; // the first disagreement and how to reproduce it; empty if there is none
};

// Runs cases of one function on every target, up to the first disagreement. A fault ends the
// program, after a line on standard error that says which case it was.
outcome run(const subject &, const std::vector<target> &, const options &);

// Runs one case as it is drawn; a call that does not fit its buffers is not made.
outcome run(const subject &, const std::vector<target> &, random &);

// The case that runs and what it runs on, for whoever reports a fault.
std::string what_runs();

} // namespace differential
