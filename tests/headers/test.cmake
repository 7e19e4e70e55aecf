# Every companion header by itself, in C++17 with every warning and without exceptions; those that
# are freestanding also for a system that has no C++ library.
#     cmake -D include=DIR -D scratch=DIR -D compilers=FILE;... -D clang=FILE -P test.cmake
cmake_minimum_required(VERSION 3.25)

set(warnings -Wall -Wextra -Wconversion -Wshadow -pedantic -Werror)
set(freestanding errors.h rows_of.h footprint.h checked.h)

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
