// Kernels that lay a subpicture over the video.
#include <algorithm>
#include <cstdlib>

#include "tests/rows/draw.h"

namespace row_tests {

namespace {

using lumalane::adjustment;
using lumalane::blended_planes;
using lumalane::lower_row;
using lumalane::mixed_pairs;
using lumalane::plane_adjustment;
using lumalane::row_kernels;
using lumalane::store_policy;

std::string told(const std::shared_ptr<const adjustment> &by) {
    return by ? row_tests::told(*by) : "not adjusted";
}

// A row of a plane as the reference makes it, the video's averaged with another row first.
bytes blended_row(const row_kernels &reference, const bytes &video, const bytes &below,
                  const bytes &sub, const bytes &alpha, const plane_adjustment *by) {
    const bytes samples = below.empty() ? video : averaged(video, below);
    bytes made(video.size());
    reference.blend_plane({{made.data(), nullptr},
                           {samples.data(), nullptr},
                           {sub.data(), nullptr},
                           alpha.data(),
                           {by, nullptr}},
                          static_cast<std::ptrdiff_t>(video.size()));
    return made;
}

// Of pairs of pixels.
bytes chroma_weights(const bytes &alpha, bool averages) {
    bytes weights(alpha.size() / 2);
    for (std::size_t i = 0; i < weights.size(); ++i)
        weights[i] = averages
                         ? static_cast<unsigned char>((alpha[2 * i] + alpha[2 * i + 1] + 1) >> 1)
                         : alpha[2 * i + 1];
    return weights;
}

const plane_adjustment *u_of(const std::shared_ptr<const adjustment> &by) {
    return by ? &by->u : nullptr;
}

const plane_adjustment *v_of(const std::shared_ptr<const adjustment> &by) {
    return by ? &by->v : nullptr;
}

} // namespace

row_call draw_mixing_pairs(const wanted_call &wanted,
                           member<lumalane::row_kernel::mixing_pairs> kernel) {
    struct surface {
        const char *name;
        member<lumalane::row_kernel::planar_to_surface> emit;
        int bytes_per_pixel;
    };
    static constexpr surface surfaces[] = {{"rgb32", &row_kernels::emit_rgb32, 4},
                                           {"rgb24", &row_kernels::emit_rgb24, 3},
                                           {"rgb16", &row_kernels::emit_rgb16_565, 2},
                                           {"yuy2", &row_kernels::emit_yuy2, 2},
                                           {"odd yuy2", &row_kernels::emit_odd_yuy2, 1}};
    random &r = wanted.randomness;
    const std::ptrdiff_t n = wanted.n;
    const int bytes_per_pixel = wanted.facts.written;
    const surface to = bytes_per_pixel == 4   ? surfaces[r.between(0, 3)]
                       : bytes_per_pixel == 2 ? surfaces[3]
                                              : surfaces[4];
    const std::ptrdiff_t row_bytes = n * to.bytes_per_pixel;
    const auto by = draw_by<adjustment>(wanted);
    const store_policy stores = draw_policy(wanted);
    const bool averaged = wanted.number / 4 % 2 == 1;
    const bool between = to.bytes_per_pixel > 1 && wanted.number / 8 % 3 == 0;
    const bool by_averages = wanted.facts.name == "mix_pairs_by_averages";
    // Pairs of two kinds: of the other ones lower rows are averaged where those of the first ones are not.
    const bool alternate = wanted.number / 24 % 2 == 1;
    const std::ptrdiff_t kinds = alternate ? 2 : 1;
    // Narrow pairs of two kinds are mixed in runs, of which there may be more than one.
    const bool in_runs = alternate && n == 512;
    const std::ptrdiff_t count = kinds * (in_runs ? r.between(36, 48) : r.between(1, 3));
    const std::ptrdiff_t chroma_rows = between ? 2 : 1;
    const auto is_averaged = [=](std::ptrdiff_t pair) {
        return averaged != (alternate && pair % 2 == 1);
    };
    const std::ptrdiff_t y_next = draw_pitch(r, n);
    const std::ptrdiff_t chroma_next = draw_pitch(r, n / 2);
    const std::ptrdiff_t sub_next = draw_pitch(r, n);
    const std::ptrdiff_t sub_chroma_next = draw_pitch(r, n / 2);
    const std::ptrdiff_t dst_next = draw_pitch(r, row_bytes, alignment_for(stores));
    // Rows of their own, and some pairs without the subpicture.
    bytes held_alpha((2 * count - 1) * std::abs(sub_next) + n, 255);
    const std::ptrdiff_t first_alpha = sub_next < 0 ? (2 * count - 1) * -sub_next : 0;
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const bool clear = r.one_in(3);
        for (std::ptrdiff_t row = 2 * i; row < 2 * i + 2; ++row) {
            const bytes drawn = clear ? bytes(n) : draw_alpha(r, n);
            std::copy(drawn.begin(), drawn.end(),
                      held_alpha.begin() + first_alpha + row * sub_next);
        }
    }

