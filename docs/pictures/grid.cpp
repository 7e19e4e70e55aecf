#include "docs/pictures/grid.h"

#include <algorithm>
#include <stdexcept>

namespace pictures {

namespace {

constexpr int cell = 10; // of the drawing

enum kind { untouched, inside, beyond, left_out };

bool in_picture(const part &p, long long byte) {
    for (const rectangle &r : p.picture) {
        if (r.pitch <= 0 || byte < r.first)
            continue;
        const long long row = (byte - r.first) / r.pitch, column = (byte - r.first) % r.pitch;
        if (row < r.rows && column < r.row_bytes)
            return true;
    }
    return false;
}

class bytes_of_part {
public:
    bytes_of_part(long long begin_, long long end_)
        : begin(begin_), flags(static_cast<std::size_t>(end_ - begin_)) {}
    bool has(long long byte) const {
        return byte >= begin && byte < begin + static_cast<long long>(flags.size()) &&
               flags[static_cast<std::size_t>(byte - begin)];
    }
    void set(long long byte) { flags.at(static_cast<std::size_t>(byte - begin)) = true; }

private:
    long long begin;
    std::vector<bool> flags;
};

void for_each_row(const lumalane::row_set &rows, auto &&action) {
    for (long long r = 0; r < rows.rows; ++r)
        for (long long c = 0; c < rows.columns; ++c)
            action(rows.first + r * rows.pitch + c * rows.column_pitch, rows.bytes);
}

std::string number(double x) {
    std::string text = std::to_string(x);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text;
}

std::string path(const char *kind_class, const std::string &d) {
    return d.empty() ? "" : "<path class=\"" + std::string(kind_class) + "\" d=\"" + d + "\"/>";
}

std::string draw(const part &p, long long begin, long long end, const bytes_of_part &touched,
                 const std::vector<long long> &starts) {
    const long long pitch = p.picture.front().pitch;
    for (const rectangle &r : p.picture) { // the picture is drawn even where nothing is touched
        begin = std::min(begin, r.first);
        end = std::max(end, r.first + (r.rows - 1) * r.pitch + r.row_bytes);
    }
    const auto line_of = [&](long long byte) {
        return byte >= 0 ? byte / pitch : -((-byte + pitch - 1) / pitch);
    };
    const long long first_line = line_of(begin), lines = line_of(end - 1) - first_line + 1;
    const long long columns = pitch / p.unit;
    std::string runs[4];
    for (long long line = 0; line < lines; ++line) {
        const long long from = (first_line + line) * pitch;
        const auto kind_at = [&](long long column) {
            bool any = false, all_in = true, some_in = false;
            for (int i = 0; i < p.unit; ++i) {
                const long long byte = from + column * p.unit + i;
                any |= touched.has(byte);
                all_in &= in_picture(p, byte);
                some_in |= in_picture(p, byte);
            }
            return any ? (all_in ? inside : beyond) : (some_in ? left_out : untouched);
        };
        for (long long column = 0; column < columns;) {
            const kind now = kind_at(column);
            long long next = column + 1;
            while (next < columns && kind_at(next) == now)
                ++next;
            if (now != untouched)
                runs[now] += "M" + std::to_string(column * cell) + " " +
                             std::to_string(line * cell) + "h" +
                             std::to_string((next - column) * cell) + "v" + std::to_string(cell) +
                             "h-" + std::to_string((next - column) * cell) + "z";
            column = next;
        }
    }
    std::string lattice, marks;
    for (long long line = 0; line <= lines; ++line)
        lattice += "M0 " + std::to_string(line * cell) + "h" + std::to_string(columns * cell);
    for (long long column = 0; column <= columns; ++column)
        lattice += "M" + std::to_string(column * cell) + " 0v" + std::to_string(lines * cell);
    for (const long long start : starts) {
        const long long line = line_of(start);
        marks += "M" + number(static_cast<double>(start - line * pitch) / p.unit * cell + 1.5) +
                 " " + std::to_string((line - first_line) * cell + 2) + "l6 3l-6 3z";
    }
    return "<svg viewBox=\"-1 -1 " + std::to_string(columns * cell + 2) + " " +
           std::to_string(lines * cell + 2) + "\" style=\"width:" + std::to_string(columns * 14) +
           "px;min-width:" + std::to_string(columns * 6) + "px\" role=\"img\">" +
           path("k-in", runs[inside]) + path("k-over", runs[beyond]) +
           path("k-gap", runs[left_out]) + path("k-lines", lattice) + path("k-start", marks) +
           "</svg>";
}

} // namespace

std::vector<grid> grids_of(const call &c) {
    // Twice, over two fills that differ in every byte: what is written is alike after both. What
    // functions test before they write is the same in both, and never what makes them skip a byte.
    const memory first(c, 0x00), second(c, 0xff);
    for (const memory *m : {&first, &second})
        for (const part &p : c.parts) {
            const bool is_source = c.bytes[p.at].written.empty();
            for (long long i = 0; is_source && i < m->size_from(p.at); ++i)
                m->at(p.at)[i] = p.at == pointer::alpha_plane ? 5 : p.at == pointer::mask ? 1 : 77;
        }
    first.run(c);
    second.run(c);

    std::vector<grid> made;
    for (const part &p : c.parts) {
        const lumalane::byte_range range = c.bytes[p.at].touched();
        if (range.empty())
            continue;
        const bool written = !c.bytes[p.at].written.empty();
        bytes_of_part promised(range.begin, range.end), seen(range.begin, range.end);
        std::vector<long long> starts;
        for (const told_rows &t : c.rows)
            if (t.at == p.at && (t.written || !written))
                for_each_row(t.rows, [&](long long at, long long bytes) {
                    starts.push_back(at);
                    for (long long i = 0; i < bytes; ++i)
                        promised.set(at + i);
                });
        if (written)
            for (long long i = range.begin; i < range.end; ++i)
                if (first.at(p.at)[i] == second.at(p.at)[i]) {
                    if (!promised.has(i))
                        throw std::runtime_error(c.name + " writes byte " + std::to_string(i) +
                                                 " of " + name_of(p.at) + ", which nobody told");
                    seen.set(i);
                }
        if (written && (!seen.has(range.begin) || !seen.has(range.end - 1)))
            throw std::runtime_error(c.name + " does not write all of " + name_of(p.at));
        std::sort(starts.begin(), starts.end());
        starts.erase(std::unique(starts.begin(), starts.end()), starts.end());
        const std::string bytes =
            "[" + std::to_string(range.begin) + ", " + std::to_string(range.end) + ")";
        made.push_back({std::string(name_of(p.at)) + ", " + (written ? "written" : "read") +
                            ": bytes " + bytes + ", " + std::to_string(p.picture.front().pitch) +
                            " to a line, " + std::to_string(p.unit) + " to a cell",
                        draw(p, range.begin, range.end, written ? seen : promised, starts)});
    }
    return made;
}

} // namespace pictures
