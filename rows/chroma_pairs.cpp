// Chroma as pairs of U and V: made of planes, or taken out of packed pixels.
#include "rows/adjust.h"
#include "rows/kernels.h"

namespace lumalane::LUMALANE_TARGET_NAME {

void interleave_chroma(const interleaved_chroma &rows, ptrdiff_t n) {
    with_adjustment(rows.by, [&](const auto adjusted) LUMALANE_INLINE_LAMBDA {
        const unsigned char *u = rows.u, *v = rows.v;
        unsigned char *uv = rows.uv;
        for (ptrdiff_t left = rows.count; left > 0; --left) {
            along_row<16>(n, [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                constexpr int size = group.size;
                store(uv + x, adjusted.chroma(load_pairs_permuted<1, size>(u + x / 2, v + x / 2)));
            });
            u += rows.src_next, v += rows.src_next, uv += rows.uv_next;
        }
    });
}

void unpack_yuy2(const unpacked_yuy2 &rows, ptrdiff_t n) {
    with_adjustment(rows.by, [&](const auto adjusted) LUMALANE_INLINE_LAMBDA {
        const unsigned char *src = rows.src;
        unsigned char *y = rows.y, *uv = rows.uv;
        for (ptrdiff_t left = rows.count; left > 0; --left) {
            along_row<16>(n, [=](auto group, ptrdiff_t x) LUMALANE_INLINE_LAMBDA {
                constexpr int size = group.size;
                const auto luma = load_even<size>(src + 2 * x);
                if (uv)
                    store(uv + x, adjusted.chroma(load_odd<size>(src + 2 * x)));
                store(y + x, adjusted.luma(luma));
            });
            src += rows.src_next, y += rows.y_next;
            if (uv)
                uv += rows.uv_next;
        }
    });
}

} // namespace lumalane::LUMALANE_TARGET_NAME
