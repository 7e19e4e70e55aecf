// The buffers of a measurement: a picture, a subpicture and a surface, on cache lines, all pages
// touched.
#pragma once

#include "bench/slices.h"

#include <lumalane.h>

#include <cstddef>
#include <cstdlib>
#include <iosfwd>
#include <memory>

namespace lumalane::bench {

class buffer {
public:
    explicit buffer(std::size_t bytes); // of random content
    unsigned char *data() const { return memory_.get(); }
    std::size_t bytes() const { return bytes_; }

private:
    std::size_t bytes_;
    std::unique_ptr<unsigned char[], decltype(&std::free)> memory_;
};

struct size {
    int width = 0;
    int height = 0;
    // Not of one number: parsers of options make one so where they can, and read no text then.
    constexpr size() = default;
    constexpr size(int w, int h) : width(w), height(h) {}
    double pixels() const { return double(width) * height; }
};

// "320x240", out and in. What is read is a multiple of 16 wide and of 4 high, and 48x16 at least.
std::ostream &operator<<(std::ostream &out, size picture);
std::istream &operator>>(std::istream &in, size &picture);

struct scene {
    scene(size picture, double dst_pitch_per_pixel);

    size picture() const { return {width, height}; }
    slice whole() const { return {0, height}; }

    int width;
    int height;
    int src_pitch;
    int dst_pitch;
    buffer y; // the picture, or one packed picture
    buffer u;
    buffer v;
    buffer alpha; // the subpicture: pitches as of the picture, chroma on every row
    buffer sub_y;
    buffer sub_u;
    buffer sub_v;
    buffer dst; // with room for twice the rows, of YV12 too
    tag_ajust_contrast_info info;
};

inline slice no_rows(int) { return {0, 0}; }

// What is in the buffers, where it matters how long a function takes or what is asked of it.
struct situation {
    const char *name; // empty: random bytes
    void (*arrange)(scene &random);
    double subpicture = 1; // how much of the subpicture's colours is read or written
    slice (*busy_rows)(int height) = no_rows; // those that take longer than others
};

namespace situations {
extern const situation random;

// Subpictures: over a twentieth of the picture, or half-transparent over all of it.
extern const situation subtitles, veil;

// Drawing surfaces: without a pixel of the key colour, or nine tenths of the rows of nothing else.
extern const situation drawn, mostly_key;

// Pictures: of one colour, or with edges everywhere.
extern const situation flat, edges;
} // namespace situations

using picture_function = void(unsigned char *, unsigned char *, unsigned char *, unsigned char *,
                              int, int, int, int, tag_ajust_contrast_info *);
using mix_function = void(tagMIX_INFO *);
using key_fill_function = void(unsigned, void *, int, int, int, int);
using mask_function = void(unsigned char *, unsigned char *, unsigned, unsigned, int, int, int);
using packed_stretch_function = void(void *, void *, void *, void *, int, int, int);
using packed_stretch_ajust_function = void(void *, void *, void *, void *, int, int, int,
                                           tag_ajust_contrast_info *);
using plane_stretch_function = void(unsigned char *, unsigned char *, int, int, int, int);
using plane_stretch_ajust_function = void(unsigned char *, unsigned char *, int, int, int, int,
                                          tag_ajust_contrast_info *, int);
using frame_stretch_function = void(tagVideoFrame *, int, int, unsigned char *, int,
                                    tag_ajust_contrast_info *);

// One overload per signature: how a function of it is called for a slice of the scene. Those that
// cannot be cut are called for the whole scene.
void call(picture_function *function, scene &scene, slicing how, slice rows);
void call(mix_function *function, scene &scene, slicing how, slice rows);
void call(key_fill_function *function, scene &scene, slicing how, slice rows);
void call(mask_function *function, scene &scene, slicing how, slice rows);
void call(packed_stretch_function *function, scene &scene, slicing how, slice rows);
void call(packed_stretch_ajust_function *function, scene &scene, slicing how, slice rows);
void call(plane_stretch_function *function, scene &scene, slicing how, slice rows);
void call(plane_stretch_ajust_function *function, scene &scene, slicing how, slice rows);
void call(frame_stretch_function *function, scene &scene, slicing how, slice rows);

} // namespace lumalane::bench
