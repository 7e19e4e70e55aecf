// What the library is shown: a frame of the example clip, a test pattern, a subpicture.
#pragma once

#include <string>
#include <vector>

#include "docs/pictures/image.h"

namespace pictures {

/// 4:2:0 planes without gaps.
struct planar {
    int width = 0, height = 0;
    std::vector<unsigned char> y, u, v;

    image picture() const;
    /// Every second row, from the first on.
    planar field() const;
    /// Every second pixel of every second row.
    planar small() const;
    /// The same as YUY2 without gaps, its chroma rows twice.
    std::vector<unsigned char> packed() const;
};

/// From a file of raw video.
planar read_frame(const std::string &path);

/// Spokes on coloured ground: what shows how rows are made of others.
planar wheel(int width, int height);

/// A subtitle and a veil, as AYUY2 without gaps. Alpha runs from 0 to 16.
struct subtitle {
    int width = 0, height = 0;
    std::vector<unsigned char> alpha, y, u, v;

    image picture() const;
};

subtitle make_subtitle(int width, int height);

} // namespace pictures
