# The library: row kernels compiled once per target, and the picture functions, compiled once.

if(WIN32 AND (MINGW OR NOT CMAKE_CXX_COMPILER_ID MATCHES Clang))
  message(FATAL_ERROR "Libraries for Windows are made by clang: presets windows-*.\n"
                      "What they install can be linked by MinGW, too.")
endif()

# Warnings for every target of the project.
add_library(lumalane_warnings INTERFACE)
target_compile_options(lumalane_warnings INTERFACE -Wall -Wextra -Wshadow
                       $<$<BOOL:${LUMALANE_WERROR}>:-Werror>)

# Compiled once per target of abi/targets.inc.
set(row_files
    rows/alpha.cpp
    rows/between.cpp
    rows/blend.cpp
    rows/convert.cpp
    rows/chroma_pairs.cpp
    rows/double.cpp
    rows/emit.cpp
    rows/key.cpp
    rows/packed.cpp
    rows/plane.cpp
    rows/table.cpp)

# Compiled once.
set(library_files
    abi/exports.cpp
    load/row_pairs.cpp
    load/yuy2.cpp
    load/yv12_to_rgb.cpp
    load/yv12_to_yuy2.cpp
    load/yv12_to_yv12.cpp
    mix/interlaced.cpp
    mix/progressive.cpp
    mix/row_mixer.cpp
    mix/yv12.cpp
    picture/adjustment.cpp
    picture/geometry.cpp
    stretch/frame_to_yuy2.cpp
    stretch/yuy2_to_yuy2.cpp
    stretch/yv12_to_rgb.cpp
    stretch/yv12_to_yuy2.cpp
    stretch/yv12_to_yv12.cpp
    subpicture/alpha_transfers.cpp
    subpicture/ayuy2_to_rgb.cpp
    subpicture/colour_key.cpp
    subpicture/rgb_to_ayuy2.cpp)
if(WIN32)
  list(APPEND library_files abi/windows_runtime.cpp)
endif()

# ---- Which targets -------------------------------------------------------------------------------

math(EXPR word_bits "8 * ${CMAKE_SIZEOF_VOID_P}")
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86|x86_64|AMD64|i[3-6]86)$")
  set(processors x86)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64|ARM64)$")
  set(processors arm64)
else()
  set(processors other)
  message(STATUS "Nothing is known of ${CMAKE_SYSTEM_PROCESSOR}: portable row kernels alone")
endif()
list(APPEND library_files abi/cpu_${processors}.cpp)
set(built_processors any ${processors} ${processors}_${word_bits})

# Every target that this processor family has, the narrowest first, with its compiler flags; and
# those that are shipped: not what is narrower than every processor of this word size is.
set(targets "")
set(target_lines "")
file(STRINGS abi/targets.inc lines REGEX "^LUMALANE_TARGET")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS abi/targets.inc)
foreach(line IN LISTS lines)
  if(NOT line MATCHES "^LUMALANE_TARGET\\(([a-z0-9_]+), ([a-z0-9_]+), ([0-9]+), \"([^\"]*)\",")
    message(FATAL_ERROR "abi/targets.inc: cannot read ${line}")
  endif()
  if(CMAKE_MATCH_2 IN_LIST built_processors)
    set(target ${CMAKE_MATCH_1})
    list(APPEND targets ${target})
    separate_arguments(target_flags_${target} UNIX_COMMAND "${CMAKE_MATCH_4}")
    if(CMAKE_MATCH_3 EQUAL word_bits)
      set(shipped_targets "")
      set(shipped_lines "")
    endif()
    list(APPEND shipped_targets ${target})
    string(APPEND target_lines "${line}\n")
    string(APPEND shipped_lines "${line}\n")
  endif()
endforeach()
file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/all/targets_built.inc CONTENT "${target_lines}" @ONLY)
file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/shipped/targets_built.inc CONTENT "${shipped_lines}" @ONLY)

# ---- How ---------------------------------------------------------------------------------------

# 32-bit libraries start on a processor with SSE and no SSE2, for callers that align the stack to
# 4 bytes (the compiler for Windows assumes no more).
set(x86_32 FALSE)
if(processors STREQUAL x86 AND word_bits EQUAL 32)
  set(x86_32 TRUE)
