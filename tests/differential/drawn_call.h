// One call with its arguments drawn at random, ready to be made on a model or on a function, with
// its buffers anywhere in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/differential/random.h"
#include "tests/functions.h"
#include "tests/model/memory.h"

namespace differential {

// A place in one of the buffers of a call. Several pointers of a call may lie in one buffer: then
// they share memory.
struct spot {
    std::size_t buffer;
    std::ptrdiff_t offset;
};

// Where the buffers of a call lie in one run: the address of the offset 0 of each.
struct placement {
    std::vector<model::address> origins;

    template <class T = unsigned char>
    T *at(spot s) const {
        return reinterpret_cast<T *>(origins[s.buffer] + s.offset);
    }
};

// Bytes from an offset in a buffer on.
struct patch {
    std::ptrdiff_t at;
    std::vector<std::uint8_t> bytes;
};

struct buffer {
    const char *name;
    // A record has a size that counts as a whole, and is filled here after its random bytes; its
    // pointers lie where the placement says.
    std::size_t record_size = 0;
    std::function<void(void *record, const placement &)> fill = {};
    // What it holds in the place of random bytes, the latest on top. What decides on the footprint
    // has to be here.
    std::vector<patch> patches = {};
};

struct drawn_call {
    std::string arguments; // for people; see tell()
    std::vector<buffer> buffers;
    contrast_data contrast; // set before the call
    std::function<void(model::memory &, const placement &)> on_model;
    std::function<void(const tests::function_table &, const placement &)> on_function;

    // Adds a buffer; returns its number.
    std::size_t add(buffer b) {
        buffers.push_back(std::move(b));
        return buffers.size() - 1;
    }

    // Describes an argument.
    void tell(const char *name, const std::string &value) {
        arguments += (arguments.empty() ? "" : ", ") + std::string(name) + ' ' + value;
    }
    void tell(const char *name, long long value) { tell(name, std::to_string(value)); }
    void tell(const char *name, spot place) {
        tell(name, buffers[place.buffer].name + std::string(place.offset < 0 ? "" : "+") +
                       std::to_string(place.offset));
    }
    void tell_bits(const char *name, unsigned bits) {
        char text[16];
        std::snprintf(text, sizeof text, "0x%08x", bits);
        tell(name, text);
    }

    // Makes the call out of the tuple of arguments that `arguments_at` gives for a placement.
    template <class Model, class Function, class Arguments>
    void call(Model on_this_model, Function tests::function_table::*on_this,
              Arguments arguments_at) {
        on_model = [=](model::memory &m, const placement &places) {
            std::apply(on_this_model, std::tuple_cat(std::tie(m), arguments_at(places)));
        };
        on_function = [=](const tests::function_table &functions, const placement &places) {
            std::apply(functions.*on_this, arguments_at(places));
        };
    }
};

// A function that exists, by its name, and how its calls are drawn.
struct subject {
    const char *name;
    drawn_call (*draw)(random &);
};
const std::vector<subject> &subjects();

// How GoogleTest shows it as the parameter of a test.
inline void PrintTo(const subject &s, std::ostream *out) { *out << s.name; }

} // namespace differential
