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

# The names of the namespace: one per kind of processor.
function(names_of_processors compiler)
  set(known "")
  foreach(processor IN LISTS ARGN)
    separate_arguments(options UNIX_COMMAND "${processor}")
    execute_process(COMMAND ${compiler} -E -P ${options} -I ${include} ${scratch}/name.cpp
                    OUTPUT_VARIABLE name OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    if(NOT name MATCHES "^for_[a-z0-9_]+$" OR name IN_LIST known)
      message(FATAL_ERROR "${compiler} ${processor}: \"${name}\" is no name of its own")
    endif()
    list(APPEND known ${name})
  endforeach()
endfunction()

# The functions of a file that uses all of them, of which the linker may take another file's.
function(shareable_functions result)
  execute_process(COMMAND ${ARGN} -std=c++17 -I ${include} -c ${CMAKE_CURRENT_LIST_DIR}/uses.cpp
                          -o ${scratch}/uses.o COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND ${nm} -C --defined-only ${scratch}/uses.o OUTPUT_VARIABLE symbols
                  COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL " W [^\n]*" functions "${symbols}")
  # What the lock of the adjustment is made of: calls alone.
  list(FILTER functions EXCLUDE REGEX "^ W (std::(mutex|lock_guard<std::mutex>)::|__clang_call_terminate$)")
  list(LENGTH functions count)
  if(count LESS 10)
    message(FATAL_ERROR "${ARGN}: only ${count} functions of the companion in an object")
  endif()
  set(${result} "${functions}" PARENT_SCOPE)
endfunction()

if(nm)
  file(WRITE ${scratch}/name.cpp "#include <lumalane/compiled_for.h>\nLUMALANE_COMPILED_FOR\n")
  foreach(compiler IN LISTS compilers)
    names_of_processors(
      ${compiler} -mavx512vbmi -mavx512bw -mavx512f "-mavx2 -mxop" -mavx2 "-mxop -mbmi" -mxop
      "-mavx -mbmi" -mavx -msse4.2 -msse4.1 -mssse3 -msse3 -msse2 "-m32 -march=pentium3"
      "-m32 -march=i686")
    set(known "")
    foreach(processor -mno-avx -mavx2 -march=skylake-avx512 -march=icelake-server)
      shareable_functions(functions ${compiler} -O0 ${processor}) # which leaves all that others do
      foreach(function IN LISTS functions)
        if(function IN_LIST known)
          message(SEND_ERROR "${compiler} ${processor}: shared with another processor:${function}")
        endif()
      endforeach()
      list(APPEND known ${functions})
    endforeach()
  endforeach()
endif()
