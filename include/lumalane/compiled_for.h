// The namespace of the companion's functions. Files of one program may be compiled for different
// processors, and of an inline function that two files have the linker takes one: so each kind of
// processor has functions of its own, under the same names. Types are the same in all files; their
// members are inlined wherever they are called. (Debug builds of MSVC do not, and those of all compilers
// share the constructors that types have by themselves, for a variable without braces.)
#ifndef LUMALANE_COMPILED_FOR_H
#define LUMALANE_COMPILED_FOR_H

// For what compilers make of these functions, which move and compare whole numbers. A kind has what some
// processors have and others of the kind before do not; what always comes together (BMI2 with AVX2, BW,
// DQ and VL of AVX-512) and what is for floating point is not told apart.
#if defined(__AVX512VBMI__) // Ice Lake, Zen 4
#define LUMALANE_COMPILED_FOR for_avx512_vbmi
#elif defined(__AVX512BW__) // Skylake of servers
#define LUMALANE_COMPILED_FOR for_avx512_bw
#elif defined(__AVX512F__) // Knights Landing
#define LUMALANE_COMPILED_FOR for_avx512
#elif defined(__AVX2__) && defined(__XOP__) // Excavator
#define LUMALANE_COMPILED_FOR for_avx2_xop
#elif defined(__AVX2__)
#define LUMALANE_COMPILED_FOR for_avx2
#elif defined(__XOP__) && defined(__BMI__) // Piledriver
#define LUMALANE_COMPILED_FOR for_xop_bmi
#elif defined(__XOP__) // Bulldozer
#define LUMALANE_COMPILED_FOR for_xop
#elif defined(__AVX__) && defined(__BMI__) // Jaguar
#define LUMALANE_COMPILED_FOR for_avx_bmi
#elif defined(__AVX__) // Sandy Bridge
#define LUMALANE_COMPILED_FOR for_avx
#elif defined(__SSE4_2__)
#define LUMALANE_COMPILED_FOR for_sse4_2
#elif defined(__SSE4_1__)
#define LUMALANE_COMPILED_FOR for_sse4_1
#elif defined(__SSSE3__)
#define LUMALANE_COMPILED_FOR for_ssse3
#elif defined(__SSE3__)
#define LUMALANE_COMPILED_FOR for_sse3
#elif defined(__SSE2__) || defined(_M_X64) || (defined(_M_IX86_FP) && _M_IX86_FP >= 2)
#define LUMALANE_COMPILED_FOR for_sse2
#elif defined(__SSE__) || (defined(_M_IX86_FP) && _M_IX86_FP == 1)
#define LUMALANE_COMPILED_FOR for_sse
#elif defined(__ARM_FEATURE_SVE2)
#define LUMALANE_COMPILED_FOR for_sve2
#elif defined(__ARM_FEATURE_SVE)
#define LUMALANE_COMPILED_FOR for_sve
#elif defined(__riscv_vector)
#define LUMALANE_COMPILED_FOR for_riscv_vector
#else
#define LUMALANE_COMPILED_FOR for_any_processor
#endif

#if defined(__GNUC__) || defined(__clang__)
#define LUMALANE_ALWAYS_INLINE __attribute__((always_inline))
#elif defined(_MSC_VER)
#define LUMALANE_ALWAYS_INLINE __forceinline
#else
#define LUMALANE_ALWAYS_INLINE
#endif

#endif
