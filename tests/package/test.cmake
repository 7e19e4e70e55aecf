# Installs the build of the library into the folder `scratch`, and builds and runs projects with what
# is there: one that finds it through CMake, and one that asks pkg-config.
#     cmake -D library=DIR -D scratch=DIR -D generator=NAME -D compiler=FILE -D c_compiler=FILE
#           -D version=VERSION -P test.cmake
function(run)
  execute_process(COMMAND ${ARGV} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${scratch})
set(installed ${scratch}/installed)
run(${CMAKE_COMMAND} --install ${library} --prefix ${installed})

run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${scratch}/build -G ${generator}
    -D CMAKE_CXX_COMPILER=${compiler} -D CMAKE_C_COMPILER=${c_compiler} -D CMAKE_PREFIX_PATH=${installed}
    -D expected_version=${version})
run(${CMAKE_COMMAND} --build ${scratch}/build)
run(${scratch}/build/with_lumalane)
run(${scratch}/build/with_static)
run(${scratch}/build/c_with_lumalane)
run(${scratch}/build/c_with_static)
run(${scratch}/build/companion_with_lumalane)
run(${scratch}/build/companion_with_static)
run(${scratch}/build/modules)

# The tree is moved first: the file must not know where it was installed.
file(RENAME ${installed} ${scratch}/moved)
file(GLOB_RECURSE module ${scratch}/moved/lumalane.pc)
cmake_path(GET module PARENT_PATH module_dir)
set(ENV{PKG_CONFIG_PATH} ${module_dir})
function(ask_pkg_config answer)
  execute_process(COMMAND pkg-config ${ARGN} lumalane OUTPUT_VARIABLE output
                  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(output UNIX_COMMAND "${output}")
  set(${answer} ${output} PARENT_SCOPE)
endfunction()

ask_pkg_config(module_version --modversion)
if(NOT module_version VERSION_EQUAL version)
  message(FATAL_ERROR "pkg-config tells version ${module_version} instead of ${version}")
endif()
ask_pkg_config(flags --cflags --libs)
ask_pkg_config(library_dir --variable=libdir)
run(${compiler} -std=c++11 -Wall -Wextra -pedantic -Werror ${CMAKE_CURRENT_LIST_DIR}/white.cpp
    ${flags} -Wl,-rpath,${library_dir} -o ${scratch}/with_pkg_config)
run(${scratch}/with_pkg_config)
run(${c_compiler} -std=c99 -Wall -Wextra -pedantic -Werror ${CMAKE_CURRENT_LIST_DIR}/white.c
    ${flags} -Wl,-rpath,${library_dir} -o ${scratch}/c_with_pkg_config)
run(${scratch}/c_with_pkg_config)
