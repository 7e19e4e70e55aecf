// The vector operations of every target are those of the first one, which defines them, for operands
// of all kinds; and samples that were loaded permuted come out interleaved in memory order.
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "tests/differential/random.h"
#include "tests/proofs.h"
#include "tests/simd/probe.h"
#include "tests/targets.h"

namespace {

using tests::operation, tests::probe_of;

int size_of(tests::vector_type type) { return type.bytes_per_lane * type.lanes; }

// ---- Operations by their declaration -----------------------------------------------------------

std::string to_string(tests::vector_type type) {
    return (type.bytes_per_lane == 1 ? "bytes<" : "words<") + std::to_string(type.lanes) + ">";
}

// As in "words<8> shift_left<3>(words<8>)".
std::string declaration(const operation &o) {
    std::string text = to_string(o.result) + ' ' + o.name;
    if (o.immediate != 0)
        text += '<' + std::to_string(o.immediate) + '>';
    text += '(';
    for (int i = 0; i < o.operands; ++i)
        text += (i == 0 ? "" : ", ") + to_string(o.operand[i]);
    return text + ')';
}

const operation *definition_of(const operation &o) {
    for (const operation &defined : probe_of(*lumalane::targets().begin()).operations)
        if (declaration(defined) == declaration(o))
            return &defined;
    return nullptr;
}

// ---- One operation and its definition ----------------------------------------------------------

std::string hexadecimal(const unsigned char *bytes, int count) {
    std::string text;
    char byte[4];
    for (int i = 0; i < count; ++i) {
        std::snprintf(byte, sizeof byte, " %02x", bytes[i]);
        text += byte;
    }
    return text;
}

// Up to four vectors in and out.
struct operands {
    unsigned char memory[4 * tests::widest_vector];
};

class results {
public:
    results(const operation &o, const operands &in) : size(size_of(o.result) + untouched) {
        std::memset(memory, 0xa5, size);
        o.run(memory, in.memory);
    }

    bool operator==(const results &other) const {
        return std::memcmp(memory, other.memory, size) == 0;
    }

    std::string hexadecimal() const { return ::hexadecimal(memory, size); }

private:
    static constexpr int untouched = 16; // behind the result
    int size;
    alignas(tests::widest_vector) unsigned char memory[4 * tests::widest_vector + untouched];
};

constexpr int interesting_bytes[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,   9,
                                     10, 11, 12, 13, 14, 15, 16, 17, 128, 255};
constexpr int interesting_words[] = {
    0,      1,      2,      3,      63,     64,     127,    128,    255,    256,    1023,   0x3fff,
    0x4000, 0x7ffe, 0x7fff, 0x8000, 0x8001, 0xbfff, 0xc000, 0xff00, 0xff01, 0xff80, 0xfffe, 0xffff};

class comparison {
public:
    comparison(const operation &o, const operation &defined) : tested(o), definition(defined) {
        if (tested.operands == 1)
            at_words();
        else
            at_interesting_words();
        if (tested.operands < 3)
            at_byte_pairs(0);
        else
            for (const int third : interesting_bytes)
                at_byte_pairs(third);
        at_single_bits();
        at_random();
    }

    int inputs = 0;
    std::optional<operands> difference; // the first

private:
    // Every word in every lane; where less is to be proven, every third one, another third in each lane.
    void at_words() {
        operands in;
        for (int word = 0; word < 65536; word += seldom ? 3 : 1) {
            for (int lane = 0; lane < words_of(0); ++lane)
                set_word(in, 0, lane, word + lane * 0x1235);
            compare(in);
        }
    }

    // Every pair of bytes: one in the first operand, one in the second. Of an only operand, in
    // neighbouring words.
    void at_byte_pairs(int third) {
        operands in;
        const bool one = tested.operands == 1;
        const int pairs = one ? (words_of(0) + 1) / 2 : words_of(0);
        if (tested.operands > 2)
            for (int lane = 0; lane < words_of(2); ++lane)
                set_word(in, 2, lane, third * 0x0101);
        for (int first_pair = 0; first_pair < 65536; first_pair += pairs) {
            for (int i = 0; i < pairs; ++i) {
                const int pair = first_pair + i;
                set_word(in, 0, one ? 2 * i : i, pair % 256 * 0x0101);
                set_word(in, one ? 0 : 1, one ? 2 * i + 1 : i, pair / 256 % 256 * 0x0101);
            }
            compare(in);
        }
    }

    // Zeros, and every single bit.
    void at_single_bits() {
        operands in{};
        compare(in);
        for (unsigned char &byte : in.memory) {
            for (int bit = 0; bit < 8; ++bit) {
                byte = static_cast<unsigned char>(1 << bit);
                compare(in);
            }
            byte = 0;
        }
    }

