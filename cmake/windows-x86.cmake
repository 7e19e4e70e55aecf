set(CMAKE_SYSTEM_PROCESSOR x86)
set(lumalane_triple i686-pc-windows-msvc)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
