// What the DLL has in place of a C runtime: what the compiler takes for granted.
#include <stddef.h>

extern "C" {

// The entry point. There is nothing to set up.
int __stdcall lumalane_entry(void *, unsigned, void *);
int __stdcall lumalane_entry(void *, unsigned, void *) { return 1; }

// The compiler refers to it wherever vectors of floats occur (here they are shuffled only).
extern const int _fltused;
const int _fltused = 0;

// For copies of large structs. (Not to become a call of itself.)
void *memcpy(void *to, const void *from, size_t count);
__attribute__((no_builtin("memcpy"))) void *memcpy(void *to, const void *from, size_t count) {
    unsigned char *const dst = static_cast<unsigned char *>(to);
    for (size_t i = 0; i < count; ++i)
        dst[i] = static_cast<const unsigned char *>(from)[i];
    return to;
}
}
