set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(lumalane_triple x86_64-pc-windows-msvc)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
