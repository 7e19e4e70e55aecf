# Makes include/lumalane_c.h, the functions for C:
#
#     cmake -P cmake/c_header.cmake              writes the file
#     cmake -D check=ON -P cmake/c_header.cmake  fails if it is not as it would be written
#
# Its functions come from abi/exports.inc and abi/signatures.h, its records from lumalane.h.
cmake_minimum_required(VERSION 3.25)

set(root ${CMAKE_CURRENT_LIST_DIR}/..)
include(${CMAKE_CURRENT_LIST_DIR}/names.cmake)
lumalane_read_names()

# parameters_SIGNATURE. (What attributes stand in brackets would not survive in a list.)
file(READ ${root}/abi/signatures.h text)
string(REPLACE "[[maybe_unused]] " "" text "${text}")
string(REGEX REPLACE "[ ]*\\\\\n[ ]*" " " text "${text}")
string(REGEX MATCHALL "#define LUMALANE_PARAMETERS_[^\n]+" lines "${text}")
foreach(line IN LISTS lines)
  string(REGEX MATCH "^#define LUMALANE_PARAMETERS_([a-z_]+) (.*)$" line "${line}")
  set(signature ${CMAKE_MATCH_1})
  set(parameters "${CMAKE_MATCH_2}")
  if(parameters MATCHES "LUMALANE_PARAMETERS_([a-z_]+)")
    string(REPLACE "${CMAKE_MATCH_0}" "${parameters_${CMAKE_MATCH_1}}" parameters "${parameters}")
  endif()
  set(parameters_${signature} "${parameters}")
endforeach()

# The part of lumalane.h from `first` to before `end`.
file(READ ${root}/include/lumalane.h public)
function(part result first end)
  string(FIND "${public}" "${first}" begins)
  string(FIND "${public}" "${end}" ends)
  if(begins LESS 0 OR NOT begins LESS ends)
    message(FATAL_ERROR "include/lumalane.h: no text from '${first}' to '${end}'")
  endif()
  math(EXPR length "${ends} - ${begins}")
  string(SUBSTRING "${public}" ${begins} ${length} text)
  set(${result} "${text}" PARENT_SCOPE)
endfunction()
part(version "#define LUMALANE_VERSION_MAJOR" "// Shared library: ")
part(convention "// Windows of 32 bits" "/// Facts about the destination")
part(records "/// Facts about the destination" "// The records cross")
part(layout "// The records cross" "\n// ---- Picture adjustment")
string(REPLACE "static_assert(" "_Static_assert(" layout "${layout}")

set(functions "")
foreach(name IN LISTS lumalane_names)
  if("${parameters_${signature_${name}}}" STREQUAL "")
    message(FATAL_ERROR "abi/signatures.h: no parameters of ${signature_${name}}")
  endif()
  # In lines of 100 characters.
  string(REPLACE ", " ";" parameters "${parameters_${signature_${name}}}")
  set(line "LUMALANE_C_API void LUMALANE_CALL ${name}(")
  string(LENGTH "${line}" column)
  string(REPEAT " " ${column} indentation)
  set(comma "")
  foreach(parameter IN LISTS parameters)
    string(LENGTH "${line}${comma}${parameter}" length)
    if(length GREATER 99)
      string(APPEND functions "${line},\n")
      set(line "${indentation}${parameter}")
    else()
      string(APPEND line "${comma}${parameter}")
    endif()
    set(comma ", ")
  endforeach()
  string(APPEND functions "${line})\n    LUMALANE_C_NAME(\"${itanium_${name}}\");\n")
endforeach()

set(header [[
// Lumalane for C99, and for languages that bind to C: the functions and records of lumalane.h, which
// documents them. In C++ this is that header.
//
// Made from the list of the exports by cmake/c_header.cmake: change that, not this file.
//
// The functions have one name each in the library, that of C++. Where compilers know assembler
// labels a declaration here says that name. On Windows the names are plain ones: the import
// libraries and the static library have them as aliases.
#ifndef LUMALANE_C_H
#define LUMALANE_C_H

#ifdef __cplusplus
#include "lumalane.h"
#else

#include <stddef.h>

]])
string(APPEND header "${version}" [[
// Shared library: the default. Static library: define LUMALANE_STATIC; every module that it is linked into
// has a copy, and an adjustment, of its own.
#if defined(_WIN32) && defined(LUMALANE_STATIC)
#define LUMALANE_C_API extern
#elif defined(_WIN32)
#define LUMALANE_C_API __declspec(dllimport)
#else
#define LUMALANE_C_API extern
#endif

]] "${convention}" [[
#if defined(_WIN32)
#define LUMALANE_C_NAME(name)
#elif defined(__GNUC__)
// Some platforms put an underscore in front of every name.
#define LUMALANE_C_TEXT_OF(macro) LUMALANE_C_TEXT(macro)
#define LUMALANE_C_TEXT(text) #text
#define LUMALANE_C_NAME(name) __asm__(LUMALANE_C_TEXT_OF(__USER_LABEL_PREFIX__) name)
#else
#error "lumalane_c.h needs a compiler with assembler labels: GCC, clang and those that follow them"
#endif

typedef struct tag_ajust_contrast_info tag_ajust_contrast_info;
typedef struct contrast_data contrast_data;
typedef struct tagMIX_INFO tagMIX_INFO;
typedef struct tagVideoFrame tagVideoFrame;

]] "${records}" [[
#if defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
]] "${layout}" [[
#endif

// clang-format off

]] "${functions}" [[
// clang-format on

#endif
#endif
]])

set(file ${root}/include/lumalane_c.h)
if(NOT check)
  file(WRITE ${file} "${header}")
  return()
endif()
file(READ ${file} found)
if(NOT found STREQUAL header)
  message(FATAL_ERROR "include/lumalane_c.h is out of date: cmake -P cmake/c_header.cmake")
endif()
