// The loops of the functions: the body runs before the test.
#pragma once

namespace model {

// Counts down by `step` for as long as the count was above the step before. The body runs at least
// once, and a count that is not a multiple of the step is rounded up.
template <class Body>
void count_down(int from, unsigned step, Body body) {
    unsigned count = from;
    unsigned before;
    do {
        body();
        before = count;
        count -= step;
    } while (before > step);
}

// Counts down by 1 to zero. The body runs at least once; a count of 0 runs around the 32-bit range.
template <class Body>
void count_down_to_zero(int from, Body body) {
    unsigned count = from;
    do
        body();
    while (--count != 0);
}

// The same with a signed count: for as long as what is left is above zero.
template <class Body>
void count_down_signed(int from, int step, Body body) {
    int left = from;
    do {
        body();
        left -= step;
    } while (left > 0);
}

// For as long as anything at all is left: the count has to be a multiple of the step.
template <class Body>
void count_down_exactly(int from, int step, Body body) {
    int left = from;
    do {
        body();
        left -= step;
    } while (left != 0);
}

} // namespace model
