// The probe of the lane set that this file is being compiled for. An operation that the vocabulary
// gains is one more line of add_operations() or add_weavings().
#include "tests/lanes/probe.h"

#include "frame/sinks.h"

namespace lumalane::LUMALANE_LANES {

namespace {

// ---- Vectors in memory -------------------------------------------------------------------------

template <class T>
constexpr tests::lane_type type_of;
template <int n>
constexpr tests::lane_type type_of<bytes<n>> = {1, n};
template <int n>
constexpr tests::lane_type type_of<words<n>> = {2, n};
template <>
constexpr tests::lane_type type_of<short> = {2, 1};

template <class T>
struct in_memory {
    static T load(const unsigned char *from) {
        T value;
        __builtin_memcpy(&value, from, sizeof value);
        return value;
    }
    static void store(unsigned char *to, T value) { __builtin_memcpy(to, &value, sizeof value); }
};

// May be smaller in memory than the register.
template <int n>
struct in_memory<bytes<n>> {
    static bytes<n> load(const unsigned char *from) { return LUMALANE_LANES::load<n>(from); }
    static void store(unsigned char *to, bytes<n> value) { LUMALANE_LANES::store(to, value); }
};

template <class T>
T load_next(const unsigned char *&from) {
    const unsigned char *const here = from;
    from += type_of<T>.bytes_per_lane * type_of<T>.lanes;
    return in_memory<T>::load(here);
}

// ---- Operations --------------------------------------------------------------------------------

// Constructed from operands in braces, which are evaluated in their order.
template <class Operation, class Result>
struct outcome {
    Result result;

    template <class... Operands>
    explicit outcome(Operands... operands) : result(Operation{}(operands...)) {}
};

template <class Operation, class Result, class... Operands>
void run_operation(unsigned char *to, const unsigned char *from) {
    in_memory<Result>::store(to, outcome<Operation, Result>{load_next<Operands>(from)...}.result);
}

template <class Entry, int capacity>
constexpr void append(tests::table<Entry, capacity> &to, const Entry &entry) {
    to.entry[to.size++] = entry;
}

// Adds operations given as lambdas without captures, whose types tell everything else.
struct operation_adder {
    tests::probe &probe;

    template <class Operation>
    constexpr void operator()(const char *name, Operation, int immediate = 0) const {
        add(name, immediate, &Operation::operator());
    }

private:
    template <class Operation, class Result, class... Operands>
    constexpr void add(const char *name, int immediate,
                       Result (Operation::*)(Operands...) const) const {
        append(probe.operations, {name,
                                  immediate,
                                  type_of<Result>,
                                  sizeof...(Operands),
                                  {type_of<Operands>...},
                                  run_operation<Operation, Result, Operands...>});
    }
};

template <int first, int last, class Body>
constexpr void for_each_count(Body body) {
    body.template operator()<first>();
    if constexpr (first < last)
        for_each_count<first + 1, last>(body);
}

template <int n>
constexpr void add_stream(tests::probe &probe) {
    append(probe.operations, {"stream, stream_fence",
                              0,
                              {1, n},
                              1,
                              {{1, n}},
                              [](unsigned char *to, const unsigned char *from) {
                                  stream(to, load<n>(from));
                                  stream_fence();
                              }});
}

// On vectors of n bytes.
template <int n>
constexpr void add_operations(tests::probe &probe) {
    using b = bytes<n>;
    using half = bytes<n / 2>;
    using w = words<n / 2>;
    const operation_adder add_one{probe};

    add_one("load, store", [](b a) { return a; });
    add_stream<n>(probe);

    add_one("fill_words", [](short value) { return fill_words<n / 2>(value); });
    add_one("fill_bytes", [](short value) { return fill_bytes<n>(value); });
    add_one("add", [](w x, w y) { return add(x, y); });
    add_one("subtract", [](w x, w y) { return subtract(x, y); });
    add_one("add_saturate", [](w x, w y) { return add_saturate(x, y); });
    add_one("maximum", [](w x, w y) { return maximum(x, y); });
    add_one("multiply_low", [](w x, w y) { return multiply_low(x, y); });
    add_one("multiply_high", [](w x, w y) { return multiply_high(x, y); });
    if constexpr (requires(w x) { multiply_rounded(x, x); }) // sets may do without
        add_one("multiply_rounded", [](w x, w y) { return multiply_rounded(x, y); });
    for_each_count<1, 15>([&]<int count>() {
        add_one(
            "shift_left", [](w a) { return shift_left<count>(a); }, count);
        add_one(
            "shift_right_logical", [](w a) { return shift_right_logical<count>(a); }, count);
    });
    for_each_count<1, 7>([&]<int count>() {
        add_one(
            "shift_left", [](b a) { return shift_left<count>(a); }, count);
        add_one(
            "shift_right_logical", [](b a) { return shift_right_logical<count>(a); }, count);
    });
    add_one("operator&", [](b x, b y) { return x & y; });
    add_one("operator|", [](b x, b y) { return x | y; });

    add_one("widen", [](half a) { return widen(a); });
    add_one("widen_low", [](b a) { return widen_low(a); });
    add_one("widen_high", [](b a) { return widen_high(a); });
    add_one("even", [](b a) { return even(a); });
    add_one("odd", [](b a) { return odd(a); });
    for_each_count<0, 6>([&]<int count>() {
        constexpr int factor = 1 << count;
        add_one(
            "even_times", [](b a) { return even_times<factor>(a); }, factor);
        add_one(
            "odd_times", [](b a) { return odd_times<factor>(a); }, factor);
    });
    add_one("narrow_saturate", [](w x, w y) { return narrow_saturate(x, y); });
    add_one("narrow_saturate", [](w a) { return narrow_saturate(a); });
}

// ---- Pixels ------------------------------------------------------------------------------------

// Channels of n pixels, ready to be woven in `parts`, from n samples or from n / 2 for two pixels
// each.
template <int parts, int n>
struct pixels {
    static constexpr int samples = n;

