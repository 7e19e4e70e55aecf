// How much stack a call needs: it runs on a stack of its own, of which one then sees how far down it was
// written.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

#include <ucontext.h>

namespace tests {

// Calls that need more than `size` bytes overrun it.
class own_stack {
public:
    explicit own_stack(std::size_t size) : bytes(size), entry(0) {
        entry = used_by([] {});
    }

    // Bytes of the stack that were written, without those of the entry and the return.
    std::size_t used_by(std::function<void()> function) {
        static constexpr unsigned char unused = 0xA5;
        static ucontext_t caller, callee;
        static std::function<void()> called;
        called = std::move(function);
        std::fill(bytes.begin(), bytes.end(), unused);
        getcontext(&callee);
        callee.uc_stack.ss_sp = bytes.data();
        callee.uc_stack.ss_size = bytes.size();
        callee.uc_link = &caller;
        makecontext(
            &callee, [] { called(); }, 0);
        swapcontext(&caller, &callee);
        const auto deepest = std::find_if(bytes.begin(), bytes.end(),
                                          [](unsigned char byte) { return byte != unused; });
        return static_cast<std::size_t>(bytes.end() - deepest) - entry;
    }

private:
    std::vector<unsigned char> bytes;
    std::size_t entry;
};

} // namespace tests
