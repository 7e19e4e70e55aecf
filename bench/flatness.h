// How far the time per pixel depends on the size of the picture, and what bounds it.
#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace lumalane::bench {

// What a pixel costs in pictures of one size.
struct pixel_cost {
    std::string picture;
    double nanoseconds;
    double bytes;            // that it moves
    double copy_nanoseconds; // of memcpy, which takes part in the same turns
    double copy_bytes;       // that memcpy moves, read and written

    // A gigabyte is 10^9 bytes.
    double rate() const { return bytes / nanoseconds; }
    double copy_rate() const { return copy_bytes / copy_nanoseconds; }
    double share_of_copy() const { return rate() / copy_rate(); }
};

// From this share of memcpy's rate on, the memory is what bounds a function.
inline constexpr double memory_bound = 0.75;

class flatness {
public:
    void add(const std::string &function, const pixel_cost &cost);

    // Whether something was measured at more than one size; otherwise nothing is printed.
    bool compares() const;

    // A table, then a sentence for each function whose greatest time is more than `most` times its
    // smallest.
    void print(std::ostream &markdown, double most) const;

private:
    struct entry {
        std::string function;
        std::vector<pixel_cost> costs;
    };
    std::vector<entry> entries_{};
};

} // namespace lumalane::bench
