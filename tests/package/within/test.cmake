# Projects that add the library as a folder of theirs, with what players are often compiled with:
#     cmake -D library=DIR -D scratch=DIR -D generator=NAME -D compiler=FILE -P test.cmake
function(configure name)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${scratch}/${name} -G ${generator}
            -D CMAKE_CXX_COMPILER=${compiler} -D library=${library} ${ARGN}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endfunction()
file(REMOVE_RECURSE ${scratch})

# Of sanitizers both libraries are one.
configure(sanitized -D CMAKE_CXX_FLAGS=-fsanitize=address)

# Built of next to nothing in place of each of the library's files, with their options and linked by theirs.
set(little ${scratch}/little.cpp)
file(WRITE ${little} "__attribute__((used)) static int little(int n) { return n; }\n")
set(launcher ${scratch}/compile)
file(CONFIGURE OUTPUT ${launcher} @ONLY CONTENT [[
source="${*: -1}"
case $source in
"@scratch@"/*/library/*/unity_*) echo "several files at once: $source" && exit 1 ;;
"@scratch@"/*) ;;
"@library@"/*) set -- "${@:1:$#-1}" "@little@" ;;
esac
exec "$@"
]])
configure(counted -D options=--coverage "-D CMAKE_CXX_COMPILER_LAUNCHER=bash\;${launcher}"
          -D CMAKE_INSTALL_INCLUDEDIR=headers)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${scratch}/counted RESULT_VARIABLE result OUTPUT_VARIABLE said)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${said}")
endif()
execute_process(COMMAND ${scratch}/counted/with_lumalane COMMAND_ERROR_IS_FATAL ANY)

# Headers are where they are said to be.
execute_process(COMMAND ${CMAKE_COMMAND} --install ${scratch}/counted --prefix ${scratch}/installed
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE targets ${scratch}/installed/lumalane-targets.cmake)
file(STRINGS ${targets} said REGEX INTERFACE_INCLUDE_DIRECTORIES)
if(NOT said MATCHES "/headers\"" OR NOT EXISTS ${scratch}/installed/headers/lumalane.h)
  message(FATAL_ERROR "The headers, which are in ${scratch}/installed/headers: ${said}")
endif()
