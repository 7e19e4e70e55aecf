# Linux on another processor: Debian's cross compiler, of the newest version that is there, and qemu.
# The including file has set CMAKE_SYSTEM_PROCESSOR. (The packages without a version in their names
# would evict gcc-multilib.)
set(CMAKE_SYSTEM_NAME Linux)

set(lumalane_triple ${CMAKE_SYSTEM_PROCESSOR}-linux-gnu)
foreach(version IN ITEMS "" -15 -14 -13 -12)
    list(APPEND lumalane_names ${lumalane_triple}-g++${version})
endforeach()
find_program(lumalane_${CMAKE_SYSTEM_PROCESSOR}_compiler NAMES ${lumalane_names} REQUIRED)
set(CMAKE_CXX_COMPILER ${lumalane_${CMAKE_SYSTEM_PROCESSOR}_compiler})
string(REPLACE g++ gcc lumalane_c_compiler ${CMAKE_CXX_COMPILER})
set(CMAKE_C_COMPILER ${lumalane_c_compiler})
set(CMAKE_ASM_COMPILER ${lumalane_c_compiler})

# What programs load: of the cross compiler's packages, or of a root of their own.
set(lumalane_root /usr/${lumalane_triple})
if(CMAKE_SYSROOT)
    set(lumalane_root ${CMAKE_SYSROOT})
endif()
find_program(lumalane_qemu_${CMAKE_SYSTEM_PROCESSOR} NAMES qemu-${CMAKE_SYSTEM_PROCESSOR})
if(lumalane_qemu_${CMAKE_SYSTEM_PROCESSOR})
    set(CMAKE_CROSSCOMPILING_EMULATOR ${lumalane_qemu_${CMAKE_SYSTEM_PROCESSOR}} -L ${lumalane_root})
endif()

set(CMAKE_FIND_ROOT_PATH ${lumalane_root})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
