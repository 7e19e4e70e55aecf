// The probe of the target that this file is being compiled for: the one list of the operations that
// are compared. What the vocabulary gains is one more line of add_operations() or
// add_interleavings(), or one more way to load a channel.
//
// Nothing finds out whether an operation is missing here. It need not: whatever an operation does
// with the operands that row kernels give it is compared by row_kernels_test.cpp, which knows them
// all. This probe adds the operands that kernels do not come by.
#include "tests/simd/probe.h"

#include "rows/rgb.h"

namespace lumalane::LUMALANE_TARGET_NAME {

namespace {

// ---- Vectors in memory -------------------------------------------------------------------------

template <class T>
struct in_memory;

// May be smaller in memory than in the register.
template <int n>
struct in_memory<bytes<n>> {
    static constexpr tests::vector_type type = {1, n};
    static bytes<n> load(const unsigned char *from) { return LUMALANE_TARGET_NAME::load<n>(from); }
    static void store(unsigned char *to, bytes<n> value) { LUMALANE_TARGET_NAME::store(to, value); }
};

template <class T, int lanes>
struct words_in_memory {
    static constexpr tests::vector_type type = {2, lanes};
    static T load(const unsigned char *from) {
        T value;
        __builtin_memcpy(&value, from, sizeof value);
        return value;
    }
    static void store(unsigned char *to, T value) { __builtin_memcpy(to, &value, sizeof value); }
};
template <int n>
struct in_memory<words<n>> : words_in_memory<words<n>, n> {};
template <>
struct in_memory<short> : words_in_memory<short, 1> {};

template <class T>
T load_next(const unsigned char *&from) {
    const unsigned char *const here = from;
    from += in_memory<T>::type.bytes_per_lane * in_memory<T>::type.lanes;
    return in_memory<T>::load(here);
}

// ---- Operations --------------------------------------------------------------------------------

// Constructed from operands in braces, which are evaluated in their order.
struct call {
    template <class Operation, class... Operands>
    call(Operation operation, Operands... operands) {
        operation(operands...);
    }
};

template <class Operation, class Result, class... Operands>
void run_operation(unsigned char *to, const unsigned char *from) {
    const auto store_result = [to](Operands... operands) {
        in_memory<Result>::store(to, Operation{}(operands...));
    };
    call{store_result, load_next<Operands>(from)...};
}

template <class Entry, int capacity>
constexpr void append(tests::table<Entry, capacity> &to, const Entry &entry) {
    to.entry[to.size++] = entry;
}

// Adds operations given as lambdas without captures, whose types tell everything else.
struct operation_adder {
    tests::probe &probe;

