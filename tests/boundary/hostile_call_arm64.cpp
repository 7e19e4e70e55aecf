// Every register that belongs to the caller of a 64-bit ARM library, with something in it.
#include "tests/boundary/hostile_functions_64.h"

#include <cstdint>
#include <cstring>

extern "C" void hostile_call(void *record);

namespace {

struct registers {
    word x19_to_x29[11], d8_to_d15[8], sp, fpcr;
    word x18; // Windows keeps something there, which no call may change
};

constexpr int argument_words = 10;

// The assembler knows the offsets.
struct call_record {
    void (*function)();
    word arguments[argument_words];
    registers before, after; // sp and fpcr are filled in by the call
};
static_assert(sizeof(registers) == 176 && sizeof(call_record) == 88 + 2 * 176);

// Its frame: x29, x30, x19 to x28, d8 to d15, the record.
__asm__(R"(
    .macro each_register instruction, at
    \instruction x19, [x0, #\at]
    \instruction x20, [x0, #\at + 8]
    \instruction x21, [x0, #\at + 16]
    \instruction x22, [x0, #\at + 24]
    \instruction x23, [x0, #\at + 32]
    \instruction x24, [x0, #\at + 40]
    \instruction x25, [x0, #\at + 48]
    \instruction x26, [x0, #\at + 56]
    \instruction x27, [x0, #\at + 64]
    \instruction x28, [x0, #\at + 72]
    \instruction x29, [x0, #\at + 80]
    \instruction d8, [x0, #\at + 88]
    \instruction d9, [x0, #\at + 96]
    \instruction d10, [x0, #\at + 104]
    \instruction d11, [x0, #\at + 112]
    \instruction d12, [x0, #\at + 120]
    \instruction d13, [x0, #\at + 128]
    \instruction d14, [x0, #\at + 136]
    \instruction d15, [x0, #\at + 144]
    .endm
    .macro stack_and_mode at
    mov x9, sp
    mrs x10, fpcr
    str x9, [x0, #\at + 152]
    str x10, [x0, #\at + 160]
    .endm

    .text
    .globl hostile_call
    .type hostile_call, %function
hostile_call:
    stp x29, x30, [sp, #-176]!
    stp x19, x20, [sp, #16]
    stp x21, x22, [sp, #32]
    stp x23, x24, [sp, #48]
    stp x25, x26, [sp, #64]
    stp x27, x28, [sp, #80]
    stp d8, d9, [sp, #96]
    stp d10, d11, [sp, #112]
    stp d12, d13, [sp, #128]
    stp d14, d15, [sp, #144]
    str x0, [sp, #160]

    ldp x9, x10, [x0, #72] // what registers are too few for
    stp x9, x10, [sp, #-16]!
    each_register ldr, 88
    stack_and_mode 88
    ldr x18, [x0, #88 + 168]
    ldr x16, [x0]
    ldp x6, x7, [x0, #56]
    ldp x4, x5, [x0, #40]
    ldp x2, x3, [x0, #24]
    ldr x1, [x0, #16]
    ldr x0, [x0, #8]
    blr x16

    ldr x0, [sp, #176]
    str x18, [x0, #264 + 168]
    each_register str, 264
    stack_and_mode 264
    add sp, sp, #16
    ldp x19, x20, [sp, #16]
    ldp x21, x22, [sp, #32]
    ldp x23, x24, [sp, #48]
    ldp x25, x26, [sp, #64]
    ldp x27, x28, [sp, #80]
    ldp d8, d9, [sp, #96]
    ldp d10, d11, [sp, #112]
    ldp d12, d13, [sp, #128]
    ldp d14, d15, [sp, #144]
    ldp x29, x30, [sp], #176
    ret
)");

template <class Function, class... Arguments>
void call(const char *name, Function function, Arguments... arguments) {
    call_record record{};
    record.function = reinterpret_cast<void (*)()>(function);
    static_assert(sizeof...(arguments) <= argument_words);
    word *next = record.arguments;
    ((*next++ = as_word(arguments)), ...);
    std::memset(record.before.x19_to_x29, 0xc5, sizeof record.before.x19_to_x29);
    std::memset(record.before.d8_to_d15, 0x5c, sizeof record.before.d8_to_d15);
    record.before.x18 = 0x18181818'18181818;
    hostile_call(&record);

    ++so_far.calls;
    if (spoken != boundary::convention::of_windows)
        record.after.x18 = record.before.x18;
    if (std::memcmp(&record.before, &record.after, sizeof record.after) != 0)
        complain(name, "changes a register of its caller");
}

} // namespace