    // Every word in the first operand, interesting ones in the others.
    void at_interesting_words() {
        operands in;
        for (const int other : interesting_words) {
            for (int i = 1; i < tested.operands; ++i)
                for (int lane = 0; lane < words_of(i); ++lane)
                    set_word(in, i, lane, other);
            for (int word = 0; word < 65536; word += words_of(0)) {
                for (int lane = 0; lane < words_of(0); ++lane)
                    set_word(in, 0, lane, word + lane);
                compare(in);
            }
        }
    }

    void at_random() {
        for (int i = 0; i < (seldom ? 2000 : 10000); ++i)
            compare(random_operands());
    }

    void compare(const operands &in) {
        ++inputs;
        if (results(tested, in) != results(definition, in) && !difference)
            difference = in;
    }

    operands random_operands() {
        operands drawn;
        for (unsigned char &byte : drawn.memory)
            byte = static_cast<unsigned char>(random.next());
        return drawn;
    }

    int words_of(int operand) const { return size_of(tested.operand[operand]) / 2; }

    void set_word(operands &in, int operand, int index, int value) const {
        unsigned char *at = in.memory + 2 * index;
        for (int i = 0; i < operand; ++i)
            at += size_of(tested.operand[i]);
        at[0] = static_cast<unsigned char>(value);
        at[1] = static_cast<unsigned char>(value >> 8);
    }

    const operation &tested, &definition;
    const bool seldom = tests::wanted_proofs() == tests::proofs::some;
    differential::random random{1};
};

std::string report(const operation &tested, const operation &definition, const operands &in) {
    std::string text;
    const unsigned char *operand = in.memory;
    for (int i = 0; i < tested.operands; operand += size_of(tested.operand[i]), ++i)
        text += "\n        of" + hexadecimal(operand, size_of(tested.operand[i]));
    return text + "\n        is" + results(tested, in).hexadecimal() + "\ninstead of" +
           results(definition, in).hexadecimal();
}

// ---- The tests ---------------------------------------------------------------------------------

std::vector<const lumalane::target *> targets_to_compare() {
    std::vector<const lumalane::target *> targets = tests::runnable_targets();
    std::erase(targets, lumalane::targets().begin());
    return targets;
}

class operations_test : public testing::TestWithParam<const lumalane::target *> {};

TEST_P(operations_test, are_those_of_the_first_target) {
    int operations = 0;
    long long inputs = 0;
    for (const operation &tested : probe_of(*GetParam()).operations) {
        const operation *const definition = definition_of(tested);
        ASSERT_NE(definition, nullptr) << declaration(tested);
        const comparison compared(tested, *definition);
        if (compared.difference)
            ADD_FAILURE() << declaration(tested)
                          << report(tested, *definition, *compared.difference);
        ++operations;
        inputs += compared.inputs;
        EXPECT_GT(compared.inputs, 0) << declaration(tested);
    }
    EXPECT_GT(operations, 0);
    std::printf("%s: %d operations, %lld inputs\n", GetParam()->name, operations, inputs);
}

// A processor may run nothing but the first target.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(operations_test);
INSTANTIATE_TEST_SUITE_P(targets, operations_test, testing::ValuesIn(targets_to_compare()),
                         [](const auto &target) { return target.param->name; });

class interleavings_test : public tests::on_each_target {};

TEST_P(interleavings_test, come_out_in_memory_order) {
    constexpr unsigned char untouched = 0xa5;
    differential::random random(1);
    const auto &interleavings = probe_of(*GetParam()).interleavings;
    ASSERT_GT(interleavings.size, 0);
    for (const tests::interleaving &w : interleavings)
        for (int i = 0; i < 1000; ++i) {
            std::vector<unsigned char> planes(w.channels * w.samples);
            for (unsigned char &sample : planes)
                sample = static_cast<unsigned char>(random.next());
            const int size = w.pixels * w.bytes_per_pixel;
            std::vector<unsigned char> expected(size + 64, untouched), interleaved = expected;
            for (int at = 0; at < size; ++at) {
                const int pixel = at / w.bytes_per_pixel, channel = at % w.bytes_per_pixel;
                if (at % 32 >= w.left_out)
                    expected[at] =
                        channel < w.channels ? planes[channel * w.samples + w.sample_of(pixel)] : 0;
            }
            w.run(interleaved.data(), planes.data());
            ASSERT_EQ(interleaved, expected)
                << w.loaded_by << ", " << w.interleaved_by << ", " << w.pixels << " pixels of "
                << w.bytes_per_pixel << " bytes";
        }
}

INSTANTIATE_ON_EACH_TARGET(interleavings_test);

} // namespace
