// Everything that Lumalane offers to C++17: the functions of lumalane.h and its companions. They are
// header-only, and need neither a heap nor exceptions nor, but for picture.h, any other headers than
// <stddef.h> and <stdint.h>.
#ifndef LUMALANE_HPP
#define LUMALANE_HPP

#include <lumalane.h>

#include <lumalane/checked.h>
#include <lumalane/errors.h>
#include <lumalane/footprint.h>
#include <lumalane/picture.h>

#endif
