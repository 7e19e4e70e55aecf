# cmake -D program=PROGRAM -D expected=FILE -P compare.cmake
execute_process(COMMAND ${program} OUTPUT_VARIABLE printed RESULT_VARIABLE status)
file(READ ${expected} text)
if(NOT status EQUAL 0 OR NOT printed STREQUAL text)
  message(FATAL_ERROR "status ${status}, printed\n${printed}instead of\n${text}")
endif()
