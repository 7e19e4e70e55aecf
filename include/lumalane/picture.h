// Pictures of any size and any strides: <lumalane.h> without its steps, drift and overruns.
//
//     lumalane::status s = lumalane::convert(source, destination);           // as it is
//     s = lumalane::convert(source, destination, {.y_offset = 10});          // brighter (C++20)
//     if (!s)
//         fail(lumalane::message_of(s.code));
//
// Header-only, C++17, without heap and exceptions; a call needs at most 40 KB of stack. Nothing is
// printed; what is refused has written nothing. Calls may run on several threads at once: see
// <lumalane/adjust.h> for those with an adjustment.
#ifndef LUMALANE_PICTURE_H
#define LUMALANE_PICTURE_H

#include <lumalane/adjust.h>
#include <lumalane/blend.h>
#include <lumalane/convert.h>
#include <lumalane/errors.h>
#include <lumalane/format.h>
#include <lumalane/stretch.h>

#endif
