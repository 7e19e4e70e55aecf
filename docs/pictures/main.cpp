// lumalane-pictures FRAME.y4m DIR: the pictures and tables of the manual, made by the functions
// themselves. DIR gets facts.json, which lists them for docs/hooks, and the data of the plots.
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "docs/pictures/calls.h"
#include "docs/pictures/grid.h"
#include "docs/pictures/image.h"
#include "docs/pictures/scene.h"
#include "docs/pictures/shown.h"
#include "docs/pictures/slices.h"

namespace {

using namespace pictures;

class writer {
public:
    explicit writer(std::string directory_)
        : directory(std::move(directory_) + "/"), json(directory + "facts.json") {
        json << "{\n";
    }

    template <class Function>
    void add(const Function &f, const scene &s) {
        begin(f.name);
        add_pictures(f.name, show(f, s));
        add_calls(f);
        json << "}";
    }

    void end() {
        json << "\n}\n";
        json.close();
        if (!json)
            throw std::runtime_error("cannot write " + directory + "facts.json");
    }

    std::string path(const std::string &file) const { return directory + file; }

private:
    static std::string quoted(const std::string &text) {
        std::string made = "\"";
        for (const char c : text)
            made += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
        return made + "\"";
    }

    void begin(const std::string &name) {
        json << (any ? ",\n" : "") << quoted(name) << ": {";
        any = true;
    }

    void add_pictures(const std::string &name, const std::vector<shown> &made) {
        json << "\n  \"pictures\": [";
        for (std::size_t i = 0; i < made.size(); ++i) {
            const std::string file = name + "-" + std::to_string(i) + ".png";
            write_png(path(file), made[i].picture);
            json << (i ? "," : "") << "\n    {\"file\": " << quoted(file)
                 << ", \"caption\": " << quoted(made[i].caption)
                 << ", \"width\": " << 2 * made[i].picture.width
                 << ", \"height\": " << 2 * made[i].picture.height << "}";
        }
        json << "]";
    }

    void add_calls(const lumalane::parameters_function &) {
        json << ",\n  \"least\": \"none\", \"call\": \"\", \"grids\": [], \"examples\": []";
    }

    template <class Function>
    void add_calls(const Function &f) {
        const samples s = samples_of(f);
        json << ",\n  \"slices\": " << (same_in_slices(f) ? "true" : "false")
             << ",\n  \"least\": " << quoted(s.least)
             << ",\n  \"call\": " << quoted(std::string(f.name) + ": " + s.small.arguments)
             << ",\n  \"grids\": [";
        int count = 0;
        for (const grid &g : grids_of(s.small)) {
            const std::string file =
                std::string(f.name) + "-" + std::to_string(count) + ".grid.svg";
            std::ofstream(path(file)) << g.svg << "\n";
            json << (count++ ? "," : "") << "\n    {\"title\": " << quoted(g.title)
                 << ", \"file\": " << quoted(file) << "}";
        }
        json << "],\n  \"examples\": [";
        for (std::size_t i = 0; i < s.usual.size(); ++i) {
            const call &c = s.usual[i];
            json << (i ? "," : "") << "\n    {\"call\": " << quoted(c.arguments)
                 << ", \"bytes\": [";
            bool first = true;
            for (const part &p : c.parts) {
                const lumalane::byte_range r = c.bytes[p.at].touched();
                json << (first ? "" : ", ") << "{\"pointer\": " << quoted(name_of(p.at))
                     << ", \"range\": "
                     << quoted(r.empty() ? "none"
                                         : "[" + std::to_string(r.begin) + ", " +
                                               std::to_string(r.end) + ")")
                     << "}";
                first = false;
            }
            json << "]}";
        }
        json << "]";
    }

    std::string directory;
    std::ofstream json;
    bool any = false;
};

// What every sample becomes at some gains, for docs/pictures/adjustment.gnuplot. The functions
// themselves adjust: a row of all samples, as luma of a grey picture.
void write_curves(const std::string &path) {
    std::ofstream out(path);
    const int gains[] = {32, 64, 96, 128, 300, 400};
    std::vector<std::vector<unsigned char>> columns;
    for (const int gain : gains) {
        contrast_data values = {gain, 64, 0, 0, 0, 0, 0, 0};
        get_contrast_data(&values);
        std::vector<unsigned char> y(256 * 4), made(256 * 8);
        for (std::size_t i = 0; i < y.size(); ++i)
            y[i] = static_cast<unsigned char>(i % 256);
        strech_pic_1X2_adjust(y.data(), made.data(), 256, 4, 256, 256, nullptr, 1);
        columns.emplace_back(made.begin(), made.begin() + 256);
    }
    out << "sample";
    for (const int gain : gains)
        out << " " << gain;
    out << "\n";
    for (int x = 0; x < 256; ++x) {
        out << x;
        for (const auto &column : columns)
            out << " " << int{column[static_cast<std::size_t>(x)]};
        out << "\n";
    }
    set_adjustment_for_pictures();
}

// ---- Drawings of formats -------------------------------------------------------------------------

// A byte or bit, by what is in it: 'R', 'G', 'B', 'Y', 'U', 'V' or '0'.
void write_cells(const std::string &path, const std::string &cells, int to_a_line,
                 const std::vector<std::string> &labels = {}) {
    constexpr int width = 22, height = 20;
    const int lines = (static_cast<int>(cells.size()) + to_a_line - 1) / to_a_line;
    std::ofstream out(path);
    out << "<svg class=\"cells\" viewBox=\"-1 -1 " << to_a_line * width + 2 << " "
        << lines * height + 2 << "\" style=\"width:" << to_a_line * width << "px\" role=\"img\">";
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const int x = static_cast<int>(i) % to_a_line * width;
        const int y = static_cast<int>(i) / to_a_line * height;
        out << "<rect class=\"c-" << cells[i] << "\" x=\"" << x << "\" y=\"" << y << "\" width=\""
            << width << "\" height=\"" << height << "\"/><text x=\"" << x + width / 2 << "\" y=\""
            << y + 14 << "\">" << (i < labels.size() ? labels[i] : std::string(1, cells[i]))
            << "</text>";
    }
    out << "</svg>\n";
}

