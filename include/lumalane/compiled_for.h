// The namespace of convert(), blend(), stretch(), the checked calls and what they call. Files of one
// program may be compiled for different processors, and of an inline function that two files have the
// linker takes one: so each kind of processor has functions of its own, under the same names.
#ifndef LUMALANE_COMPILED_FOR_H
#define LUMALANE_COMPILED_FOR_H

#if defined(__AVX512F__)
#define LUMALANE_COMPILED_FOR for_avx512
#elif defined(__AVX2__)
#define LUMALANE_COMPILED_FOR for_avx2
#elif defined(__AVX__)
#define LUMALANE_COMPILED_FOR for_avx
#elif defined(__SSE4_2__)
#define LUMALANE_COMPILED_FOR for_sse4_2
#elif defined(__SSE4_1__)
#define LUMALANE_COMPILED_FOR for_sse4_1
#elif defined(__SSSE3__)
#define LUMALANE_COMPILED_FOR for_ssse3
#elif defined(__SSE3__)
#define LUMALANE_COMPILED_FOR for_sse3
#elif defined(__SSE2__) || defined(_M_X64)
#define LUMALANE_COMPILED_FOR for_sse2
#elif defined(__ARM_FEATURE_SVE)
#define LUMALANE_COMPILED_FOR for_sve
#elif defined(__riscv_vector)
#define LUMALANE_COMPILED_FOR for_riscv_vector
#else
#define LUMALANE_COMPILED_FOR for_any_processor
#endif

#endif