    enum { y, u, v, alpha, sub_y, sub_u, sub_v, dst };
    row_call call;
    call.arguments = std::to_string(count) + " times to " + to.name + ", " + told(by) +
                     (averaged ? ", lower row averaged" : "") +
                     (alternate ? ", of every second pair otherwise" : "") +
                     (between ? ", chroma averaged, " : ", ") + row_tests::told(stores);
    call.rows = {{"y", n, 2 * count, y_next},
                 {"u", n / 2, chroma_rows * count, chroma_next},
                 {"v", n / 2, chroma_rows * count, chroma_next},
                 {"alpha", static_cast<std::ptrdiff_t>(held_alpha.size()), 1, 0, false, held_alpha},
                 {"sub y", n, 2 * count, sub_next},
                 {"sub u", n / 2, 2 * count, sub_chroma_next},
                 {"sub v", n / 2, 2 * count, sub_chroma_next},
                 {"dst", row_bytes, 2 * count, dst_next, true}};
    call.alignment = alignment_for(stores);
    call.run = [=](const row_kernels &target, const addresses &at) {
        const std::ptrdiff_t to_chroma = chroma_rows * chroma_next;
        unsigned char *const upper_alpha = at[alpha] + first_alpha;
        mixed_pairs pairs{
            {at[y], at[u], at[v], upper_alpha, at[sub_y], at[sub_u], at[sub_v], at[dst]},
            {y_next, between ? chroma_next : 0, sub_next, sub_chroma_next, dst_next},
            averaged ? lower_row::average : lower_row::itself,
            target.*to.emit,
            to.bytes_per_pixel,
            stores,
            by.get(),
            count / kinds,
            {kinds * 2 * y_next, kinds * to_chroma, kinds * 2 * sub_next,
             kinds * 2 * sub_chroma_next, kinds * 2 * dst_next}};
        mixed_pairs others = pairs;
        others.upper = {at[y] + 2 * y_next,
                        at[u] + to_chroma,
                        at[v] + to_chroma,
                        upper_alpha + 2 * sub_next,
                        at[sub_y] + 2 * sub_next,
                        at[sub_u] + 2 * sub_chroma_next,
                        at[sub_v] + 2 * sub_chroma_next,
                        at[dst] + 2 * dst_next};
        others.lower = averaged ? lower_row::itself : lower_row::average;
        if (alternate)
            pairs.alternate = &others;
        (target.*kernel)(pairs, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        const bytes all_alpha = held.read(alpha);
        for (std::ptrdiff_t i = 0; i < 2 * count; ++i) {
            const std::ptrdiff_t of_pair = i / 2 * chroma_rows;
            const auto row_of_alpha = all_alpha.begin() + first_alpha + i * sub_next;
            const bytes row_alpha(row_of_alpha, row_of_alpha + n);
            const bytes weights = chroma_weights(row_alpha, by_averages);
            const auto chroma = [&](std::size_t video, std::size_t sub,
                                    const plane_adjustment *map) {
                return blended_row(reference, held.read(video, of_pair),
                                   between ? held.read(video, of_pair + 1) : bytes(),
                                   held.read(sub, i), weights, map);
            };
            const bytes row_u = chroma(u, sub_u, u_of(by)), row_v = chroma(v, sub_v, v_of(by));
            const bytes row_y =
                blended_row(reference, held.read(y, i),
                            is_averaged(i / 2) && i % 2 == 1 ? held.read(y, i - 1) : bytes(),
                            held.read(sub_y, i), row_alpha, by ? &by->y : nullptr);
            bytes made(row_bytes);
            (reference.*to.emit)({row_y.data(), row_u.data(), row_v.data(), made.data()}, n);
            held.write(dst, made, i);
        }
        return 0;
    };
    return call;
}

row_call draw_blending_planes(const wanted_call &wanted,
                              member<lumalane::row_kernel::blending_planes> kernel) {
    const bool chroma = wanted.facts.name == "blend_chroma_planes";
    const std::ptrdiff_t n = wanted.n, samples = chroma ? n / 2 : n;
    const auto by = draw_by<adjustment>(wanted);
    const store_policy stores = draw_policy(wanted);
    const bool averages = wanted.number / 4 % 2 == 1; // unless they are adjusted
    const std::ptrdiff_t count = wanted.randomness.between(1, 3);
    random &r = wanted.randomness;
    const std::ptrdiff_t video_next = draw_pitch(r, samples);
    const std::ptrdiff_t sub_next = draw_pitch(r, samples);
    const std::ptrdiff_t alpha_next = draw_pitch(r, n);
    const std::ptrdiff_t dst_next = draw_pitch(r, samples, alignment_for(stores));
    const std::ptrdiff_t v_samples = chroma ? samples : 0;
    // Row after row; or the rows of pairs lie elsewhere, as those of a field, where both are one row and
    // the lower one is averaged with the one below.
    const bool evenly = r.one_in(2);
    const std::ptrdiff_t to_lower = evenly ? 1 : r.between(0, 2); // rows
    const std::ptrdiff_t to_next_pair = evenly ? 2 : r.between(0, 3);
    const auto video_row = [=](std::ptrdiff_t i) {
        return i / 2 * to_next_pair + i % 2 * to_lower;
    };
    std::ptrdiff_t video_rows = 0;
    for (std::ptrdiff_t i = 0; i < count; ++i)
        video_rows = std::max(video_rows, video_row(i) + (averages && !by && i % 2 == 1 ? 2 : 1));

    enum { video_u, video_v, sub_u, sub_v, alpha, dst_u, dst_v };
    row_call call;
    call.reads_again = by != nullptr; // where gains have no loops of their own
    call.arguments = std::to_string(count) + " times, " + told(by) +
                     (averages ? ", lower rows averaged, " : ", ") + row_tests::told(stores);
    call.rows = {{"video", samples, video_rows, video_next},
                 {"video v", v_samples, video_rows, video_next},
                 {"sub", samples, count, sub_next},
                 {"sub v", v_samples, count, sub_next},
                 {"alpha", n, count, alpha_next, false, draw_alpha(r, n)},
                 {"dst", samples, count, dst_next, true},
                 {"dst v", v_samples, count, dst_next, true}};
    call.alignment = alignment_for(stores);
    call.run = [=](const row_kernels &target, const addresses &at) {
        blended_planes rows{{at[dst_u], at[dst_v]},
                            {at[video_u], at[video_v]},
                            {at[sub_u], at[sub_v]},
                            at[alpha],
                            {nullptr, nullptr}};
        if (by && chroma)
            rows.by[0] = &by->u, rows.by[1] = &by->v;
        else if (by)
            rows.by[0] = &by->y;
        rows.stores = stores;
        rows.count = count;
        rows.dst_next = dst_next, rows.sub_next = sub_next, rows.alpha_next = alpha_next;
        rows.video_to_lower = to_lower * video_next;
        rows.video_next = to_next_pair * video_next;
        rows.below_lower = averages ? video_next : 0;
        (target.*kernel)(rows, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            const bytes weights =
                chroma ? chroma_weights(held.read(alpha, i), false) : held.read(alpha, i);
            const auto made = [&](std::size_t video, std::size_t sub, const plane_adjustment *map) {
                bytes blended = held.read(video, video_row(i));
                if (averages && !by && i % 2 == 1)
                    blended = averaged(blended, held.read(video, video_row(i) + 1));
                const bytes of_sub = held.read(sub, i);
                for (std::size_t k = 0; k < blended.size(); ++k) {
                    const int a = std::min<int>(weights[k], 16);
                    blended[k] =
                        static_cast<unsigned char>((blended[k] * (16 - a) + of_sub[k] * a) >> 4);
                }
                if (map) {
                    bytes adjusted(blended.size());
                    lumalane::plane_rows row{blended.data(), adjusted.data()};
                    row.by = map;
                    reference.emit_plane(row, static_cast<std::ptrdiff_t>(blended.size()));
                    return adjusted;
                }
                return blended;
            };
            const bytes u = made(video_u, sub_u, !by ? nullptr : chroma ? &by->u : &by->y);
            if (chroma) {
                const bytes v = made(video_v, sub_v, v_of(by));
                held.write(dst_u, u, i);
                held.write(dst_v, v, i);
            } else {
                held.write(dst_u, u, i);
            }
        }
        return 0;
    };
    return call;
}

} // namespace row_tests
