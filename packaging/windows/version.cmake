# Writes the version file of the CMake package: cmake -D version=VERSION -D file=FILE -P version.cmake
cmake_minimum_required(VERSION 3.25)
include(CMakePackageConfigHelpers)
write_basic_package_version_file(${file} VERSION ${version} COMPATIBILITY SameMajorVersion
                                 ARCH_INDEPENDENT)
