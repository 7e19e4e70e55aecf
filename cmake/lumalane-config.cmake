include(${CMAKE_CURRENT_LIST_DIR}/lumalane-targets.cmake)
