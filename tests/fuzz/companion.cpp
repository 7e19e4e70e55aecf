// convert(), blend() and stretch() of pictures between unmapped pages, against the models; and the same
// with one thing that is wrong, of which nothing may be written.
#include "tests/fuzz/fuzz.h"

#include <lumalane/picture.h>

#include <climits>
#include <vector>

#include "tests/companion/expected.h"

namespace {

using namespace companion;
using differential::random;
using lumalane::error;
using lumalane::format;
using lumalane::status;

// Pictures are filled by it.
struct generator {
    random &r;
    unsigned operator()() { return static_cast<unsigned>(r.next()); }
};

placement choose_placement(random &r) {
    return {r.one_of({0, 0, 1, 16, r.between(0, 70)}), r.one_in(3), r.one_in(2)};
}

// Twice as wide and as high, with gaps, the largest one of RGB32 still fits into guarded_planes.
int choose_size(random &r) {
    return r.one_in(8) ? r.between(1, 240) : r.one_in(4) ? 16 * r.between(1, 6) : r.between(1, 70);
}

optional_adjustment choose_adjustment(random &r) {
    if (r.one_in(2))
        return std::nullopt;
    const auto value = [&] {
        return r.one_in(2) ? r.between(-200, 200) : static_cast<int>(r.next());
    };
    return lumalane::adjustment{value(), value(), value(), value(), value()};
}

// One thing that is wrong with a picture, and what is to be said of it.
struct fault {
    error code = error::none;
    const char *argument = nullptr;
};

fault spoil(random &r, lumalane::picture &p, const char *argument) {
    const int i = r.between(0, lumalane::plane_count(p.format) - 1);
    lumalane::plane &plane = p.planes[i];
    const int row = static_cast<int>(lumalane::row_bytes(p.format, i, p.width));
    switch (r.between(0, 5)) {
    case 0:
        plane.data = nullptr;
        return {error::null_plane, argument};
    case 1:
        plane.stride = r.between(1 - row, row - 1);
        return {error::stride_too_small, argument};
    case 2:
        plane.stride = r.one_of({INT_MAX, INT_MIN, lumalane::largest_size + 1});
        return {error::size_too_large, argument};
    case 3:
        p.width = r.one_of({0, -1, INT_MIN});
        return {error::width_too_small, argument};
    case 4:
        p.height = r.one_of({0, -1, INT_MIN});
        return {error::height_too_small, argument};
    default:
        p.format = static_cast<format>(r.one_of({-1, 9, INT_MAX}));
        return {error::unsupported_formats, argument};
    }
}

class experiment {
public:
    explicit experiment(random &r_) : r(r_) {}

    void run() {
        const format from = formats[r.between(0, 8)], to = formats[r.between(0, 8)];
        const int width = choose_size(r), height = choose_size(r);
        generator bytes_of{r};
        const rows_of_pixels pixels = random_pixels(from, width, height, bytes_of);
        const optional_adjustment by = choose_adjustment(r);
        fuzz::doing = std::string(name_of(from)) + " to " + name_of(to) + ", " +
                      std::to_string(width) + "x" + std::to_string(height) +
                      (by ? ", adjusted" : "");
        switch (r.between(0, 2)) {
        case 0:
            fuzz::doing = "convert " + fuzz::doing;
            return compare(pixels, to, width, height, expected_conversion(pixels, to, by),
                           [&](const auto &source, const auto &destination) {
                               return by ? lumalane::convert(source, destination, *by)
                                         : lumalane::convert(source, destination);
                           });
        case 1:
            fuzz::doing = "blend " + fuzz::doing;
            return blend(pixels, to, by);
        default: {
            fuzz::doing = "stretch " + fuzz::doing;
            const auto how = static_cast<lumalane::stretching>(r.between(0, 2));
            const int times = how == lumalane::stretching::twice_both ? 2 : 1;
            return compare(pixels, to, times * width, 2 * height,
                           expected_stretch(pixels, to, how, by),
                           [&](const auto &source, const auto &destination) {
                               return by ? lumalane::stretch(source, destination, how, *by)
                                         : lumalane::stretch(source, destination, how);
                           });
        }
        }
    }

private:
    // `make(source, destination)` is the call; nothing is expected where no function serves the formats.
    template <class Make>
    void compare(const rows_of_pixels &pixels, format to, int width, int height,
                 const std::optional<rows_of_pixels> &expected, const Make &make) {
        lumalane::picture source =
            memory.source.lay_out(pixels.format, pixels.width, pixels.height, choose_placement(r));
        store(pixels, source);
        lumalane::picture destination =
            memory.destination.lay_out(to, width, height, choose_placement(r));
        const bytes read = memory.source.content(), over = memory.subpicture.content(),
                    before = memory.destination.content();
        const lumalane::picture laid_out = destination;
        fault wrong;
        if (r.one_in(6))
            wrong = spoil(r, source, "source");
        else if (r.one_in(6))
            wrong = spoil(r, destination, "destination");
        const status s = make(source, destination);
        fuzz::expect(memory.source.content() == read, "the source is read alone");
        fuzz::expect(memory.subpicture.content() == over, "the subpicture is read alone");
        if (wrong.code != error::none || !expected) {
            fuzz::expect(!s, "it is refused");
            fuzz::expect(s.code == wrong.code || !expected, "it is refused for what is wrong");
            fuzz::expect(s.argument != nullptr, "what is wrong is named");
            fuzz::expect(memory.destination.content() == before, "nothing is written");
            return;
        }
        if (!s)
            fuzz::report(std::string("refused: ") + message_of(s.code));
        fuzz::expect(load(laid_out) == *expected, "the pixels are those of the model");
        fuzz::expect(gaps_are_untouched(laid_out), "there is nothing between the rows");
    }