    template <class Operation>
    constexpr void operator()(const char *name, Operation) const {
        add(name, 0, &Operation::operator());
    }
    template <class Operation>
    constexpr void operator()(const char *name, int immediate, Operation) const {
        add(name, immediate, &Operation::operator());
    }

private:
    template <class Operation, class Result, class... Operands>
    constexpr void add(const char *name, int immediate,
                       Result (Operation::*)(Operands...) const) const {
        append(probe.operations, {name,
                                  immediate,
                                  in_memory<Result>::type,
                                  sizeof...(Operands),
                                  {in_memory<Operands>::type...},
                                  run_operation<Operation, Result, Operands...>});
    }
};

template <int first, int last, class Body>
constexpr void for_each_count(Body body) {
    body.template operator()<first>();
    if constexpr (first < last)
        for_each_count<first + 1, last>(body);
}

// An operation on memory: of so many bytes, to so many.
template <int bytes_in, int bytes_out, class Operation>
constexpr void add_on_memory(tests::probe &probe, const char *name, Operation operation) {
    append(probe.operations, {name, 0, {1, bytes_out}, 1, {{1, bytes_in}}, operation});
}

// On single vectors of n bytes, of which targets have some that are no more than half a block.
template <int n>
constexpr void add_byte_operations(tests::probe &probe) {
    using b = bytes<n>;
    using memory = unsigned char *;
    using source = const unsigned char *;
    const operation_adder add_one{probe};

    add_one("load, store", [](b a) { return a; });
    add_on_memory<4 * n, n>(probe, "load_channel<4, 0>",
                            [](memory to, source from) { store(to, load_channel<4, 0, n>(from)); });
    add_on_memory<3 * n, n>(probe, "load_channel<3, 2>",
                            [](memory to, source from) { store(to, load_channel<3, 2, n>(from)); });
    add_on_memory<2 * n, n>(probe, "load_even",
                            [](memory to, source from) { store(to, load_even<n>(from)); });
    add_on_memory<2 * n, n>(probe, "load_odd",
                            [](memory to, source from) { store(to, load_odd<n>(from)); });
    add_on_memory<2 * n, n>(probe, "load_averages",
                            [](memory to, source from) { store(to, load_averages<n>(from)); });
    add_one("lower_half", [](b a) { return lower_half(a); });
    if constexpr (n > 8)
        add_one("upper_half", [](b a) { return upper_half(a); });
    add_one("average", [](b x, b y) { return average(x, y); });
    add_one("all_zero", [](b a) { return short{all_zero(a)}; });
    if constexpr (n == 8) {
        add_one("extend", [](b a) { return lower_half(extend(a)); });
        add_one("interleave_lower", [](b x, b y) { return interleave_lower(x, y); });
    }
    add_one("blend", [](b below, b above, b weight) { return blend(below, above, weight).low; });
    if constexpr (n > 8)
        add_one("blend, upper half",
                [](b below, b above, b weight) { return blend(below, above, weight).high; });
}

// From and to memory, of n bytes a vector.
template <int n>
constexpr void add_memory_operations(tests::probe &probe) {
    using memory = unsigned char *;
    using source = const unsigned char *;
    add_on_memory<n, n>(probe, "stream, stream_fence", [](memory to, source from) {
        stream(to, load<n>(from));
        stream_fence();
    });
    for_each_count<2, 4>([&]<int size>() {
        add_on_memory<n, size * n>(probe, "load_spread", [](memory to, source from) {
            store_all<cached>(to, load_spread<size, n>(from));
        });
    });
    for_each_count<3, 4>([&]<int size>() {
        add_on_memory<size * n / 2, 2 * n>(
            probe, "load_half_interleaved", [](memory to, source from) {
                const half_interleaved<n> pixels = load_half_interleaved<size, n>(from);
                store(to, as_bytes(pixels.bg));
                store(to + n, as_bytes(pixels.rx));
            });
    });
}

// On vectors of n bytes, and between them and words.
template <int n>
constexpr void add_operations(tests::probe &probe) {
    using b = bytes<n>;
    using half = bytes<n / 2>;
    using w = words<n / 2>;
    const operation_adder add_one{probe};

    add_byte_operations<n>(probe);
    add_memory_operations<n>(probe);

    add_one("fill_words", [](short value) { return fill_words<n / 2>(value); });
    add_one("fill_word_pairs", [](short x, short y) { return fill_word_pairs<n / 2>(x, y); });
    add_one("fill_bytes", [](short value) { return fill_bytes<n>(value); });
    add_one("add", [](w x, w y) { return add(x, y); });
    add_one("subtract", [](w x, w y) { return subtract(x, y); });
    add_one("add_saturate", [](w x, w y) { return add_saturate(x, y); });
    if constexpr (n == 16) // of one block alone
        add_one("add_saturate_unsigned", [](w x, w y) { return add_saturate_unsigned(x, y); });
    add_one("maximum", [](w x, w y) { return maximum(x, y); });
    add_one("minimum", [](w x, w y) { return minimum(x, y); });
    add_one("multiply_low", [](w x, w y) { return multiply_low(x, y); });
    if constexpr (requires(w x) { multiply_high(x, x); }) // targets have one of the two
        add_one("multiply_high", [](w x, w y) { return multiply_high(x, y); });
    if constexpr (requires(w x) { multiply_high_doubled(x, x); })
        add_one("multiply_high_doubled", [](w x, w y) { return multiply_high_doubled(x, y); });
    add_one("multiply_high_unsigned", [](w x, w y) { return multiply_high_unsigned(x, y); });
    add_one("multiply_bytes<1, 3>", [](w a) { return multiply_bytes<1, 3>(a); });
    add_one("multiply_bytes<25, 129>", [](w a) { return multiply_bytes<25, 129>(a); });
    add_one("multiply_bytes<-18, -94>", [](w a) { return multiply_bytes<-18, -94>(a); });
    add_one("multiply_bytes<112, -75>", [](w a) { return multiply_bytes<112, -75>(a); });
    if constexpr (requires(w x) { multiply_rounded(x, x); }) // targets may do without
        // The least number squared is out of range.
        add_one("multiply_rounded", [](w x, w y) {
            return multiply_rounded(x, maximum(y, fill_words<n / 2>(-32767)));
        });
    if constexpr (requires(b x, w y) { amplify(x, x, y); })
        add_one("amplify", [](b x, b gain, w offset) { return amplify(x, gain, offset); });
    for_each_count<1, 15>([&]<int count>() {
        add_one("shift_left", count, [](w a) { return shift_left<count>(a); });
        add_one("shift_right_logical", count, [](w a) { return shift_right_logical<count>(a); });
        add_one("shift_right_arithmetic", count,
                [](w a) { return shift_right_arithmetic<count>(a); });
    });
    for_each_count<1, 7>([&]<int count>() {
        add_one("shift_left", count, [](b a) { return shift_left<count>(a); });
        add_one("shift_right_logical", count, [](b a) { return shift_right_logical<count>(a); });
    });
    add_one("operator&", [](b x, b y) { return x & y; });
    add_one("operator|", [](b x, b y) { return x | y; });
    add_one("operator&", [](w x, w y) { return x & y; });
    add_one("operator|", [](w x, w y) { return x | y; });
    add_one("equal", [](b x, b y) { return equal(x, y); });
    add_one("equal", [](w x, w y) { return equal(x, y); });
    add_one("in_1_to_127", [](b a) { return in_1_to_127(a); });
    add_one("choose", [](b where, b x, b y) { return choose(in_1_to_127(where), x, y); });
    add_one("choose_equal", [](b where, b x, b y) {
        return choose_equal(where & fill_bytes<n>(3), fill_bytes<n>(2), x, y);
    });
    if constexpr (requires(b x) { all(x); }) // targets may do without
        add_one("all", [](b x, b y) { return short{all(equal(x, y))}; });
    add_one("are_at", [](b x, b y) {
        unsigned char at[2 * n];
        store(at, x), store(at + n, y);
        const auto same = [&](b first, b second) {
            return are_at(at, vectors<2, n>{{first, second}});
        };
        return static_cast<short>(same(x, y) + 2 * same(x, x) + 4 * same(y, y));
    });
    add_one("all_in_1_to_127", [](b a) { return short{all_in_1_to_127(a)}; });
    add_one("all_in_1_to_127",
            [](b x, b y) { return short{all_in_1_to_127(equal(x, y) & fill_bytes<n>(1))}; });
    if constexpr (requires(w x) { average(x, x); }) // targets may do without
        add_one("average", [](b x, b y) { return average(even(x), even(y)); });
    add_one("absolute_difference", [](b x, b y) { return absolute_difference(x, y); });
    add_one("groups_above", [](b a) { return groups_above(a, 512); });
    add_one("groups_above", 32, [](b a) { return groups_above(a & fill_bytes<n>(15), 32); });

    add_one("as_words", [](b a) { return as_words(a); });
    add_one("as_bytes", [](w a) { return as_bytes(a); });
    add_one("load_halves", [](half x, half y) {
        unsigned char memory[n];
        store(memory, x);
        store(memory + n / 2, y);
        return load_halves<n>(memory, memory + n / 2);
    });
    add_one("widen", [](half a) { return widen(a); });
    add_one("widen_low", [](b a) { return widen_low(a); });
    add_one("widen_high", [](b a) { return widen_high(a); });
    if constexpr (requires(b x) { widen_low(x, x), widen_high(x, x); }) { // targets may do without
        add_one("widen_low", [](b whole, b fraction) { return widen_low(whole, fraction); });
        add_one("widen_high", [](b whole, b fraction) { return widen_high(whole, fraction); });
    }
    add_one("weighted_low", 1, [](b x, b y) { return weighted_low<1>(x, y); });
    add_one("weighted_low", 5, [](b x, b y) { return weighted_low<5>(x, y); });
    add_one("weighted_low", 63, [](b x, b y) { return weighted_low<63>(x, y); });
    add_one("weighted_high", 1, [](b x, b y) { return weighted_high<1>(x, y); });
    add_one("weighted_high", 5, [](b x, b y) { return weighted_high<5>(x, y); });
    add_one("weighted_high", 63, [](b x, b y) { return weighted_high<63>(x, y); });
    add_one("even", [](b a) { return even(a); });
    add_one("odd", [](b a) { return odd(a); });
    for_each_count<0, 6>([&]<int count>() {
        constexpr int factor = 1 << count;
        add_one("even_times", factor, [](b a) { return even_times<factor>(a); });
        add_one("odd_times", factor, [](b a) { return odd_times<factor>(a); });
        add_one("pairs_times", factor, [](b a) { return pairs_times<factor>(a); });
        add_one("odd_and_even_times", factor,
                [](b x, b y) { return odd_and_even_times<factor>(x, y); });
    });
    add_one("narrow_saturate", [](w x, w y) { return narrow_saturate(x, y); });
    if constexpr (n == 16) // of one block alone
        add_one("narrow_saturate", [](w a) { return narrow_saturate(a); });
    add_one("narrow_interleaved", [](w x, w y) { return narrow_interleaved(x, y); });
    add_one("join", [](b x, b y) { return join(even(x), odd(y)); });
    add_one("average_neighbours", [](b a) { return average_neighbours(a); });
    add_one("average_neighbour_pairs", [](b a) { return average_neighbour_pairs(a); });
    add_one("second_pairs", [](b a) { return second_pairs(a); });
    add_one("half_interleave", [](w a) { return half_interleave(a); });
    add_one("even_pairs_of_words", [](w x, w y) { return even_pairs_of_words(x, y); });
    add_one("deinterleave_upper_bytes", [](w x, w y) { return deinterleave_upper_bytes(x, y); });
    add_one("deinterleave_upper_bytes_of_even", 0,
            [](w x, w y) { return deinterleave_upper_bytes_of_even(x, y).lower; });
    add_one("deinterleave_upper_bytes_of_even", 1,
            [](w x, w y) { return deinterleave_upper_bytes_of_even(x, y).upper; });
    add_one("next_lanes", [](b a) { return next_lanes(a); });
    if constexpr (n == 16)
        add_one("lower_halves", [](b x, b y) { return lower_halves(x, y); });
    else
        add_one("even_bytes_in_second_8", [](b a) { return even_bytes_in_second_8(a); });
}

// ---- Pixels ------------------------------------------------------------------------------------

// One channel of n pixels, permuted for `count`, in every way that a source may have it.

template <int count, int n>
struct from_pixels {
    static constexpr const char *loaded_by = "load_permuted";
    static constexpr int samples = n;
    static int sample_of(int pixel) { return pixel; }
    static bytes<n> load(const unsigned char *from) { return load_permuted<count, n>(from); }
};

template <int n>
struct from_even {
    static constexpr const char *loaded_by = "load_even";
    static constexpr int samples = 2 * n;
    static int sample_of(int pixel) { return 2 * pixel; }
    static bytes<n> load(const unsigned char *from) { return load_even<n>(from); }
};

template <int n>
struct from_odd {
    static constexpr const char *loaded_by = "load_odd";
    static constexpr int samples = 2 * n;
    static int sample_of(int pixel) { return 2 * pixel + 1; }
    static bytes<n> load(const unsigned char *from) { return load_odd<n>(from); }
};

template <int count, int n>
struct from_chroma {
    static constexpr const char *loaded_by = "load_chroma_permuted";
    static constexpr int samples = n / 2;
    static int sample_of(int pixel) { return pixel / 2; }
    static bytes<n> load(const unsigned char *from) {
        const words<n / 2> a = load_chroma_permuted<count, n / 2>(from);
        return join(a, a);
    }
};

template <int count, int n>
struct from_pairs {
    static constexpr const char *loaded_by = "load_pairs_permuted";
    static constexpr int samples = n;
    static int sample_of(int pixel) { return pixel / 2 + pixel % 2 * (n / 2); }
    static bytes<n> load(const unsigned char *from) {
        return load_pairs_permuted<count, n>(from, from + n / 2);
    }
};

template <int count, int n>
struct from_vector {
    static constexpr const char *loaded_by = "permuted";
    static constexpr int samples = n;
    static int sample_of(int pixel) { return pixel; }
    static bytes<n> load(const unsigned char *from) {
        return permuted<count>(LUMALANE_TARGET_NAME::load<n>(from));
    }
};

// Luma and chroma of packed pixels, even and odd ones apart.
template <int count, int n>
struct from_packed_luma {
    static constexpr const char *loaded_by = "load_packed";
    static constexpr int samples = 2 * n;
    static int sample_of(int pixel) { return 2 * pixel; }
    static bytes<n> load(const unsigned char *from) {
        const packed_pixels<n> p = load_packed<count, n>(from);
        return narrow_saturate(even(p.even), even(p.odd));
    }
};

template <int count, int n>
struct from_packed_chroma : from_packed_luma<count, n> {
    static int sample_of(int pixel) { return 2 * pixel + 1; }
    static bytes<n> load(const unsigned char *from) {
        const packed_pixels<n> p = load_packed<count, n>(from);
        return narrow_saturate(odd(p.even), odd(p.odd));
    }
};

template <class Source>
auto load_channel(const unsigned char *&from) {
    const unsigned char *const here = from;
    from += Source::samples;
    return Source::load(here);
}

template <class Interleave, class Source, class... Channels>
void run_interleaving(unsigned char *to, const unsigned char *from) {
    call{Interleave{}, to, Channels(load_channel<Source>(from))...};
}

template <class Source, int count, int n, class Interleave, class... Channels>
constexpr void add_interleaving(tests::probe &probe, const char *name, int left_out,
                                void (Interleave::*)(unsigned char *, Channels...) const) {
    append(probe.interleavings,
           {Source::loaded_by, name, sizeof...(Channels), Source::samples, Source::sample_of, n,
            count, left_out, run_interleaving<Interleave, Source, Channels...>});
}

// Adds what interleaves channels into `count` vectors, given as lambdas without captures that store
// the result.
template <int count, int n, int permuted_for = count>
struct interleaving_adder {
    tests::probe &probe;

