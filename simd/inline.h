// Functions that are part of what calls them.
#pragma once

// Sanitized code leaves it to the compiler, which would take three times as long.
#ifdef LUMALANE_SANITIZED
#define LUMALANE_INLINE inline
#define LUMALANE_INLINE_LAMBDA
#else
#define LUMALANE_INLINE [[gnu::always_inline]] inline
#define LUMALANE_INLINE_LAMBDA __attribute__((always_inline)) // after the parameters
#endif