    void blend(const rows_of_pixels &pixels, format to, const optional_adjustment &by) {
        subpicture_rows drawn{choose_size(r), choose_size(r), {}, {}, {}, {}};
        generator bytes_of{r};
        const int most = r.one_of({0, 1, 16, 17, 255});
        for (auto [plane, width] : {std::pair{&drawn.alpha, drawn.width},
                                    {&drawn.y, drawn.width},
                                    {&drawn.u, drawn.chroma_width()},
                                    {&drawn.v, drawn.chroma_width()}}) {
            plane->resize(static_cast<std::size_t>(width) * drawn.height);
            fill(*plane, bytes_of);
        }
        for (unsigned char &alpha : drawn.alpha)
            alpha = static_cast<unsigned char>(alpha % (most + 1));
        const placement at = choose_placement(r);
        const auto plane = [&](int i, const bytes &samples, int width) {
            const lumalane::plane p = memory.subpicture.lay_out_plane(i, width, drawn.height, at);
            for (int row = 0; row < drawn.height; ++row)
                std::copy_n(&samples[static_cast<std::size_t>(row) * width], width,
                            p.data + std::ptrdiff_t(row) * p.stride);
            return p;
        };
        const lumalane::subpicture over{drawn.width,
                                        drawn.height,
                                        plane(0, drawn.alpha, drawn.width),
                                        plane(1, drawn.y, drawn.width),
                                        plane(2, drawn.u, drawn.chroma_width()),
                                        plane(3, drawn.v, drawn.chroma_width())};
        const auto position = [&](int size, int over_size) {
            return r.one_in(16) ? r.one_of({INT_MIN, INT_MAX, static_cast<int>(r.next())})
                                : r.between(-over_size - 2, size + 2);
        };
        const int x = position(pixels.width, drawn.width),
                  y = position(pixels.height, drawn.height);
        fuzz::doing += ", subpicture " + std::to_string(drawn.width) + "x" +
                       std::to_string(drawn.height) + " at " + std::to_string(x) + ", " +
                       std::to_string(y);
        // The model does not count that far; all of these are outside.
        const auto near_by = [](int place) { return std::clamp(place, -1000, 1000); };
        compare(pixels, to, pixels.width, pixels.height,
                expected_blend(pixels, drawn, near_by(x), near_by(y), to, by),
                [&](const auto &video, const auto &destination) {
                    return by ? lumalane::blend(video, over, x, y, destination, *by)
                              : lumalane::blend(video, over, x, y, destination);
                });
    }

    struct guarded_memory {
        guarded_planes source, subpicture, destination;
    };
    static guarded_memory &shared_memory() {
        static guarded_memory mapped;
        return mapped;
    }

    random &r;
    guarded_memory &memory = shared_memory();
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    differential::random r = fuzz::choices_of(data, size);
    experiment(r).run();
    return 0;
}