// What is in a byte or bit is found by colours of which only one channel is not 0.
void write_formats(const writer &w) {
    struct colour {
        char name;
        unsigned char y, u, v;
    };
    const colour colours[] = {{'R', 81, 90, 240}, {'G', 145, 54, 34}, {'B', 41, 240, 110}};
    const auto pixel = [](const colour &c, const lumalane::picture_function &f, unsigned layout) {
        const call made = make_call(f, {16, 2, 16, 16 * f.bytes_per_pixel, layout});
        const memory m(made);
        std::fill_n(m.at(pointer::src), 32, c.y);
        std::fill_n(m.at(pointer::src_u), 8, c.u);
        std::fill_n(m.at(pointer::src_v), 8, c.v);
        m.run(made);
        const unsigned char *first = m.at(pointer::dst);
        return std::vector<unsigned char>(first, first + 2 * f.bytes_per_pixel);
    };
    for (const auto *f :
         {&lumalane::functions::loadimage_rgb32, &lumalane::functions::loadimage_rgb24}) {
        std::string cells(static_cast<std::size_t>(2 * f->bytes_per_pixel), '0');
        for (const colour &c : colours) {
            const std::vector<unsigned char> bytes = pixel(c, *f, 0);
            for (std::size_t i = 0; i < cells.size(); ++i)
                if (bytes[i] > 200)
                    cells[i] = c.name;
        }
        write_cells(
            w.path(f->bytes_per_pixel == 4 ? "format-rgb32.bytes.svg" : "format-rgb24.bytes.svg"),
            cells, static_cast<int>(cells.size()));
    }
    for (unsigned layout = 0; layout < 4; ++layout) {
        std::string bits(16, '0');
        for (const colour &c : colours) {
            const std::vector<unsigned char> bytes =
                pixel(c, lumalane::functions::loadimage_rgb16, layout);
            const unsigned word = bytes[0] | bytes[1] << 8;
            for (int bit = 0; bit < 16; ++bit)
                if (word >> (15 - bit) & 1)
                    bits[static_cast<std::size_t>(bit)] = c.name;
        }
        write_cells(w.path("format-rgb16-" + std::to_string(layout) + ".bytes.svg"), bits, 16);
    }

    contrast_data neutral = {64, 64, 0, 0, 0, 0, 0, 0};
    get_contrast_data(&neutral);
    const call planes =
        make_call(lumalane::functions::loadimage_yv12_ajust, {16, 4, 16, 16, 0, 4, 4});
    const memory m(planes);
    std::fill_n(m.at(pointer::src), 64, static_cast<unsigned char>('Y'));
    std::fill_n(m.at(pointer::src_u), 16, static_cast<unsigned char>('U'));
    std::fill_n(m.at(pointer::src_v), 16, static_cast<unsigned char>('V'));
    m.run(planes);
    const unsigned char *dst = m.at(pointer::dst);
    write_cells(w.path("format-yv12.bytes.svg"), std::string(dst, dst + 96), 16);

    const call packed = make_call(lumalane::functions::loadimage_yuy2, {16, 2, 16, 32});
    const memory n(packed);
    std::fill_n(n.at(pointer::src), 32, static_cast<unsigned char>('Y'));
    std::fill_n(n.at(pointer::src_u), 8, static_cast<unsigned char>('U'));
    std::fill_n(n.at(pointer::src_v), 8, static_cast<unsigned char>('V'));
    n.run(packed);
    dst = n.at(pointer::dst);
    write_cells(w.path("format-yuy2.bytes.svg"), std::string(dst, dst + 4), 4,
                {"Y0", "U", "Y1", "V"});
    set_adjustment_for_pictures();
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 3)
        return std::fputs("lumalane-pictures FRAME.y4m DIR\n", stderr), 2;
    try {
        scene s{read_frame(argv[1]), {}, {}};
        s.wheel = wheel(s.frame.width, s.frame.height);
        s.over = make_subtitle(s.frame.width, s.frame.height);
        writer w(argv[2]);
        // get_contrast_data() comes first: it shows what is before its first call.
#define LUMALANE_EXPORT(signature, name) w.add(lumalane::functions::name, s);
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
        w.end();
        write_formats(w);
        write_curves(w.path("adjustment.dat"));
    } catch (const std::exception &failure) {
        std::cerr << "lumalane-pictures: " << failure.what() << "\n";
        return 1;
    }
}
