# Every companion header by itself, in C++17 with every warning and without exceptions; those that
# are freestanding also for a system that has no C++ library.
# Files that are compiled for different processors share none of their functions.
#     cmake -D include=DIR -D scratch=DIR -D compilers=FILE;... -D clang=FILE -D nm=FILE -P test.cmake
cmake_minimum_required(VERSION 3.25)

set(warnings -Wall -Wextra -Wconversion -Wshadow -pedantic -Werror)
set(freestanding compiled_for.h errors.h rows_of.h store_bounds.h footprint.h checked.h)

file(GLOB headers RELATIVE ${include}/lumalane ${include}/lumalane/*)
function(check header)
  file(WRITE ${scratch}/${header}.cpp
       "#include <lumalane/${header}>\n#include <lumalane/${header}>\n")
  execute_process(COMMAND ${ARGN} -std=c++17 -fno-exceptions -fsyntax-only ${warnings} -I ${include}
                          ${scratch}/${header}.cpp COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(header IN LISTS headers)
  foreach(compiler IN LISTS compilers)
    check(${header} ${compiler})
  endforeach()
  if(clang AND header IN_LIST freestanding)
    check(${header} ${clang} -ffreestanding --target=i686-pc-windows-msvc)
    check(${header} ${clang} -ffreestanding --target=x86_64-pc-windows-msvc)
  endif()
endforeach()

# All of them in one file, in both orders.
foreach(order forward backward)
  if(order STREQUAL backward)
    list(REVERSE headers)
  endif()
  list(JOIN headers ">\n#include <lumalane/" all)
  file(WRITE ${scratch}/${order}.cpp "#include <lumalane/${all}>\n")
  list(GET compilers 0 compiler)
  execute_process(COMMAND ${compiler} -std=c++17 -fsyntax-only ${warnings} -I ${include}
                          ${scratch}/${order}.cpp COMMAND_ERROR_IS_FATAL ANY)
endforeach()

# The functions of a file that uses all of them, and of which the linker may take another file's.
function(shared_functions result compiler)
  set(object ${scratch}/${result}.o)
  execute_process(COMMAND ${compiler} -std=c++17 -O2 ${ARGN} -I ${include} -c ${scratch}/uses.cpp -o ${object}
                  COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND ${nm} -C --defined-only ${object} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL " [WT] lumalane::[^\n]*" functions "${symbols}")
  set(${result} "${functions}" PARENT_SCOPE)
endfunction()

if(nm)
  file(WRITE ${scratch}/uses.cpp "#include <lumalane/lumalane.hpp>
using namespace lumalane;
bool use(const picture &a, const picture &b, const subpicture &c) {
    set_adjustment({});
    return convert(a, b) && convert(a, b, {}) && blend(a, c, 0, 0, b) && blend(a, c, 0, 0, b, {}) &&
           stretch(a, b, stretching::twice_both) && stretch(a, b, stretching::along_edges, {});
}
bool use(const buffer &a, const tag_ajust_contrast_info &b, const mix_buffers &c, const frame_buffers &d) {
    return checked::loadimage_rgb16(a, a, a, a, 16, 16, 16, 32, &b) && checked::mix_ayv12_yv12_p(c) &&
           checked::strech_opt_yuy2_ajust(d, 0, 16, a, 32, nullptr);
}
bool use(const picture_call &a) {
    return footprint_of(functions::loadimage_rgb32, a)[pointer::dst].written.empty();
}
")
  list(GET compilers 0 compiler)
  shared_functions(narrow ${compiler} -mno-avx)
  shared_functions(wide ${compiler} -mavx2)
  list(LENGTH wide count)
  if(count LESS 10)
    message(FATAL_ERROR "${compiler}: only ${count} functions of the companion in an object")
  endif()
  foreach(function IN LISTS wide)
    if(function IN_LIST narrow)
      message(FATAL_ERROR "${compiler}: files for different processors share${function}")
    endif()
  endforeach()
endif()
