// What portable.h is written with: lanes<T, n>, n lanes of type T, lane 0 the first in memory.
//
// Operators work lane by lane, modulo 2^bits where T is unsigned; comparisons give lanes of all bits
// or none; a number as an operand stands for lanes that all have its value; a cast to lanes of another
// type of the same size keeps the bits.
#pragma once

namespace lumalane::LUMALANE_TARGET_NAME {

// The vectors that compilers have, in whatever registers there are.

template <class T, int n>
struct lanes_of {
    typedef T type __attribute__((vector_size(n * sizeof(T))));
};
template <class T, int n>
using lanes = typename lanes_of<T, n>::type;

// Each lane converted, as an assignment would.
template <class T, int n, class Lanes>
LUMALANE_INLINE lanes<T, n> convert(Lanes a) {
    return __builtin_convertvector(a, lanes<T, n>);
}

// Lanes of `a` where those of `where` have all bits set, of `b` where they have none.
template <class Where, class Lanes>
LUMALANE_INLINE Lanes select(Where where, Lanes a, Lanes b) {
    return where ? a : b;
}

template <int... i>
struct indices {};
template <int n, int... i>
struct indices_below : indices_below<n - 1, n - 1, i...> {};
template <int... i>
struct indices_below<0, i...> : indices<i...> {};

template <class Lanes, class Index, int... i>
LUMALANE_INLINE auto pick_each(Lanes a, Lanes b, Index, indices<i...>) {
    return __builtin_shufflevector(a, b, Index{}(i)...);
}

// `count` lanes, of which the i-th is the index(i)-th of those of `a` and then of `b`.
template <int count, class Lanes, class Index>
LUMALANE_INLINE auto pick(Lanes a, Lanes b, Index index) {
    return pick_each(a, b, index, indices_below<count>{});
}

} // namespace lumalane::LUMALANE_TARGET_NAME