    template <class Interleave>
    constexpr void operator()(const char *name, Interleave) const {
        add_each<Interleave>(name, 0);
    }
    template <class Interleave>
    constexpr void operator()(const char *name, int left_out, Interleave) const {
        add_each<Interleave>(name, left_out);
    }

private:
    template <class Interleave>
    constexpr void add_each(const char *name, int left_out) const {
        add<from_pixels<permuted_for, n>>(name, left_out, &Interleave::operator());
        if constexpr (permuted_for == 1) {
            add<from_even<n>>(name, left_out, &Interleave::operator());
            add<from_odd<n>>(name, left_out, &Interleave::operator());
        }
        add<from_chroma<permuted_for, n>>(name, left_out, &Interleave::operator());
        if constexpr (permuted_for <= 2)
            add<from_pairs<permuted_for, n>>(name, left_out, &Interleave::operator());
        add<from_vector<permuted_for, n>>(name, left_out, &Interleave::operator());
    }

    template <class Source, class Run>
    constexpr void add(const char *name, int left_out, Run run) const {
        add_interleaving<Source, count, n>(probe, name, left_out, run);
    }
};

// The same of split pixels with pairs in packed order.
template <int count, int n, int permuted_for = count>
struct packed_interleaving_adder {
    tests::probe &probe;

