# A processor of which nothing is known: 64-bit RISC-V, by a cross compiler.
set(CMAKE_SYSTEM_PROCESSOR riscv64)
include(${CMAKE_CURRENT_LIST_DIR}/linux-cross.cmake)
