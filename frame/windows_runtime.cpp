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
// takes the frame.
#if defined(_M_IX86)
__asm__(R"(
    .globl __chkstk
__chkstk:
    pushl %ecx
    leal 8(%esp), %ecx
1:  cmpl $0x1000, %eax
    jb 2f
    subl $0x1000, %ecx
    orl $0, (%ecx)
    subl $0x1000, %eax
    jmp 1b
2:  subl %eax, %ecx
    orl $0, (%ecx)
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
1:  cmpq $0x1000, %rax
    jb 2f
    subq $0x1000, %rcx
    orq $0, (%rcx)
    subq $0x1000, %rax
    jmp 1b
2:  subq %rax, %rcx
    orq $0, (%rcx)
    popq %rax
    popq %rcx
    ret
)");
#endif
