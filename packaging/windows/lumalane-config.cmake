# lumalane::lumalane, the DLL, and lumalane::static, for the processor that the project is built for.
if(NOT WIN32)
  set(lumalane_FOUND FALSE)
  set(lumalane_NOT_FOUND_MESSAGE "These libraries are for Windows.")
  return()
endif()

set(lumalane_folder x64)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(lumalane_folder x86)
elseif("${CMAKE_CXX_COMPILER_ARCHITECTURE_ID};${CMAKE_C_COMPILER_ARCHITECTURE_ID};${CMAKE_SYSTEM_PROCESSOR}"
       MATCHES "^(ARM64|;ARM64|;;(ARM64|arm64|aarch64))")
  set(lumalane_folder arm64)
endif()
get_filename_component(lumalane_root ${CMAKE_CURRENT_LIST_DIR}/../../.. ABSOLUTE)
set(lumalane_import_library lumalane.lib)
if(MINGW)
  set(lumalane_import_library liblumalane.dll.a)
endif()

if(NOT TARGET lumalane::lumalane)
  add_library(lumalane::lumalane SHARED IMPORTED)
  set_target_properties(lumalane::lumalane PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES ${lumalane_root}/include
    IMPORTED_LOCATION ${lumalane_root}/${lumalane_folder}/lumalane.dll
    IMPORTED_IMPLIB ${lumalane_root}/${lumalane_folder}/${lumalane_import_library})
  add_library(lumalane::static STATIC IMPORTED)
  set_target_properties(lumalane::static PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES ${lumalane_root}/include
    INTERFACE_COMPILE_DEFINITIONS LUMALANE_STATIC
    IMPORTED_LOCATION ${lumalane_root}/${lumalane_folder}/lumalane_static.lib)
endif()
unset(lumalane_folder)
unset(lumalane_root)
unset(lumalane_import_library)
