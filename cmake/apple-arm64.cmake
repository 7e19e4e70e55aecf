# Objects for Apple's 64-bit ARM processors, by clang; there is nothing to link them with here.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR arm64)

set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_CXX_COMPILER_TARGET arm64-apple-macos)
set(CMAKE_CXX_FLAGS_INIT -nostdinc++)
set(CMAKE_AR llvm-ar)
set(CMAKE_RANLIB llvm-ranlib)

# There is no runtime library for a test program to link.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
