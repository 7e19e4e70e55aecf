# The library: kernel files compiled once per lane set, and the frame around them.

# Warnings for every target of the project.
add_library(lumalane_warnings INTERFACE)
target_compile_options(lumalane_warnings INTERFACE -Wall -Wextra -Wshadow
                       $<$<BOOL:${LUMALANE_WERROR}>:-Werror>)

# Each is compiled once per lane set.
set(kernel_files
    frame/kernels.cpp
    load/yuy2_to_rgb.cpp
    load/yuy2_to_yuy2.cpp
    load/yv12_to_rgb.cpp
    load/yv12_to_yuy2.cpp
    load/yv12_to_yv12.cpp
    mix/interlaced.cpp
    mix/progressive.cpp
    stretch/double_size_to_yuy2.cpp
    stretch/frame_to_yuy2.cpp
    stretch/yv12_to_rgb.cpp
    stretch/yv12_to_yuy2.cpp
    stretch/yv12_to_yv12.cpp
    subpicture/alpha_transfers.cpp
    subpicture/ayuy2_to_rgb.cpp
    subpicture/colour_key.cpp
    subpicture/mix_onto_yuy2.cpp
    subpicture/mix_onto_yv12.cpp
    subpicture/rgb_to_ayuy2.cpp)

set(frame_files frame/adjustment.cpp frame/dispatch.cpp frame/exports.cpp)
if(WIN32)
  list(APPEND frame_files frame/windows_runtime.cpp)
endif()

# 32-bit libraries start on a processor with SSE and no SSE2, for callers that align the stack to
# 4 bytes (the compiler for Windows assumes no more).
set(x86_32 FALSE)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(x86_32 TRUE)
endif()

set(sanitized FALSE)
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  set(sanitized TRUE)
endif()

add_library(lumalane_options INTERFACE)
target_include_directories(lumalane_options INTERFACE ${PROJECT_SOURCE_DIR})
target_link_libraries(lumalane_options INTERFACE lumalane_warnings)
target_compile_definitions(lumalane_options INTERFACE
                           LUMALANE_BUILD $<$<BOOL:${sanitized}>:LUMALANE_SANITIZED>)
target_compile_options(
  lumalane_options
  INTERFACE -ffreestanding -fno-exceptions -fno-rtti -fno-threadsafe-statics -fno-stack-protector
            -fvisibility=hidden -Wmissing-declarations
            # No calls of memcpy or memset in place of our loops: there is nobody to provide them.
            $<$<CXX_COMPILER_ID:GNU>:-fno-tree-loop-distribute-patterns>
            # Where a short loop happens to lie makes up to 1.5 times the difference.
            $<$<CXX_COMPILER_ID:GNU>:-falign-loops=32>
            # Constants come from memory: made from general registers they would be made again in
            # every turn of a loop.
            $<$<CXX_COMPILER_ID:GNU>:-mtune-ctrl=^inter_unit_moves_to_vec>
            # The processor's window is too short to find the parallelism of a step by itself. (With
            # the 8 registers of 32 bits there is nothing to gain.) But nothing may move up over the
            # branch that decides about it.
            $<$<AND:$<CXX_COMPILER_ID:GNU>,$<NOT:$<BOOL:${x86_32}>>>:-fschedule-insns$<SEMICOLON>-fsched-pressure$<SEMICOLON>-fno-sched-spec>
            $<$<BOOL:${x86_32}>:-march=pentium3>
            $<$<AND:$<BOOL:${x86_32}>,$<NOT:$<BOOL:${WIN32}>>>:-mstackrealign>)

set(lane_sets portable sse2 avx2)
# Clang inlines the loops over lanes into each other beyond all measure.
set(lane_flags_portable $<$<CXX_COMPILER_ID:Clang>:-Os>)
set(lane_flags_sse2 -msse2)
set(lane_flags_avx2 -mavx2)
# lumalane_lanes(TARGET LANES FILE ...): the objects of the files, compiled for the lane set.
function(lumalane_lanes target lanes)
  add_library(${target} OBJECT ${ARGN})
  target_link_libraries(${target} PRIVATE lumalane_options)
  target_compile_definitions(${target} PRIVATE LUMALANE_LANES=${lanes})
  target_compile_options(${target} PRIVATE ${lane_flags_${lanes}})
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

set(objects "")
foreach(lanes IN LISTS lane_sets)
  lumalane_lanes(lumalane_lanes_${lanes} ${lanes} ${kernel_files})
  list(APPEND objects $<TARGET_OBJECTS:lumalane_lanes_${lanes}>)
endforeach()
add_library(lumalane_frame OBJECT ${frame_files})
target_link_libraries(lumalane_frame PRIVATE lumalane_options)
list(APPEND objects $<TARGET_OBJECTS:lumalane_frame>)
set_target_properties(lumalane_frame PROPERTIES POSITION_INDEPENDENT_CODE ON)

add_library(lumalane_static STATIC ${objects})
add_library(lumalane::static ALIAS lumalane_static)
target_compile_definitions(lumalane_static INTERFACE LUMALANE_STATIC)
set_target_properties(lumalane_static PROPERTIES OUTPUT_NAME lumalane EXPORT_NAME static)
if(WIN32)
  # The import library is lumalane.lib.
  set_target_properties(lumalane_static PROPERTIES OUTPUT_NAME lumalane_static)
endif()

# Users include <lumalane.h>; the project's own programs include its headers from the root.
function(lumalane_install target)
  target_include_directories(${target} INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                                 $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/frame>)
  install(TARGETS ${target} EXPORT lumalane INCLUDES DESTINATION include)
endfunction()

include(GNUInstallDirs)
install(FILES frame/lumalane.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT lumalane NAMESPACE lumalane:: FILE lumalane-config.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/lumalane)
lumalane_install(lumalane_static)

# Sanitized code needs its runtime, which a library without any cannot have.
if(sanitized)
  return()
endif()

add_library(lumalane_shared SHARED ${objects})
add_library(lumalane::lumalane ALIAS lumalane_shared)
lumalane_install(lumalane_shared)
set_target_properties(lumalane_shared PROPERTIES OUTPUT_NAME lumalane EXPORT_NAME lumalane)
if(WIN32)
  target_link_options(lumalane_shared PRIVATE -nostdlib LINKER:/entry:lumalane_entry
                      LINKER:/dynamicbase LINKER:/nxcompat LINKER:/Brepro)
else()
  set_target_properties(lumalane_shared PROPERTIES SOVERSION ${PROJECT_VERSION_MAJOR}
                                                   VERSION ${PROJECT_VERSION})
  target_link_options(lumalane_shared PRIVATE -nostdlib LINKER:-z,defs LINKER:-z,relro LINKER:-z,now
                      LINKER:-z,noexecstack)
endif()
