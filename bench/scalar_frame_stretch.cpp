// strech_opt_yuy2_ajust() as one would write it down, for progressive frames: what all the work per
// pixel costs without vectors.
#include "bench/library.h"
#include "bench/peers.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace lumalane::bench {
namespace {

int average(int a, int b) { return (a + b + 1) >> 1; }

unsigned char adjusted(int sample, int gain, int offset) {
    return (unsigned char)std::clamp(((sample * gain + 32) >> 6) + offset, 0, 255);
}

// The sample between two rows in the direction of the smallest cost.
int between_in_direction(const unsigned char *upper, const unsigned char *lower) {
    int best = 0, best_cost = 1 << 16;
    for (int direction = 0; direction < 5; ++direction) {
        const int shift = direction - 2;
        int cost = 0;
        for (int k = 0; k < 4; ++k)
            cost += std::abs(upper[shift + k] - lower[k - shift]);
        if (cost < best_cost)
            best = shift, best_cost = cost;
    }
    return average(upper[best], lower[-best]);
}

// Between two rows of samples: along edges but for `margin` samples at both ends.
void row_between(const unsigned char *upper, const unsigned char *lower, unsigned char *to,
                 int count, int margin) {
    constexpr int group = 4, alike = 32;
    for (int x = 0; x < count; x += group) {
        int difference = 0;
        for (int i = 0; i < group; ++i)
            difference += std::abs(upper[x + i] - lower[x + i]);
        const bool plain = difference <= alike || x < margin || x >= count - margin;
        for (int i = x; i < x + group; ++i)
            to[i] = (unsigned char)(plain ? average(upper[i], lower[i])
                                          : between_in_direction(upper + i, lower + i));
    }
}

class frame_stretch {
public:
    explicit frame_stretch(scene &s)
        : scene_(s), luma_(s.width), u_(s.width / 2), v_(s.width / 2) {}

    void operator()() {
        const scene &s = scene_;
        const int pairs = s.height / 2, half = s.src_pitch / 2;
        for (int pair = 0; pair < pairs; ++pair) {
            const bool last = pair == pairs - 1;
            const unsigned char *const y = s.y.data() + std::ptrdiff_t(2) * pair * s.src_pitch;
            const unsigned char *const u = s.u.data() + std::ptrdiff_t(pair) * half;
            const unsigned char *const v = s.v.data() + std::ptrdiff_t(pair) * half;
            unsigned char *const to = s.dst.data() + std::ptrdiff_t(4) * pair * s.dst_pitch;
            const unsigned char *const next = y + s.src_pitch;
            put_row(to, y, u, v);
            row_between(y, next, luma_.data(), s.width, 16);
            put_row(to + s.dst_pitch, luma_.data(), u, v);
            if (last) {
                put_row(to + 2 * s.dst_pitch, next, u, v);
                put_row(to + 3 * s.dst_pitch, next, u, v);
                break;
            }
            row_between(u, u + half, u_.data(), s.width / 2, 8);
            row_between(v, v + half, v_.data(), s.width / 2, 8);
            put_row(to + 2 * s.dst_pitch, next, u_.data(), v_.data());
            row_between(next, next + s.src_pitch, luma_.data(), s.width, 16);
            put_row(to + 3 * s.dst_pitch, luma_.data(), u_.data(), v_.data());
        }
    }

private:
    void put_row(unsigned char *to, const unsigned char *y, const unsigned char *u,
                 const unsigned char *v) {
        constexpr contrast_data a = adjustment;
        for (int x = 0; x < scene_.width; x += 2) {
            *to++ = adjusted(y[x], a.y_gain, a.y_offset);
            *to++ = adjusted(u[x / 2], a.uv_gain, a.u_offset);
            *to++ = adjusted(y[x + 1], a.y_gain, a.y_offset);
            *to++ = adjusted(v[x / 2], a.uv_gain, a.v_offset);
        }
    }

    scene &scene_;
    std::vector<unsigned char> luma_, u_, v_;
};

} // namespace

const peer scalar_frame_stretch{"scalar", "C++, a pixel after the other",
                                [](scene &s) -> task { return frame_stretch(s); }, true};

} // namespace lumalane::bench
