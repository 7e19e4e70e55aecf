// What portable.h is written with: lanes<T, n>, n lanes of type T, lane 0 the first in memory.
//
// Operators work lane by lane, modulo 2^bits where T is unsigned; comparisons give lanes of all bits
// or none; a number as an operand stands for lanes that all have its value; a cast to lanes of another
// type of the same size keeps the bits.
#pragma once

namespace lumalane::LUMALANE_TARGET_NAME {

#ifndef __OPTIMIZE_SIZE__

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

#else

// The same in loops, which are small: where there are no vector registers, compilers make code for
// each lane of a vector, and twice as much in all.

#undef LUMALANE_INLINE
#define LUMALANE_INLINE inline
#undef LUMALANE_INLINE_LAMBDA
#define LUMALANE_INLINE_LAMBDA

template <class T, int n>
struct lanes {
    T lane[n];

    lanes() = default;
    lanes(int value) { // NOLINT: as with the compilers' vectors, numbers need no cast
        for (T &each : lane)
            each = static_cast<T>(value);
    }

    template <class U, int m>
    explicit operator lanes<U, m>() const {
        static_assert(sizeof(lanes<U, m>) == sizeof *this);
        lanes<U, m> r;
        __builtin_memcpy(&r, this, sizeof r);
        return r;
    }

    T operator[](int i) const { return lane[i]; }

    template <class Operation>
    static lanes each(const lanes &a, const lanes &b, Operation operation) {
        lanes r;
        for (int i = 0; i < n; ++i)
            r.lane[i] = static_cast<T>(operation(a.lane[i], b.lane[i]));
        return r;
    }

    friend lanes operator+(const lanes &a, const lanes &b) {
        return each(a, b, [](unsigned x, unsigned y) { return x + y; });
    }
    friend lanes operator-(const lanes &a, const lanes &b) {
        return each(a, b, [](unsigned x, unsigned y) { return x - y; });
    }
    friend lanes operator*(const lanes &a, const lanes &b) {
        return each(a, b, [](unsigned x, unsigned y) { return x * y; });
    }
    friend lanes operator&(const lanes &a, const lanes &b) {
        return each(a, b, [](unsigned x, unsigned y) { return x & y; });
    }
    friend lanes operator|(const lanes &a, const lanes &b) {
        return each(a, b, [](unsigned x, unsigned y) { return x | y; });
    }
    friend lanes operator^(const lanes &a, const lanes &b) {
        return each(a, b, [](unsigned x, unsigned y) { return x ^ y; });
    }
    friend lanes operator~(const lanes &a) { return a ^ ~0; }
    friend lanes operator<<(const lanes &a, int count) {
        return each(a, count, [](unsigned x, unsigned by) { return x << by; });
    }
    friend lanes operator>>(const lanes &a, int count) {
        return each(a, count, [](T x, T by) { return x >> by; });
    }
    friend lanes operator<(const lanes &a, const lanes &b) {
        return each(a, b, [](T x, T y) { return x < y ? ~0 : 0; });
    }
    friend lanes operator>(const lanes &a, const lanes &b) { return b < a; }
    friend lanes operator==(const lanes &a, const lanes &b) {
        return each(a, b, [](T x, T y) { return x == y ? ~0 : 0; });
    }
};

template <class T, int n, class From>
lanes<T, n> convert(const lanes<From, n> &a) {
    lanes<T, n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = static_cast<T>(a.lane[i]);
    return r;
}

template <class T, class U, int n>
lanes<U, n> select(const lanes<T, n> &where, const lanes<U, n> &a, const lanes<U, n> &b) {
    lanes<U, n> r;
    for (int i = 0; i < n; ++i)
        r.lane[i] = where.lane[i] ? a.lane[i] : b.lane[i];
    return r;
}

template <int count, class T, int n, class Index>
lanes<T, count> pick(const lanes<T, n> &a, const lanes<T, n> &b, Index index) {
    lanes<T, count> r;
    for (int i = 0; i < count; ++i)
        r.lane[i] = index(i) < n ? a.lane[index(i)] : b.lane[index(i) - n];
    return r;
}

#endif

} // namespace lumalane::LUMALANE_TARGET_NAME