    template <class Interleave>
    constexpr void operator()(const char *name, Interleave) const {
        add_interleaving<from_packed_luma<permuted_for, n>, count, n>(probe, name, 0,
                                                                      &Interleave::operator());
        add_interleaving<from_packed_chroma<permuted_for, n>, count, n>(probe, name, 0,
                                                                        &Interleave::operator());
    }
};

// As interleave_channels() wants it.
template <int n>
bytes<n> split(bytes<n> channel) {
    return narrow_saturate(even(channel), odd(channel));
}

// Of n pixels.
template <int n>
constexpr void add_interleavings(tests::probe &probe) {
    using b = bytes<n>;
    using memory = unsigned char *;
    const interleaving_adder<1, n> add_in_1{probe};
    const interleaving_adder<2, n> add_in_2{probe};
    const interleaving_adder<3, n> add_in_3{probe};
    const interleaving_adder<4, n> add_in_4{probe};
    const interleaving_adder<4, n, padded_parts<n>> add_padded{probe};

    packed_interleaving_adder<2, n>{probe}("interleave_channels", [](memory to, b x, b y) {
        store_all<cached>(to, interleave_channels<packed_order>(x, y));
    });
    packed_interleaving_adder<3, n>{probe}("interleave_channels", [](memory to, b x, b y, b z) {
        store_all<cached>(to, interleave_channels<packed_order>(x, y, z));
    });
    packed_interleaving_adder<4, n, padded_parts<n>>{probe}(
        "interleave_channels_padded", [](memory to, b x, b y, b z) {
            store_all<cached>(to, interleave_channels_padded<packed_order>(x, y, z));
        });

    add_in_1("store", [](memory to, b x) { store(to, x); });
    add_in_2("interleave_channels", [](memory to, b x, b y) {
        store_all<cached>(to, interleave_channels(split(x), split(y)));
    });
    add_in_2("interleave", [](memory to, b x, b y) { store_all<cached>(to, interleave(x, y)); });
    if constexpr (widest_with_gaps<n> == n)
        add_in_2("interleave, store_after_8", 8,
                 [](memory to, b x, b y) { store_after_8(to, interleave(x, y)); });
    add_in_3("interleave_channels", [](memory to, b x, b y, b z) {
        store_all<cached>(to, interleave_channels(split(x), split(y), split(z)));
    });
    add_padded("interleave_channels_padded", [](memory to, b x, b y, b z) {
        store_all<cached>(to, interleave_channels_padded(split(x), split(y), split(z)));
    });
    add_in_4("interleave, interleave_pairs", [](memory to, b x, b y, b z, b w) {
        const vectors<2, n> xy = interleave(x, y), zw = interleave(z, w);
        store_all<cached>(to, interleave_pairs(xy.part[0], zw.part[0]));
        store_all<cached>(to + 2 * n, interleave_pairs(xy.part[1], zw.part[1]));
    });
}

template <int n, class Pixels>
void pack(unsigned char *to, const unsigned char *from) {
    const auto channel = [&](int plane) {
        return split(load_permuted<permuted_for<Pixels, n>, n>(from + plane * n));
    };
    store_all<cached>(to,
                      Pixels::interleaved(rgb_pixels<n / 2>{channel(0), channel(1), channel(2)}));
}

template <int n>
void pack_rgb16(unsigned char *to, const unsigned char *from, unsigned layout) {
    constexpr void (*of_layouts[])(unsigned char *, const unsigned char *) = {
        pack<n, rgb16<5, 6, 5>>, pack<n, rgb16<5, 5, 5>>, pack<n, rgb16<6, 6, 4>>,
        pack<n, rgb16<6, 5, 5>>};
    of_layouts[layout](to, from);
}

// ---- All of it ---------------------------------------------------------------------------------

// Portable vectors come in any width, so that there is a definition for every other target.
template <int n>
concept has_vectors_of = requires {
    sizeof(bytes<n>);
};

template <int n>
constexpr void add_width(tests::probe &probe) {
    if constexpr (has_vectors_of<n>)
        add_operations<n>(probe);
    if constexpr (n <= widest) {
        add_interleavings<n>(probe);
        append(probe.rgb16_packings, {n, pack_rgb16<n>});
    }
}

constexpr tests::probe make_probe() {
    tests::probe probe{};
    add_byte_operations<8>(probe);
    add_width<16>(probe);
    add_width<32>(probe);
    add_width<64>(probe);
    static_assert(widest <= tests::widest_vector);
    probe.streams = streams;
    return probe;
}

} // namespace

extern constinit const tests::probe probe;
constinit const tests::probe probe = make_probe();

} // namespace lumalane::LUMALANE_TARGET_NAME
