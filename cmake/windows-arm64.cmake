set(CMAKE_SYSTEM_PROCESSOR ARM64)
set(lumalane_triple aarch64-pc-windows-msvc)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