    static bytes<n> load(const unsigned char *from) {
        const bytes<n> a = load_pixels<parts, n>(from);
        return narrow_saturate(even(a), odd(a));
    }
};

template <int parts, int n>
struct chroma {
    static constexpr int samples = n / 2;

    static bytes<n> load(const unsigned char *from) {
        const words<n / 2> a = load_chroma<parts, n / 2>(from);
        return narrow_saturate(a, a);
    }
};

template <class Weave, class Channel, int n, int... plane>
void run_weaving(unsigned char *to, const unsigned char *from) {
    put_parts<cached>(to, Weave{}(Channel::load(from + plane * Channel::samples)...));
}

template <int parts, int n, int... plane, class Weave>
constexpr void add_weaving(tests::probe &probe, const char *of_pixels, const char *of_chroma,
                           Weave) {
    using luma = pixels<parts, n>;
    using shared = chroma<parts, n>;
    append(probe.weavings, {of_pixels, sizeof...(plane), luma::samples, n, parts,
                            run_weaving<Weave, luma, n, plane...>});
    append(probe.weavings, {of_chroma, sizeof...(plane), shared::samples, n, parts,
                            run_weaving<Weave, shared, n, plane...>});
}

// Of n pixels.
template <int n>
constexpr void add_weavings(tests::probe &probe) {
    using b = bytes<n>;
    add_weaving<2, n, 0, 1>(probe, "load_pixels, weave", "load_chroma, weave",
                            [](b x, b y) { return weave(x, y); });
    add_weaving<3, n, 0, 1, 2>(probe, "load_pixels, weave", "load_chroma, weave",
                               [](b x, b y, b z) { return weave(x, y, z); });
    add_weaving<4, n, 0, 1, 2>(probe, "load_pixels, weave_padded", "load_chroma, weave_padded",
                               [](b x, b y, b z) { return weave_padded(x, y, z); });
}

template <int n>
void pack_rgb16(unsigned char *to, const unsigned char *from, unsigned layout) {
    with_rgb16_layout(layout, [&](auto sink) {
        using channel = pixels<2, n>;
        const rgb_pixels<n / 2> colours = {channel::load(from), channel::load(from + n),
                                           channel::load(from + 2 * n)};
        sink.template row<cached>(to, colours, chroma_terms<n / 2>{});
    });
}

// ---- All of it ---------------------------------------------------------------------------------

// Portable vectors come in any width, so that there is a definition for every other set.
template <int n>
concept has_vectors_of = requires {
    sizeof(bytes<n>);
};

template <int n>
constexpr void add_width(tests::probe &probe) {
    if constexpr (has_vectors_of<n>)
        add_operations<n>(probe);
    if constexpr (n <= widest) {
        add_weavings<n>(probe);
        append(probe.rgb16_packings, {n, pack_rgb16<n>});
    }
}

constexpr tests::probe make_probe() {
    tests::probe probe{};
    operation_adder{probe}("load, store", [](bytes<8> a) { return a; });
    add_width<16>(probe);
    add_width<32>(probe);
    add_width<64>(probe);
    static_assert(widest <= 64);
    return probe;
}

} // namespace

extern constinit const tests::probe probe;
constinit const tests::probe probe = make_probe();

} // namespace lumalane::LUMALANE_LANES
