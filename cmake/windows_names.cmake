# Under what names programs for Windows find the 68 functions. The DLL exports them as Microsoft's
# compilers decorate them and in no other way. Plain names, for C, and those of MinGW's C++ are
# aliases in the import libraries and in the static library.

include(${CMAKE_CURRENT_LIST_DIR}/names.cmake)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS abi/exports.inc abi/decorations.inc)
lumalane_read_names()
enable_language(ASM)

# 32-bit objects have an underscore in front of all but Microsoft's C++ names, and the linker asks
# whether they work with tables of exception handlers.
set(underscore "")
set(first_lines "")
if(x86_32)
  set(underscore "_")
  set(first_lines ".def \"@feat.00\"\n.scl 3\n.type 0\n.endef\n.globl \"@feat.00\"\n.set \"@feat.00\", 1\n")
endif()

set(definitions "LIBRARY lumalane.dll\nEXPORTS\n")
set(mingw_definitions ${definitions})
set(aliases "")
set(plain_name_files "")
foreach(name IN LISTS lumalane_names)
  set(exported ${windows_${word_bits}_${name}})
  string(APPEND definitions "    \"${exported}\"\n")
  if(processors STREQUAL arm64) # llvm-dlltool makes aliases of names that the library has
    string(APPEND mingw_definitions "    \"${exported}\"\n")
  endif()
  foreach(alias ${name} ${itanium_${name}})
    string(APPEND mingw_definitions "    ${alias} == \"${exported}\"\n")
    string(APPEND aliases "asm(\".globl ${underscore}${alias}\\n\"\n"
                          "    \".set ${underscore}${alias}, \\\"${exported}\\\"\");\n")
  endforeach()
  # A member of the import library each, so that programs import what they call.
  set(plain_name "${first_lines}")
  foreach(prefix IN ITEMS "" __imp_)
    string(APPEND plain_name ".weak ${prefix}${underscore}${name}\n"
                             ".set ${prefix}${underscore}${name}, \"${prefix}${exported}\"\n")
  endforeach()
  set(file ${CMAKE_CURRENT_BINARY_DIR}/plain_names/${name}.s)
  file(GENERATE OUTPUT ${file} CONTENT "${plain_name}")
  list(APPEND plain_name_files ${file})
endforeach()
file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/lumalane.def CONTENT "${definitions}")
file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/lumalane-mingw.def CONTENT "${mingw_definitions}")
file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/shipped/windows_names.inc CONTENT "${aliases}")
set_source_files_properties(${plain_name_files} PROPERTIES GENERATED TRUE)
add_library(lumalane_plain_names OBJECT ${plain_name_files})
target_compile_options(lumalane_plain_names PRIVATE -mno-incremental-linker-compatible)

# What would otherwise be missed when everything is compiled. (Clang finds the one beside it first.)
get_filename_component(compilers ${CMAKE_CXX_COMPILER} REALPATH)
get_filename_component(compilers ${compilers} DIRECTORY)
find_program(lld_link lld-link HINTS ${compilers} REQUIRED)

# The linkers of binutils do not follow aliases of imports: for them their own program makes a library.
find_program(llvm_ar llvm-ar REQUIRED)
if(processors STREQUAL arm64)
  set(machine arm64)
  find_program(mingw_dlltool llvm-dlltool)
elseif(x86_32)
  set(machine i386)
  find_program(mingw_dlltool i686-w64-mingw32-dlltool)
else()
  set(machine i386:x86-64)
  find_program(mingw_dlltool x86_64-w64-mingw32-dlltool)
endif()
if(NOT mingw_dlltool)
  message(STATUS "No dlltool of mingw-w64: no import library for MinGW")
endif()

# What the DLL has in place of a C runtime is in the static library under names that are its own:
# programs have a C runtime, which they would lose to it, or have twice.
find_program(llvm_objcopy llvm-objcopy REQUIRED)
function(lumalane_rename_runtime library)
  set(renamed "")
  foreach(name IN ITEMS ${underscore}memcpy ${underscore}_fltused __chkstk)
    list(APPEND renamed --redefine-sym ${name}=lumalane_${name})
  endforeach()
  add_custom_command(TARGET ${library} POST_BUILD
                     COMMAND ${llvm_objcopy} ${renamed} $<TARGET_FILE:${library}> VERBATIM)
endfunction()

# Lets the DLL export what it should, and makes its import libraries: lumalane.lib for the MSVC ABI,
# which the linker has written, and liblumalane.dll.a for MinGW.
function(lumalane_import_libraries library)
  set(mingw_library "")
  if(mingw_dlltool)
    set(mingw_library COMMAND ${CMAKE_COMMAND} -E rm -f liblumalane.dll.a
                      COMMAND ${mingw_dlltool} -m ${machine} -d lumalane-mingw.def -l liblumalane.dll.a)
  endif()
  target_link_options(${library} PRIVATE LINKER:/def:${CMAKE_CURRENT_BINARY_DIR}/lumalane.def)
  set_property(TARGET ${library} APPEND PROPERTY LINK_DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/lumalane.def)
  add_dependencies(${library} lumalane_plain_names)
  add_custom_command(
    TARGET ${library} POST_BUILD
    COMMAND ${llvm_ar} qcD $<TARGET_LINKER_FILE:${library}> $<TARGET_OBJECTS:lumalane_plain_names>
    ${mingw_library}
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR} COMMAND_EXPAND_LISTS VERBATIM)
endfunction()
