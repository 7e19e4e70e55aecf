# Installs the build of the library into the folder `scratch`, and builds and runs a project with
# what is there:
#     cmake -D library=DIR -D scratch=DIR -D generator=NAME -D compiler=FILE -P test.cmake
function(run)
  execute_process(COMMAND ${ARGV} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${scratch})
run(${CMAKE_COMMAND} --install ${library} --prefix ${scratch}/installed)
run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${scratch}/build -G ${generator}
    -D CMAKE_CXX_COMPILER=${compiler} -D CMAKE_PREFIX_PATH=${scratch}/installed)
run(${CMAKE_COMMAND} --build ${scratch}/build)
run(${scratch}/build/with_lumalane)
run(${scratch}/build/with_static)
