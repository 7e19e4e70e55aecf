// What the DLL has in place of a C runtime.

extern "C" {

// The entry point. There is nothing to set up.
int __stdcall lumalane_entry(void *, unsigned, void *);
int __stdcall lumalane_entry(void *, unsigned, void *) { return 1; }

// The compiler refers to it wherever vectors of floats occur (here they are shuffled only).
extern const int _fltused;
const int _fltused = 0;
}
