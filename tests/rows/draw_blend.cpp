// Kernels that lay a subpicture over the video.
#include <algorithm>

#include "tests/rows/draw.h"

namespace row_tests {

namespace {

using lumalane::adjustment;
using lumalane::blended_chroma;
using lumalane::blended_pair;
using lumalane::blended_planes;
using lumalane::blended_to_surface;
using lumalane::plane_adjustment;
using lumalane::row_kernels;
using lumalane::store_policy;

std::shared_ptr<const adjustment> draw_by(const wanted_call &wanted) {
    if (wanted.number / 2 % 2 == 0)
        return nullptr;
    return std::make_shared<const adjustment>(draw_adjustment(wanted.randomness));
}

std::string told(const std::shared_ptr<const adjustment> &by) {
    return by ? row_tests::told(*by) : "not adjusted";
}

// A row of a plane as the reference makes it, the video's averaged with another row first.
bytes blended_row(const row_kernels &reference, const bytes &video, const bytes &below,
                  const bytes &sub, const bytes &alpha, const plane_adjustment *by) {
    bytes averaged = video, made(video.size());
    const auto n = static_cast<std::ptrdiff_t>(video.size());
    if (!below.empty())
        for (std::ptrdiff_t i = 0; i < n; ++i)
            averaged[i] = static_cast<unsigned char>((video[i] + below[i] + 1) >> 1);
    reference.blend_plane({{made.data(), nullptr},
                           {averaged.data(), nullptr},
                           {sub.data(), nullptr},
                           alpha.data(),
                           {by, nullptr}},
                          n);
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

row_call draw_blending_pair(const wanted_call &wanted,
                            member<lumalane::row_kernel::blending_pair> kernel) {
    const std::ptrdiff_t n = wanted.n;
    const auto by = draw_by(wanted);
    const bool averaged = wanted.number / 4 % 2 == 1;

    enum { video, lower_video, video_below, sub, alpha, dst, lower_dst };
    row_call call;
    // Alpha lies from row to row as the subpicture's luma.
    const std::ptrdiff_t pitch = draw_pitch(wanted.randomness, n, store_policy::cached);
    call.arguments = told(by) + (averaged ? ", lower row averaged" : "");
    call.reads_again = by && !by->y.product_fits_15_bits; // a rare gain: what it stored
    call.rows = {{"video", n},
                 {"lower video", n},
                 {"video below", averaged ? n : 0},
                 {"sub", n, 2, pitch},
                 {"alpha", n, 2, pitch, false, draw_alpha(wanted.randomness, n)},
                 {"dst", n, 1, 0, true},
                 {"lower dst", n, 1, 0, true}};
    call.run = [=](const row_kernels &target, const addresses &at) {
        (target.*kernel)({at[dst], at[video], at[sub], at[alpha], by ? &by->y : nullptr,
                          at[lower_dst] - at[dst], pitch, at[lower_video] - at[video],
                          averaged ? at[video_below] - at[lower_video] : 0},
                         n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        const plane_adjustment *const luma_by = by ? &by->y : nullptr;
        held.write(dst, blended_row(reference, held.read(video), {}, held.read(sub, 0),
                                    held.read(alpha, 0), luma_by));
        held.write(lower_dst, blended_row(reference, held.read(lower_video), held.read(video_below),
                                          held.read(sub, 1), held.read(alpha, 1), luma_by));
        return 0;
    };
    return call;
}

namespace {

// What the kernels for the chroma of pairs have in common.
struct drawn_chroma {
    std::shared_ptr<const adjustment> by;
    bool averaged;
    std::ptrdiff_t sub_next, alpha_next;

    enum { video_u, video_v, sub_u, sub_v, alpha, rows };

    explicit drawn_chroma(const wanted_call &wanted)
        : by(draw_by(wanted)), averaged(wanted.number / 4 % 2 == 1),
          sub_next(draw_pitch(wanted.randomness, wanted.n / 2, store_policy::cached)),
          alpha_next(draw_pitch(wanted.randomness, wanted.n, store_policy::cached)) {}

    // The averaged rows lie as far below U as below V: both in one stretch.
    std::vector<row> rows_of(const wanted_call &wanted) const {
        const std::ptrdiff_t n = wanted.n / 2;
        const std::ptrdiff_t read = averaged ? 2 : 1;
        return {{"video u", n, read, n},
                {"video v", n, read, n},
                {"sub u", n, 2, sub_next},
                {"sub v", n, 2, sub_next},
                {"alpha", wanted.n, 2, alpha_next, false, draw_alpha(wanted.randomness, wanted.n)}};
    }

    blended_chroma at(const addresses &at, std::ptrdiff_t n) const {
        return {nullptr,   nullptr,   at[video_u], at[video_v],
                at[sub_u], at[sub_v], at[alpha],   averaged ? n / 2 : 0,
                by.get(),  0,         sub_next,    alpha_next};
    }

    bytes u(const row_kernels &reference, const contents &held, const bytes &video, int row,
            bool by_averages) const {
        return blended_row(reference, video, {}, held.read(sub_u, row),
                           chroma_weights(held.read(alpha, row), by_averages), u_of(by));
    }
    bytes v(const row_kernels &reference, const contents &held, const bytes &video, int row,
            bool by_averages) const {
        return blended_row(reference, video, {}, held.read(sub_v, row),
                           chroma_weights(held.read(alpha, row), by_averages), v_of(by));
    }

    bytes video(const contents &held, std::size_t plane) const {
        bytes samples = held.read(plane, 0);
        if (!averaged)
            return samples;
        const bytes below = held.read(plane, 1);
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] = static_cast<unsigned char>((samples[i] + below[i] + 1) >> 1);
        return samples;
    }
};

} // namespace

row_call draw_blending_chroma(const wanted_call &wanted,
                              member<lumalane::row_kernel::blending_chroma> kernel) {
    const std::ptrdiff_t n = wanted.n;
    const drawn_chroma drawn(wanted);
    const bool by_averages = wanted.facts.name == "blend_chroma_pair_by_averages";
    const std::ptrdiff_t dst_next = draw_pitch(wanted.randomness, n / 2, store_policy::cached);

    enum { dst_u = drawn_chroma::rows, dst_v };
    row_call call;
    call.arguments = told(drawn.by) + (drawn.averaged ? ", averaged" : "");
    call.reads_again = drawn.by && !drawn.by->u.product_fits_15_bits;
    call.rows = drawn.rows_of(wanted);
    call.rows.push_back({"u", n / 2, 2, dst_next, true});
    call.rows.push_back({"v", n / 2, 2, dst_next, true});
    call.run = [=](const row_kernels &target, const addresses &at) {
        blended_chroma pair = drawn.at(at, n);
        pair.u = at[dst_u], pair.v = at[dst_v], pair.dst_next = dst_next;
        (target.*kernel)(pair, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        const bytes video_u = drawn.video(held, drawn.video_u);
        const bytes video_v = drawn.video(held, drawn.video_v);
        for (int row = 0; row < 2; ++row) {
            const bytes u = drawn.u(reference, held, video_u, row, by_averages);
            const bytes v = drawn.v(reference, held, video_v, row, by_averages);
            held.write(dst_u, u, row);
            held.write(dst_v, v, row);
        }
        return 0;
    };
    return call;
}

row_call draw_blending_to_surface(const wanted_call &wanted,
                                  member<lumalane::row_kernel::blending_to_surface> kernel) {
    const std::ptrdiff_t n = wanted.n, row_bytes = n * wanted.facts.destination_bytes;
    const drawn_chroma drawn(wanted);
    const store_policy stores = policy(wanted.number);
    const bool odd = wanted.facts.destination_bytes == 1;
    const std::ptrdiff_t dst_next = draw_pitch(wanted.randomness, row_bytes, stores);
    const std::ptrdiff_t y_next = draw_pitch(wanted.randomness, n, store_policy::cached);

    enum { y = drawn_chroma::rows, dst };
    row_call call;
    call.arguments =
        told(drawn.by) + (drawn.averaged ? ", averaged, " : ", ") + row_tests::told(stores);
    call.rows = drawn.rows_of(wanted);
    call.rows.push_back({"y", n, 2, y_next});
    call.rows.push_back({"dst", row_bytes, 2, dst_next, true});
    call.non_temporal = stores == store_policy::non_temporal;
    call.run = [=](const row_kernels &target, const addresses &at) {
        bytes u(n), v(n); // a strip, which may be written or not
        blended_chroma pair = drawn.at(at, n);
        pair.u = u.data(), pair.v = v.data(), pair.dst_next = n / 2;
        (target.*kernel)({at[dst], at[y], &pair, dst_next, y_next, stores}, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        const bytes video_u = drawn.video(held, drawn.video_u);
        const bytes video_v = drawn.video(held, drawn.video_v);
        for (int row = 0; row < 2; ++row) {
            const bytes luma = held.read(y, row);
            const bytes u = drawn.u(reference, held, video_u, row, false);
            const bytes v = drawn.v(reference, held, video_v, row, false);
            bytes made(row_bytes);
            const auto emit = odd ? reference.emit_odd_yuy2 : reference.emit_yuy2;
            emit({luma.data(), u.data(), v.data(), made.data()}, n);
            held.write(dst, made, row);
        }
        return 0;
    };
    return call;
}

row_call draw_blending_planes(const wanted_call &wanted,
                              member<lumalane::row_kernel::blending_planes> kernel) {
    const bool chroma = wanted.facts.name == "blend_chroma_planes";
    const std::ptrdiff_t n = wanted.n, samples = chroma ? n / 2 : n;
    const auto by = draw_by(wanted);
    const store_policy stores = policy(wanted.number);
    const bool averaged = !by && wanted.number / 4 % 2 == 1;
    const std::ptrdiff_t count = wanted.randomness.between(1, 3);
    random &r = wanted.randomness;
    const std::ptrdiff_t video_next = draw_pitch(r, samples, store_policy::cached);
    const std::ptrdiff_t sub_next = draw_pitch(r, samples, store_policy::cached);
    const std::ptrdiff_t alpha_next = draw_pitch(r, n, store_policy::cached);
    const std::ptrdiff_t dst_next = draw_pitch(r, samples, stores);
    const std::ptrdiff_t v_samples = chroma ? samples : 0;
    // Of a field the lower rows are made of the upper ones and those below them.
    const std::ptrdiff_t video_rows = averaged ? count / 2 + 1 : count;
    const auto video_row = [=](std::ptrdiff_t i) { return averaged ? i / 2 : i; };

    enum { video_u, video_v, sub_u, sub_v, alpha, dst_u, dst_v };
    row_call call;
    call.reads_again = by && !by->u.product_fits_15_bits;
    call.arguments = std::to_string(count) + " times, " + told(by) +
                     (averaged ? ", lower rows averaged, " : ", ") + row_tests::told(stores);
    call.rows = {{"video", samples, video_rows, video_next},
                 {"video v", v_samples, video_rows, video_next},
                 {"sub", samples, count, sub_next},
                 {"sub v", v_samples, count, sub_next},
                 {"alpha", n, count, alpha_next, false, draw_alpha(r, n)},
                 {"dst", samples, count, dst_next, true},
                 {"dst v", v_samples, count, dst_next, true}};
    call.non_temporal = stores == store_policy::non_temporal;
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
        rows.video_to_lower = averaged ? 0 : video_next;
        rows.video_next = averaged ? video_next : 2 * video_next;
        rows.below_lower = averaged ? video_next : 0;
        (target.*kernel)(rows, n);
        return 0;
    };
    call.expect = [=](const row_kernels &reference, contents &held) {
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            const bytes weights =
                chroma ? chroma_weights(held.read(alpha, i), false) : held.read(alpha, i);
            const auto made = [&](std::size_t video, std::size_t sub, const plane_adjustment *map) {
                bytes samples_read = held.read(video, video_row(i));
                bytes below;
                if (averaged && i % 2 == 1)
                    below = held.read(video, video_row(i) + 1);
                bytes blended(samples_read.size());
                for (std::size_t k = 0; k < blended.size(); ++k) {
                    const int of_video =
                        below.empty() ? samples_read[k] : (samples_read[k] + below[k] + 1) >> 1;
                    const int a = std::min<int>(weights[k], 16);
                    blended[k] = static_cast<unsigned char>(
                        (of_video * (16 - a) + held.read(sub, i)[k] * a) >> 4);
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
