# 32-bit x86 programs on a 64-bit Linux, which runs them as they are: gcc -m32. The kernel's headers
# are taken from the 64-bit folder, because the package that would link them in place (gcc-multilib)
# evicts the cross compilers. A preset may name another compiler.
if(NOT CMAKE_CXX_COMPILER)
  set(CMAKE_C_COMPILER gcc)
  set(CMAKE_CXX_COMPILER g++)
  set(CMAKE_ASM_COMPILER gcc)
endif()

execute_process(
    COMMAND gcc -print-multiarch
    OUTPUT_VARIABLE lumalane_multiarch
    OUTPUT_STRIP_TRAILING_WHITESPACE)
set(lumalane_flags -m32)
if(lumalane_multiarch)
    string(APPEND lumalane_flags " -idirafter /usr/include/${lumalane_multiarch}")
endif()
set(CMAKE_C_FLAGS_INIT "${lumalane_flags}")
set(CMAKE_CXX_FLAGS_INIT "${lumalane_flags}")
set(CMAKE_ASM_FLAGS_INIT "${lumalane_flags}")
