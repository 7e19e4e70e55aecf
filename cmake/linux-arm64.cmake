# 64-bit ARM on Linux: natively there, elsewhere by a cross compiler, with an emulator for the tests.
if(NOT CMAKE_HOST_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
    set(CMAKE_SYSTEM_PROCESSOR aarch64)
    include(${CMAKE_CURRENT_LIST_DIR}/linux-cross.cmake)
endif()
