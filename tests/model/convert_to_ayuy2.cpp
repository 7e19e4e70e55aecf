#include "tests/model/count_down.h"
#include "tests/model/lanes.h"
#include "tests/model/models.h"

namespace model {

namespace {

constexpr int group_pixels = 8;

// A little-endian word of the surface.
template <std::size_t bytes>
std::uint32_t load_word(memory &m, address from) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < bytes; ++i)
        word |= std::uint32_t{m.load(from + i)} << (8 * i);
    return word;
}

// How the pixels of a surface lie in memory: as words that are compared with the key, and that are
// widened to the bytes B, G, R and X.
struct rgb32 {
    static constexpr int pixel_bytes = 4;
    static std::uint32_t load(memory &m, address from) { return load_word<4>(m, from); }
    static std::uint32_t key(std::uint32_t color_key) { return color_key; }
    static std::uint32_t widen(std::uint32_t word) { return word; }
};

// Read four bytes at a time.
struct rgb24 {
    static constexpr int pixel_bytes = 3;
    static std::uint32_t load(memory &m, address from) {
        return load_word<4>(m, from) & 0x00ffffff;
    }
    static std::uint32_t key(std::uint32_t color_key) { return color_key; }
    static std::uint32_t widen(std::uint32_t word) { return word; }
};

struct rgb16 {
    static constexpr int pixel_bytes = 2;
    static std::uint32_t load(memory &m, address from) { return load_word<2>(m, from); }
    static std::uint32_t key(std::uint32_t color_key) { return color_key & 0xffff; }
    static std::uint32_t widen(std::uint32_t word) {
        const std::uint32_t r = (word & 0xf800) >> 8, g = (word & 0x07e0) >> 3,
                            b = (word & 0x001f) << 3;
        return r << 16 | g << 8 | b;
    }
};

// In units of 1/1024; X has a factor of 1.
struct weights {
    std::int16_t b, g, r;
    std::uint8_t or_into_x;
};
constexpr weights to_y{100, 516, 263, 16};
constexpr weights to_u{449, -297, -151, 128};
constexpr weights to_v{-72, -376, 449, 128};

std::uint8_t weigh(std::uint32_t bgrx, const weights &w) {
    const auto lane = [=](int number) { return static_cast<int>(bgrx >> (8 * number) & 0xff); };
    const int bg = lane(0) * w.b + lane(1) * w.g;
    const int rx = lane(2) * w.r + (lane(3) | w.or_into_x) * 1024;
    return narrow_saturate(saturate16((bg + rx) >> 10));
}

template <class Surface>
void convert(memory &m, tagMIX_INFO &mix) {
    const int width = m.field(mix.width);
    const int beyond_width = low32(std::int64_t{m.field(mix.sub_pitch)} - width);
    const int surface_increment =
        low32(std::int64_t{m.field(mix.dst_pitch)} - Surface::pixel_bytes * std::int64_t{width});
    const std::uint32_t key = Surface::key(m.field(mix.color_key));

    address surface = address_of(m.field(mix.dst));
    const auto advance = [&](unsigned char *&plane, std::int64_t bytes) {
        m.set_field(plane, reinterpret_cast<unsigned char *>(address_of(m.field(plane)) +
                                                             static_cast<address>(bytes)));
    };
    count_down_to_zero(m.field(mix.height), [&] {
        count_down_to_zero(width >> 3, [&] {
            std::array<std::uint32_t, group_pixels> words;
            bool all_key = true;
            for (int i = 0; i < group_pixels; ++i) {
                words[i] = Surface::load(m, surface + i * Surface::pixel_bytes);
                all_key = all_key && words[i] == key;
            }
            if (!all_key) {
                const auto store = [&](unsigned char *&plane, int every, const weights &w) {
                    const address to = address_of(m.field(plane));
                    for (int i = 0; i < group_pixels; i += every)
                        m.store(to + i / every, weigh(Surface::widen(words[i]), w));
                };
                store(mix.sub_y, 1, to_y);
                store(mix.sub_u, 2, to_u);
                store(mix.sub_v, 2, to_v);
            }
            advance(mix.sub_y, group_pixels);
            advance(mix.sub_u, group_pixels / 2);
            advance(mix.sub_v, group_pixels / 2);
            surface += group_pixels * Surface::pixel_bytes;
        });
        surface += surface_increment;
        advance(mix.alpha_plane, beyond_width);
        advance(mix.sub_y, beyond_width);
        advance(mix.sub_u, static_cast<unsigned>(beyond_width) >> 1);
        advance(mix.sub_v, static_cast<unsigned>(beyond_width) >> 1);
    });
}

} // namespace

void Convert_RGB32_To_AYUY2(memory &m, LUMALANE_PARAMETERS_mix) { convert<rgb32>(m, *mix); }

void Convert_RGB24_To_AYUY2(memory &m, LUMALANE_PARAMETERS_mix) { convert<rgb24>(m, *mix); }

void Convert_RGB16_565_To_AYUY2(memory &m, LUMALANE_PARAMETERS_mix) { convert<rgb16>(m, *mix); }

} // namespace model
