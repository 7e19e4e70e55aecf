// Pitches so large that 32-bit products of them wrap, against the models, in memory of which few pages
// are ever touched.
#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include <lumalane/footprint.h>

#include "tests/model/models.h"
#include "tests/targets.h"

namespace {

using lumalane::picture_call;
using lumalane::pointer;
using lumalane::row_set;
namespace functions = lumalane::functions;

constexpr std::ptrdiff_t half = std::ptrdiff_t{4} << 30;

// `half` bytes on both sides of its origin.
class sparse_memory {
public:
    sparse_memory()
        : first(mmap(nullptr, 2 * half, PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {}
    ~sparse_memory() { munmap(first, 2 * half); }
    sparse_memory(const sparse_memory &) = delete;
    sparse_memory &operator=(const sparse_memory &) = delete;

    bool mapped() const { return first != MAP_FAILED; }
    std::uint8_t *origin() const { return static_cast<std::uint8_t *>(first) + half; }
    model::extent extent() const {
        return {model::address_of(origin() - half), model::address_of(origin() + half)};
    }

private:
    void *first;
};

// Calls `visit(offset)` for every byte of the rows that are read of one plane, or written.
template <class Visit>
struct bytes_of_rows {
    pointer of;
    bool written;
    Visit visit;

    void reads(pointer p, const row_set &rows) {
        if (p == of && !written)
            all(rows);
    }
    void writes(pointer p, const row_set &rows) {
        if (p == of && written)
            all(rows);
    }
    void writes_again(pointer p, const row_set &rows) { writes(p, rows); }
    void replaces(pointer p, const row_set &rows) { writes(p, rows); }

    void all(const row_set &rows) {
        for (long long row = 0; row < rows.rows; ++row)
            for (long long i = 0; i < rows.bytes; ++i)
                visit(rows.first + row * rows.pitch + i);
    }
};

template <class Visit>
void each_byte(const lumalane::picture_function &f, const picture_call &c, pointer of, bool written,
               Visit visit) {
    bytes_of_rows<Visit> rows{of, written, visit};
    rows_of(f, c, rows);
}

class wrapping : public tests::on_each_target {
protected:
    sparse_memory src, dst, expected;
    std::vector<std::uint8_t> chroma = std::vector<std::uint8_t>(1 << 12);

    void SetUp() override {
        on_each_target::SetUp();
        ASSERT_TRUE(src.mapped() && dst.mapped() && expected.mapped());
        for (std::size_t i = 0; i < chroma.size(); ++i)
            chroma[i] = static_cast<std::uint8_t>(1 + i % 251);
    }

    template <class Function, class Model>
    void compare(const lumalane::picture_function &f, Function *function, Model *on_model,
                 const picture_call &c) {
        each_byte(f, c, pointer::src, false, [&](long long at) {
            src.origin()[at] = static_cast<std::uint8_t>(1 + (at >> 20 ^ at) % 251);
        });
        std::uint8_t *const u = chroma.data(), *const v = u + chroma.size() / 2;
        function(src.origin(), u, v, dst.origin(), c.width, c.height, c.src_pitch, c.dst_pitch,
                 nullptr);
        model::memory memory;
        memory.add(src.extent());
        memory.add({model::address_of(u), model::address_of(u + chroma.size())});
        memory.add(expected.extent());
        on_model(memory, src.origin(), u, v, expected.origin(), c.width, c.height, c.src_pitch,
                 c.dst_pitch, nullptr);
        long long written = 0, wrong = 0;
        each_byte(f, c, pointer::dst, true, [&](long long at) {
            written += expected.origin()[at] != 0;
            wrong += dst.origin()[at] != expected.origin()[at];
        });
        EXPECT_GT(written, 0);
        EXPECT_EQ(wrong, 0) << f.name << ", height " << c.height << ", src_pitch " << c.src_pitch
                            << ", dst_pitch " << c.dst_pitch;
    }
};

INSTANTIATE_ON_EACH_TARGET(wrapping);

// Where the end of luma wraps, V and U lie ahead of it and further from each other than rows say.
TEST_P(wrapping, the_plain_copy_makes_all_rows_of_chroma) {
    for (const picture_call &c :
         {picture_call{16, 30, 16, 1 << 26}, picture_call{16, 32, 16, 1 << 26},
          picture_call{16, 64, 16, 1 << 25}, picture_call{16, 2, 16, 1 << 30},
          picture_call{32, 4, 32, 1 << 29}})
        compare(functions::loadimage_yv12, loadimage_yv12, model::loadimage_yv12, c);
}

// Two rows of a gigabyte are still a distance: what wraps is the way on from a row's end.
TEST_P(wrapping, packed_pairs_are_two_rows_apart) {
    compare(functions::LoadYUY2_RGB32, LoadYUY2_RGB32, model::LoadYUY2_RGB32, {48, 4, 48, 1 << 30});
    compare(functions::LoadYUY2_YUY2, LoadYUY2_YUY2, model::LoadYUY2_YUY2, {48, 4, 1 << 29, 96});
}

// The second pair lies ahead of the first one: the surface covers it, but only what is told of it
// without wrapping lies elsewhere.
TEST_P(wrapping, a_row_that_is_stored_before_it_is_loaded) {
    const int width = 512, height = 4, src_pitch = 0x30000000, dst_pitch = 2048;
    const std::ptrdiff_t second_pair = -0x40000000, lower = 2 * std::ptrdiff_t{src_pitch};
    const std::ptrdiff_t to = second_pair + 16 - 3 * dst_pitch;
    for (const sparse_memory *memory : {&src, &expected})
        for (const std::ptrdiff_t row :
             {std::ptrdiff_t{0}, lower, second_pair, second_pair + lower})
            for (int i = 0; i < 2 * width; ++i)
                memory->origin()[row + i] =
                    static_cast<std::uint8_t>(row / 7 + i * 31 + (i * i >> 5));
    LoadYUY2_YUY2(src.origin(), nullptr, nullptr, src.origin() + to, width, height, src_pitch,
                  dst_pitch, nullptr);
    model::memory memory;
    memory.add(expected.extent());
    model::LoadYUY2_YUY2(memory, expected.origin(), nullptr, nullptr, expected.origin() + to, width,
                         height, src_pitch, dst_pitch, nullptr);
    int wrong = 0;
    for (std::ptrdiff_t i = 0; i < height * dst_pitch; ++i)
        wrong += src.origin()[to + i] != expected.origin()[to + i];
    EXPECT_EQ(wrong, 0);
}

} // namespace
