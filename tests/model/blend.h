// A subpicture over the video.
#pragma once

#include "tests/model/samples.h"

namespace model {

// Alpha weighs the subpicture, from 0 to 16; more counts as 16.
std::uint8_t blend(std::uint8_t video, std::uint8_t sub, std::uint8_t alpha);

template <std::size_t count>
samples<count> blend(const samples<count> &video, const samples<count> &sub,
                     const samples<count> &alpha) {
    samples<count> blended;
    for (std::size_t i = 0; i < count; ++i)
        blended[i] = blend(video[i], sub[i], alpha[i]);
    return blended;
}

} // namespace model
