// Every register and mode that belongs to the caller of a 64-bit x86 library, with something in it:
// by the convention of Linux, or by that of Windows.
#include "tests/boundary/hostile_functions_64.h"
#include "tests/boundary/upper_halves.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

extern "C" void hostile_call(void *record);

namespace {

struct registers {
    word rbx, rbp, r12, r13, r14, r15, rsp, rsi, rdi;
    std::uint32_t mxcsr, control; // of the floating-point unit
    word flags;
    std::uint8_t xmm6_to_xmm15[10][16];
};

constexpr int argument_words = 12;

// The assembler knows the offsets.
struct call_record {
    void (*function)();
    word rdi, rsi, rdx, rcx, r8, r9;
    word stack[argument_words];
    registers before, after; // rsp and flags before are not read
    struct {                 // as fnstenv stores it
        std::uint32_t control, status, tags, unread[4];
    } environment;
};
static_assert(sizeof(registers) == 248 && offsetof(registers, xmm6_to_xmm15) == 88);
static_assert(offsetof(call_record, stack) == 56 && offsetof(call_record, before) == 152 &&
              offsetof(call_record, after) == 400 && offsetof(call_record, environment) == 648);

// Its frame: six registers; the modes; the arguments on the stack, and the record.
__asm__(R"(
    .text
    .globl hostile_call
    .type hostile_call, @function
hostile_call:
    pushq %rbp
    pushq %rbx
    pushq %r12
    pushq %r13
    pushq %r14
    pushq %r15
    subq $24, %rsp
    stmxcsr 8(%rsp)
    fnstcw 12(%rsp)
    movq %rdi, %r11
    subq $112, %rsp
    movq %r11, 96(%rsp)
    movl $12, %ecx
0:  movq 48(%r11, %rcx, 8), %rax
    movq %rax, -8(%rsp, %rcx, 8)
    decl %ecx
    jnz 0b

    ldmxcsr 224(%r11)
    fldcw 228(%r11)
    movups 240(%r11), %xmm6
    movups 256(%r11), %xmm7
    movups 272(%r11), %xmm8
    movups 288(%r11), %xmm9
    movups 304(%r11), %xmm10
    movups 320(%r11), %xmm11
    movups 336(%r11), %xmm12
    movups 352(%r11), %xmm13
    movups 368(%r11), %xmm14
    movups 384(%r11), %xmm15
    movq 152(%r11), %rbx
    movq 160(%r11), %rbp
    movq 168(%r11), %r12
    movq 176(%r11), %r13
    movq 184(%r11), %r14
    movq 192(%r11), %r15
    movq %rsp, 200(%r11)
    movq 8(%r11), %rdi
    movq 16(%r11), %rsi
    movq 24(%r11), %rdx
    movq 32(%r11), %rcx
    movq 40(%r11), %r8
    movq 48(%r11), %r9
    movq (%r11), %rax
    cld
    call *%rax

    movq 96(%rsp), %r11
    movq %rbx, 400(%r11)
    movq %rbp, 408(%r11)
    movq %r12, 416(%r11)
    movq %r13, 424(%r11)
    movq %r14, 432(%r11)
    movq %r15, 440(%r11)
    movq %rsp, 448(%r11)
    movq %rsi, 456(%r11)
    movq %rdi, 464(%r11)
    stmxcsr 472(%r11)
    fnstcw 476(%r11)
    pushfq
    popq 480(%r11)
    movups %xmm6, 488(%r11)
    movups %xmm7, 504(%r11)
    movups %xmm8, 520(%r11)
    movups %xmm9, 536(%r11)
    movups %xmm10, 552(%r11)
    movups %xmm11, 568(%r11)
    movups %xmm12, 584(%r11)
    movups %xmm13, 600(%r11)
    movups %xmm14, 616(%r11)
    movups %xmm15, 632(%r11)
    fnstenv 648(%r11)

    cld
    fninit
    addq $112, %rsp
    fldcw 12(%rsp)
    ldmxcsr 8(%rsp)
    addq $24, %rsp
    popq %r15
    popq %r14
    popq %r13
    popq %r12
    popq %rbx
    popq %rbp
    ret
)");

constexpr word direction_flag = 1 << 10;
constexpr std::uint32_t empty_tags = 0xffff;
// Neither is what programs begin with: towards zero, denormals are zeros; and of 53 bits.
constexpr std::uint32_t unusual_mxcsr = 0xffc0, unusual_control = 0x0e7f;

template <class Function, class... Arguments>
void call(const char *name, Function function, Arguments... arguments) {
    static const bool has_upper_halves = __builtin_cpu_supports("avx");
    const bool windows = spoken == boundary::convention::of_windows;

    call_record record{};
    record.function = reinterpret_cast<void (*)()>(function);
    std::memset(&record.rdi, 0xd1, sizeof record.stack + 6 * sizeof(word));
    const word words[] = {as_word(arguments)...};
    static_assert(std::size(words) <= argument_words);
    word *const linux_registers[] = {&record.rdi, &record.rsi, &record.rdx,
                                     &record.rcx, &record.r8,  &record.r9};
    word *const windows_registers[] = {&record.rcx, &record.rdx, &record.r8, &record.r9};
    const std::size_t in_registers =
        windows ? std::size(windows_registers) : std::size(linux_registers);
    // Windows has room for the registers below what is on the stack.
    word *const on_stack = record.stack + (windows ? in_registers : 0);
    for (std::size_t i = 0; i < std::size(words); ++i)
        *(i >= in_registers ? on_stack + (i - in_registers)
          : windows         ? windows_registers[i]
                            : linux_registers[i]) = words[i];

    std::memset(&record.before, 0xc5, sizeof record.before);
    record.before.rsi = record.rsi;
    record.before.rdi = record.rdi;
    record.before.mxcsr = unusual_mxcsr;
    record.before.control = unusual_control;
    if (has_upper_halves)
        __asm__ volatile("vzeroupper");
    hostile_call(&record);

    ++so_far.calls;
    const registers &before = record.before, &after = record.after;
    if (std::memcmp(&before, &after, offsetof(registers, rsi)) != 0)
        complain(name, "changes rbx, rbp, r12 to r15 or rsp");
    if (after.mxcsr != unusual_mxcsr)
        complain(name, "changes MXCSR");
    if (after.control != unusual_control)
        complain(name, "changes the floating-point control word");
    if (after.flags & direction_flag)
        complain(name, "leaves the direction flag set");
    if ((record.environment.tags & empty_tags) != empty_tags)
        complain(name, "leaves the multimedia state in use");
    if (has_upper_halves && upper_halves_in_use())
        complain(name, "leaves the upper halves of the wide registers in use");
    if (windows && (after.rsi != before.rsi || after.rdi != before.rdi))
        complain(name, "changes rsi or rdi");
    if (windows &&
        std::memcmp(before.xmm6_to_xmm15, after.xmm6_to_xmm15, sizeof before.xmm6_to_xmm15) != 0)
        complain(name, "changes xmm6 to xmm15");
}

} // namespace
