#include <bit>

#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"

namespace model {

namespace {

// Groups of 16 pixels, each a number of patterns, of two rows: of the upper one, then of the lower.
template <std::size_t pattern_bytes>
void fill(memory &m, const std::array<std::uint8_t, pattern_bytes> &pattern, int pixel_bytes,
          void *surface, int width, int height, int pitch) {
    if (height == 0)
        return;
    const int group_bytes = 16 * pixel_bytes;
    const int increment = low32(2 * std::int64_t{pitch} - pixel_bytes * std::int64_t{width});
    address to = address_of(surface);
    count_down(height, 2, [&] {
        count_down(width, 16, [&] {
            for (const address row : {to, to + pitch})
                for (int at = 0; at < group_bytes; at += pattern_bytes)
                    m.store_run(row + at, pattern);
            to += group_bytes;
        });
        to += increment;
    });
}

std::array<std::uint8_t, 8> bytes_of(std::uint64_t word) {
    return std::bit_cast<std::array<std::uint8_t, 8>>(word);
}

} // namespace

void LoadColorKeyRgb32(memory &m, LUMALANE_PARAMETERS_key_fill) {
    const std::uint64_t k = key;
    fill(m, bytes_of(k | k << 32), 4, surface, width, height, pitch);
}

// Three words that are not in phase with one another.
void LoadColorKeyRgb24(memory &m, LUMALANE_PARAMETERS_key_fill) {
    const std::uint64_t k = key;
    const std::array<std::uint64_t, 3> words = {
        k >> 8 | k << 16 | k << 40,
        k >> 16 | k << 8 | k << 32 | k << 56,
        k | k << 24 | k << 48,
    };
    fill(m, std::bit_cast<std::array<std::uint8_t, 24>>(words), 3, surface, width, height, pitch);
}

void LoadColorKeyRgb16(memory &m, LUMALANE_PARAMETERS_key_fill) {
    const std::uint64_t k = key & 0xffff;
    fill(m, bytes_of(k | k << 16 | k << 32 | k << 48), 2, surface, width, height, pitch);
}

void RelaceMaskWithColorKey(memory &m, LUMALANE_PARAMETERS_mask) {
    const int increment = low32(std::int64_t{pitch} - width);
    address to = address_of(dst);
    address test = address_of(mask);
    count_down_to_zero(height, [&] {
        count_down(width, 16, [&] {
            const auto tested = m.load_run<16>(test);
            auto merged = m.load_run<16>(to);
            for (int i = 0; i < 16; ++i)
                if (tested[i] == (mask_value & 0xff))
                    merged[i] = static_cast<std::uint8_t>(key_value);
            m.store_run(to, merged);
            to += 16;
            test += 16;
        });
        to += increment;
        test += increment;
    });
}

} // namespace model
