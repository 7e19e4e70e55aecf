// The arguments of a picture function, in their order.
#pragma once

#include "abi/signatures.h"
#include "tests/model/memory.h"

namespace model {

struct picture {
    unsigned char *src;
    unsigned char *src_u;
    unsigned char *src_v;
    unsigned char *dst;
    int width;
    int height;
    int src_pitch;
    int dst_pitch;
    tag_ajust_contrast_info *info;
};

} // namespace model