endif()

if(WIN32)
  include(cmake/windows_names.cmake)
endif()

set(cet FALSE)
if(processors STREQUAL x86 AND word_bits EQUAL 64 AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
  set(cet TRUE)
endif()

set(sanitized FALSE)
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  set(sanitized TRUE)
endif()

add_library(lumalane_options INTERFACE)
target_include_directories(lumalane_options INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(lumalane_options INTERFACE lumalane_warnings)
target_compile_definitions(lumalane_options INTERFACE
                           # What the DLL exports is told to the linker: its objects are those of
                           # the static library, too.
                           $<$<BOOL:${WIN32}>:LUMALANE_STATIC>
                           $<$<BOOL:${sanitized}>:LUMALANE_SANITIZED>)
target_compile_options(
  lumalane_options
  INTERFACE -ffreestanding -fno-exceptions -fno-rtti -fno-threadsafe-statics -fno-stack-protector
            -fvisibility=hidden
            # No time in the objects: the static library is the same whenever it is made.
            $<$<BOOL:${WIN32}>:-mno-incremental-linker-compatible>
            # With 64 bits the system finds callers by tables alone: handlers of faults, and debuggers.
            $<$<AND:$<BOOL:${WIN32}>,$<EQUAL:${word_bits},64>>:-fasynchronous-unwind-tables>
            $<$<BOOL:${x86_32}>:-march=pentium3>
            # Marks where calls through pointers may arrive, for processors that see to it. (Linux
            # has that for 64 bits alone.)
            $<$<BOOL:${cet}>:-fcf-protection>
            $<$<AND:$<BOOL:${x86_32}>,$<NOT:$<BOOL:${WIN32}>>>:-mstackrealign>)

# Where the loops along a row are.
add_library(lumalane_row_options INTERFACE)
target_link_libraries(lumalane_row_options INTERFACE lumalane_options)
target_compile_options(
  lumalane_row_options
  INTERFACE # No calls of memcpy or memset in place of our loops.
            $<$<CXX_COMPILER_ID:GNU>:-fno-tree-loop-distribute-patterns>
            # Vectors wider than registers pass between our own functions, compiled alike.
            -Wno-psabi
            # Nor a copy of a loop, or of a function, for each value of what is the same throughout it.
            $<$<CXX_COMPILER_ID:GNU>:-fno-unswitch-loops$<SEMICOLON>-fno-ipa-cp-clone>
            # With it g++ 12 drops stores before calls of functions that it has merged (seen with -Oz).
            $<$<CXX_COMPILER_ID:GNU>:-fno-ipa-modref>
            # Vectors are what the text says: made of pointers they cost more than they save.
            -fno-tree-vectorize -fno-tree-slp-vectorize
            # Records are copied by plain moves. (By string instructions, for every row, mixes to RGB32 took
            # 1.1 times as long at 320x240.)
            $<$<AND:$<CXX_COMPILER_ID:GNU>,$<STREQUAL:${processors},x86>>:-mmemcpy-strategy=unrolled_loop:256:noalign,libcall:-1:noalign>
            $<$<AND:$<CXX_COMPILER_ID:GNU>,$<STREQUAL:${processors},x86>>:-mmemset-strategy=unrolled_loop:256:noalign,libcall:-1:noalign>
            # Where a short loop happens to lie makes up to 1.5 times the difference.
            $<$<CXX_COMPILER_ID:GNU>:-falign-loops=32>
            # Constants come from memory: made from general registers they would be made again in
            # every turn of a loop.
            $<$<AND:$<CXX_COMPILER_ID:GNU>,$<STREQUAL:${processors},x86>>:-mtune-ctrl=^inter_unit_moves_to_vec>
            # The processor's window is too short to find the parallelism of a step by itself. (With
            # the 8 registers of 32 bits there is nothing to gain.) But nothing may move up over the
            # branch that decides about it.
            $<$<AND:$<CXX_COMPILER_ID:GNU>,$<NOT:$<BOOL:${x86_32}>>>:-fschedule-insns$<SEMICOLON>-fsched-pressure$<SEMICOLON>-fno-sched-spec>)

# lumalane_for_target(LIBRARY TARGET FILE ...): the objects of the files, compiled for the target.
function(lumalane_for_target library target)
  add_library(${library} OBJECT ${ARGN})
  target_link_libraries(${library} PRIVATE lumalane_row_options)
  target_compile_definitions(${library} PRIVATE LUMALANE_TARGET_NAME=${target})
  # At -O3 compilers copy a loop for each value of what is the same throughout it.
  target_compile_options(${library} PRIVATE -O2 ${target_flags_${target}})
  if(NOT target IN_LIST shipped_targets)
    # For the tests alone: what is sooner compiled. (32 bits: vectors that no register holds are taken
    # apart, of which others make more code.)
    target_compile_options(${library} PRIVATE $<IF:$<BOOL:${x86_32}>,-Os,-O1>)
  endif()
  set_target_properties(${library} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

function(lumalane_objects library)
  add_library(${library} OBJECT ${ARGN})
  # What kernels are told is stored field by field: copied with wide loads it would wait in the store
  # queue. (Subtitles at 320x240: 1.03 times as fast.)
  target_compile_options(${library} PRIVATE -O2
                         $<$<IN_LIST:${processors},x86$<SEMICOLON>arm64>:-mgeneral-regs-only>)
  target_link_libraries(${library} PRIVATE lumalane_options)
  set_target_properties(${library} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

set(exports abi/exports.cpp)
set(function_files ${library_files})
list(REMOVE_ITEM function_files ${exports})
lumalane_objects(lumalane_functions ${function_files})
target_compile_options(lumalane_functions PRIVATE ${LUMALANE_FUZZ_OPTIONS})
# A module that the static library is linked into exports nothing of it: another module would find that
# in place of its own copy, and share the adjustment. (Seen from C: compilers forget that a name which
# an assembler label says is hidden. So what is called must hide it.)
foreach(kind IN ITEMS static shared)
  lumalane_objects(lumalane_exports_${kind} ${exports})
  target_compile_options(lumalane_exports_${kind} PRIVATE ${LUMALANE_FUZZ_OPTIONS})
  target_include_directories(lumalane_exports_${kind} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/shipped)
  set_target_properties(lumalane_exports_${kind} PROPERTIES EXCLUDE_FROM_ALL ON)
endforeach()
target_compile_definitions(lumalane_exports_static PRIVATE LUMALANE_STATIC)
# The table of the targets, for the library and for the tests.
foreach(which IN ITEMS shipped all)
  lumalane_objects(lumalane_targets_${which} abi/targets.cpp)
  target_include_directories(lumalane_targets_${which} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${which})
endforeach()
target_include_directories(lumalane_functions PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/shipped)

foreach(target IN LISTS targets)
  lumalane_for_target(lumalane_rows_${target} ${target} ${row_files})
  set_target_properties(lumalane_rows_${target} PROPERTIES EXCLUDE_FROM_ALL ON)
endforeach()
set_target_properties(lumalane_targets_all PROPERTIES EXCLUDE_FROM_ALL ON)
set(objects $<TARGET_OBJECTS:lumalane_functions> $<TARGET_OBJECTS:lumalane_targets_shipped>)
foreach(target IN LISTS shipped_targets)
  list(APPEND objects $<TARGET_OBJECTS:lumalane_rows_${target}>)
endforeach()

# ---- The libraries -----------------------------------------------------------------------------

# The static library, with every target: for the tests, which force one.
add_library(lumalane_all_targets STATIC EXCLUDE_FROM_ALL
  $<TARGET_OBJECTS:lumalane_functions> $<TARGET_OBJECTS:lumalane_exports_static>
  $<TARGET_OBJECTS:lumalane_targets_all>)
foreach(target IN LISTS targets)
  target_sources(lumalane_all_targets PRIVATE $<TARGET_OBJECTS:lumalane_rows_${target}>)
endforeach()
target_compile_definitions(lumalane_all_targets INTERFACE LUMALANE_STATIC)
# The project's own programs include its headers from the root.
target_include_directories(lumalane_all_targets INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)

add_library(lumalane_static STATIC ${objects} $<TARGET_OBJECTS:lumalane_exports_static>)
add_library(lumalane::static ALIAS lumalane_static)
target_compile_definitions(lumalane_static INTERFACE LUMALANE_STATIC)
set_target_properties(lumalane_static PROPERTIES OUTPUT_NAME lumalane EXPORT_NAME static)
if(WIN32)
  # The import library is lumalane.lib.
  set_target_properties(lumalane_static PROPERTIES OUTPUT_NAME lumalane_static)
  lumalane_rename_runtime(lumalane_static)
endif()

# Users include <lumalane.h>, and see nothing else of the project.
function(lumalane_install target)
  target_include_directories(${target} INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
  install(TARGETS ${target} EXPORT lumalane INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()

include(GNUInstallDirs)
install(FILES include/lumalane.h include/lumalane_c.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/lumalane DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/lumalane)
# (A file of targets includes what is called as it is, with more behind a dash: were it the package's file,
# the one with the version, too.)
install(EXPORT lumalane NAMESPACE lumalane:: FILE lumalane-targets.cmake DESTINATION ${package_dir})
include(CMakePackageConfigHelpers)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/lumalane-config-version.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES cmake/lumalane-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/lumalane-config-version.cmake
        DESTINATION ${package_dir})
if(NOT WIN32)
  set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  # Relative to the file, so that an installed tree can be moved; but what was told as a place stays there.
  set(prefix_of_pkgconfig ${CMAKE_INSTALL_PREFIX})
  if(NOT IS_ABSOLUTE "${pkgconfig_dir}")
    file(RELATIVE_PATH prefix_from_pkgconfig /${pkgconfig_dir} /)
    set(prefix_of_pkgconfig "\${pcfiledir}/${prefix_from_pkgconfig}")
  endif()
  foreach(name IN ITEMS includedir libdir)
    string(TOUPPER ${name} variable)
    cmake_path(APPEND ${name}_of_pkgconfig "\${prefix}" "${CMAKE_INSTALL_${variable}}")
  endforeach()
  configure_file(cmake/lumalane.pc.in lumalane.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/lumalane.pc DESTINATION ${pkgconfig_dir})
endif()
lumalane_install(lumalane_static)

# Sanitized code needs its runtime, which a library without any cannot have; and there are platforms
# for which objects alone can be made here.
get_property(links_shared GLOBAL PROPERTY TARGET_SUPPORTS_SHARED_LIBS)
if(sanitized OR NOT links_shared)
  add_library(lumalane::lumalane ALIAS lumalane_static)
  return()
endif()

add_library(lumalane_shared SHARED ${objects} $<TARGET_OBJECTS:lumalane_exports_shared>)
add_library(lumalane::lumalane ALIAS lumalane_shared)
lumalane_install(lumalane_shared)
set_target_properties(lumalane_shared PROPERTIES OUTPUT_NAME lumalane EXPORT_NAME lumalane)
if(WIN32)
  target_link_options(lumalane_shared PRIVATE -nostdlib LINKER:/entry:lumalane_entry
                      LINKER:/dynamicbase LINKER:/nxcompat LINKER:/Brepro)
  if(processors STREQUAL x86 AND word_bits EQUAL 64)
    target_link_options(lumalane_shared PRIVATE LINKER:/cetcompat)
  endif()
  configure_file(cmake/lumalane.rc.in lumalane.rc @ONLY)
  target_sources(lumalane_shared PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/lumalane.rc)
  lumalane_import_libraries(lumalane_shared)
  # (Optional: without mingw-w64's own program there is no library for it.)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/lumalane-mingw.def ${CMAKE_CURRENT_BINARY_DIR}/liblumalane.dll.a
          DESTINATION ${CMAKE_INSTALL_LIBDIR} OPTIONAL)
else()
  set_target_properties(lumalane_shared PROPERTIES SOVERSION ${PROJECT_VERSION_MAJOR}
                                                   VERSION ${PROJECT_VERSION})
  target_link_options(lumalane_shared PRIVATE LINKER:--as-needed
                      LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
  # What compilers call by themselves, such as memcpy, comes from the C library; where nothing does,
  # the library needs none. (Options of a project that adds this one may need more.)
  if(PROJECT_IS_TOP_LEVEL)
    target_link_options(lumalane_shared PRIVATE -nostdlib LINKER:-z,defs)
    target_link_libraries(lumalane_shared PRIVATE gcc c)
  endif()
endif()
