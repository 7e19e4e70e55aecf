#include "tests/boundary/hostile_functions.h"

#include <bit>
#include <cstdint>
#include <utility>

#include "tests/boundary/call_record.h"
#include "tests/boundary/upper_halves.h"

namespace {

using boundary::word;

constexpr word direction_flag = 1 << 10;
constexpr word empty_tags = 0xffff;

word stack_offset = 0;

void complain_here(const char *function, const std::string &what) {
    complain(function, what + " (stack at +" + std::to_string(stack_offset) + ")");
}

template <class Function, class... Arguments>
void call(const char *name, Function function, Arguments... arguments) {
    static const bool has_upper_halves = __builtin_cpu_supports("avx");
    if (has_upper_halves)
        __asm__ volatile("vzeroupper");

    boundary::call_record record{};
    record.function = reinterpret_cast<void (*)()>(function);
    record.stack_offset = stack_offset;
    word *next = record.arguments;
    ((*next++ = std::bit_cast<word>(arguments)), ...);
    record.before = {0xb0b1b2b3, 0x50515253, 0xd0d1d2d3, 0xe0e1e2e3, 0};
    // Neither is what programs begin with: towards zero, and of 53 bits.
    constexpr unsigned unusual_mxcsr = 0xff80;
    constexpr std::uint16_t unusual_control_word = 0x0e7f;
    unsigned own_mxcsr, left_mxcsr;
    std::uint16_t own_control_word;
    __asm__ volatile("stmxcsr %0\n\tldmxcsr %2\n\tfnstcw %1\n\tfldcw %3"
                     : "=m"(own_mxcsr), "=m"(own_control_word)
                     : "m"(unusual_mxcsr), "m"(unusual_control_word));
    boundary::hostile_call(&record);
    __asm__ volatile("stmxcsr %0\n\tldmxcsr %1\n\tfldcw %2"
                     : "=m"(left_mxcsr)
                     : "m"(own_mxcsr), "m"(own_control_word));

    ++so_far.calls;
    if (left_mxcsr != unusual_mxcsr)
        complain_here(name, "changes MXCSR");
    if (record.after != record.before)
        complain_here(name, "changes ebx, esi, edi, ebp or esp");
    if (record.flags & direction_flag)
        complain_here(name, "leaves the direction flag set");
    if ((record.environment.tags & empty_tags) != empty_tags)
        complain_here(name, "leaves the multimedia state in use");
    if ((record.environment.control & 0xffff) != unusual_control_word)
        complain_here(name, "changes the floating-point control word");
    if (has_upper_halves && upper_halves_in_use())
        complain_here(name, "leaves the upper halves of the wide registers in use");
}

} // namespace

namespace boundary {

std::vector<differential::target> hostile_callers(const tests::function_table &functions,
                                                  convention) {
    called = functions;
    std::vector<differential::target> callers;
    for (const auto &[name, offset] : {std::pair{"stack at +0", 0u},
                                       {"stack at +4", 4u},
                                       {"stack at +8", 8u},
                                       {"stack at +12", 12u}})
        callers.push_back({calling(name), [offset = offset] { stack_offset = offset; }});
    return callers;
}

} // namespace boundary
