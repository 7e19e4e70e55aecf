// The upper halves of the wide registers, which a call must leave clean.
#pragma once

#include <cstdint>

namespace {

__attribute__((target("avx"))) bool upper_halves_in_use() {
    std::uint64_t halves[2];
    __asm__ volatile("vorps %%ymm1, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm2, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm3, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm4, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm5, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm6, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm7, %%ymm0, %%ymm0\n\t"
#ifdef __x86_64__
                     "vorps %%ymm8, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm9, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm10, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm11, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm12, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm13, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm14, %%ymm0, %%ymm0\n\t"
                     "vorps %%ymm15, %%ymm0, %%ymm0\n\t"
#endif
                     "vextractf128 $1, %%ymm0, %0\n\t"
                     "vzeroupper"
                     : "=m"(halves)
                     :
                     : "xmm0");
    return halves[0] != 0 || halves[1] != 0;
}

} // namespace
