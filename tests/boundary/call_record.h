// What hostile_call.cpp and hostile_call.S tell each other. The assembler reads the numbers only.
#pragma once

// Offsets in registers.
#define EBX 0
#define ESI 4
#define EDI 8
#define EBP 12
#define ESP 16

// Offsets in call_record.
#define FUNCTION 0
#define STACK_OFFSET 4
#define ARGUMENTS 8
#define BEFORE 72
#define AFTER 92
#define FLAGS 112
#define ENVIRONMENT 116
#define OWN_STACK 144
#define OWN_CONTROL_WORD 148

#define ARGUMENT_WORDS 16

#ifndef __ASSEMBLER__

#include <cstddef>
#include <cstdint>

namespace boundary {

using word = std::uint32_t;

struct registers {
    word ebx, esi, edi, ebp, esp;
    bool operator==(const registers &) const = default;
};
static_assert(offsetof(registers, ebx) == EBX && offsetof(registers, esi) == ESI &&
              offsetof(registers, edi) == EDI && offsetof(registers, ebp) == EBP &&
              offsetof(registers, esp) == ESP);

struct call_record {
    void (*function)();
    word stack_offset;              // of esp at the call, above a multiple of 16
    word arguments[ARGUMENT_WORDS]; // as many of them as the function takes
    registers before;               // what the function finds; esp is filled in by the call

    // What the function left.
    registers after;
    word flags;
    struct { // as fnstenv stores it
        word control, status, tags, unread[4];
    } environment;

    // Where the call keeps its own state.
    word own_stack;
    std::uint16_t own_control_word;
};
static_assert(offsetof(call_record, function) == FUNCTION);
static_assert(offsetof(call_record, stack_offset) == STACK_OFFSET);
static_assert(offsetof(call_record, arguments) == ARGUMENTS);
static_assert(offsetof(call_record, before) == BEFORE);
static_assert(offsetof(call_record, after) == AFTER);
static_assert(offsetof(call_record, flags) == FLAGS);
static_assert(offsetof(call_record, environment) == ENVIRONMENT);
static_assert(offsetof(call_record, own_stack) == OWN_STACK);
static_assert(offsetof(call_record, own_control_word) == OWN_CONTROL_WORD);

// Makes the call: every MMX register in use, the direction flag clear.
extern "C" void hostile_call(call_record *);

} // namespace boundary

#endif
