// What the DLL has in place of a C runtime: what the compiler takes for granted.
#include <stddef.h>

extern "C" {

// The entry point. There is nothing to set up.
int __stdcall lumalane_entry(void *, unsigned, void *);
int __stdcall lumalane_entry(void *, unsigned, void *) { return 1; }

// The compiler refers to it wherever vectors of floats occur (here they are shuffled only).
extern const int _fltused;
const int _fltused = 0;

// For copies of large structs.
void *memcpy(void *to, const void *from, size_t count);
void *memcpy(void *to, const void *from, size_t count) {
    void *end = to;
    __asm__ volatile("rep movsb" : "+D"(end), "+S"(from), "+c"(count) : : "memory");
    return to;
}
}

// Called before a function takes a stack frame of a page or more, to touch every page of it in
// order: that is how the system grows a stack. The size comes in eax or rax; the 32-bit one also
// takes the frame. Leaves `at`, the stack before the call, where the frame ends.
#define LUMALANE_TOUCH_PAGES(size, at)                                                             \
    "1:  cmp $0x1000, " size "\n"                                                                  \
    "    jb 2f\n"                                                                                  \
    "    sub $0x1000, " at "\n"                                                                    \
    "    orl $0, (" at ")\n"                                                                       \
    "    sub $0x1000, " size "\n"                                                                  \
    "    jmp 1b\n"                                                                                 \
    "2:  sub " size ", " at "\n"                                                                   \
    "    orl $0, (" at ")\n"
#if defined(_M_IX86)
__asm__(R"(
    .globl __chkstk
__chkstk:
    pushl %ecx
    leal 8(%esp), %ecx
)" LUMALANE_TOUCH_PAGES("%eax", "%ecx") R"(
    movl %esp, %eax
    movl %ecx, %esp
    movl (%eax), %ecx
    jmpl *4(%eax)
)");
#elif defined(_M_X64)
__asm__(R"(
    .globl __chkstk
__chkstk:
    pushq %rcx
    pushq %rax
    leaq 24(%rsp), %rcx
)" LUMALANE_TOUCH_PAGES("%rax", "%rcx") R"(
    popq %rax
    popq %rcx
    ret
)");
#endif
