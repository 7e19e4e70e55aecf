// The picture adjustment of convert(), blend() and stretch().
//
// The library has one adjustment for the whole process (get_contrast_data()), and cannot be asked
// what it is. So a call with an adjustment of its own takes a lock, sets it, and puts back what was
// last set by set_adjustment(): before the first time all gains and offsets of 0, with which the
// library starts. That means:
//
//   - Calls with an adjustment take turns, on whichever threads and for whichever players in one
//     process they are made. Each has the adjustment that it was given. So do those calls of blend()
//     and stretch() without one whose functions always adjust, which are told to change nothing:
//     blend() onto all but yv12 and i420, stretch() onto all but yuy2, and along_edges. All others
//     run beside each other and beside those.
//   - Who calls functions with _ajust or _adjust of lumalane.h as well sets their adjustment by
//     set_adjustment(), not by get_contrast_data(): what that sets lasts until the next call with an
//     adjustment here.
//   - Such a function that runs while another thread is in a call that takes a turn has that call's
//     adjustment. Two players in one process are right if both use convert(), blend() and
//     stretch() alone.
//   - Every module (program, DLL) that the static library is linked into has an adjustment and a lock
//     of its own. With the shared library modules have one adjustment, and one lock but on Windows, and
//     where clang made them and dlopen() loads them with RTLD_LOCAL: there calls of different modules
//     take no turns, and those that adjust link the static library.
#ifndef LUMALANE_ADJUST_H
#define LUMALANE_ADJUST_H

#include <lumalane.h>
#include <lumalane/compiled_for.h>

#include <mutex>

#if defined(__MINGW32__) && defined(__GLIBCXX__) && !defined(_GLIBCXX_HAS_GTHREADS)
#error "No std::mutex: MinGW must be the one with POSIX threads (i686-w64-mingw32-g++-posix)"
#endif

namespace lumalane {

/// Gains in 1/64 and offsets, as contrast_data has them; as it is constructed it changes nothing. Each of U and
/// V has its own offset in every format. (stretch() onto yv12 and i420 has one gain for all planes.)
struct adjustment {
    int y_gain = 64;
    int uv_gain = 64;
    int y_offset = 0;
    int u_offset = 0;
    int v_offset = 0;
};

// A module's own copy of the library is told by no other module's functions.
#if defined(LUMALANE_STATIC) && !defined(_WIN32)
#pragma GCC visibility push(hidden)
#endif
namespace detail {

struct process_adjustment {
    std::mutex lock;
    adjustment last_set{0, 0, 0, 0, 0};
};

// One for all modules that share the library, also where they hide their functions.
#if !defined(_WIN32)
LUMALANE_API
#endif
inline process_adjustment the_process_adjustment;

inline namespace LUMALANE_COMPILED_FOR {

inline void apply(const adjustment &a) {
    contrast_data values{a.y_gain, a.uv_gain, a.y_offset, a.u_offset, a.v_offset, 0, 0, 0};
    get_contrast_data(&values);
}

// In force for as long as it exists.
class own_adjustment {
public:
    explicit own_adjustment(const adjustment &own) : locked(the_process_adjustment.lock) {
        apply(own);
    }
    ~own_adjustment() { apply(the_process_adjustment.last_set); }
    own_adjustment(const own_adjustment &) = delete;
    own_adjustment &operator=(const own_adjustment &) = delete;

private:
    std::lock_guard<std::mutex> locked;
};

} // namespace LUMALANE_COMPILED_FOR
} // namespace detail

inline namespace LUMALANE_COMPILED_FOR {

/// Sets the adjustment of the process: that of the functions of lumalane.h with _ajust or _adjust.
inline void set_adjustment(const adjustment &a) {
    const std::lock_guard<std::mutex> locked(detail::the_process_adjustment.lock);
    detail::the_process_adjustment.last_set = a;
    detail::apply(a);
}

} // namespace LUMALANE_COMPILED_FOR
#if defined(LUMALANE_STATIC) && !defined(_WIN32)
#pragma GCC visibility pop
#endif
} // namespace lumalane

#endif
