# What lumalane-convert makes of a picture of 3x3 pixels, and that it refuses other files.
#     cmake -D convert=PROGRAM -D scratch=DIR -P test.cmake
set(in ${scratch}/in.y4m)
set(out ${scratch}/out.bmp)
set(samples "09AZaz}~ a~Zz~zA0") # Y, U, V

function(run expected_status header picture)
  file(REMOVE ${out})
  file(WRITE ${in} "${header}\nFRAME\n${picture}")
  execute_process(COMMAND ${convert} ${in} ${out} RESULT_VARIABLE status ERROR_QUIET)
  if(NOT status EQUAL expected_status)
    message(FATAL_ERROR "${header}: exit status ${status} instead of ${expected_status}")
  endif()
endfunction()

run(0 "YUV4MPEG2 W3 H3 F25:1 C420jpeg" "${samples}")
file(READ ${out} bitmap HEX)
set(expected
    424d5a0000000000000036000000 # file
    2800000003000000030000000100180000000000 # picture
    2400000000000000000000000000000000000000
    31c11933c31b055700000000 # rows, the last one first, with 3 bytes behind each
    1765521f6d5a768171000000
    003421003e2b343f2f000000)
string(JOIN "" expected ${expected})
if(NOT bitmap STREQUAL expected)
  message(FATAL_ERROR "The bitmap is\n${bitmap}\ninstead of\n${expected}")
endif()

run(1 "YUV4MPEG2 W3 H3 F25:1 C444" "${samples}")
run(1 "YUV4MPEG2 W3 H3 F25:1 C420p10" "${samples}")
run(1 "YUV4MPEG2 W3 H4 F25:1" "${samples}") # too short
run(1 "YUV4MPEG2 W0 H3 F25:1" "${samples}")
run(1 "RIFF" "${samples}")
if(EXISTS ${out})
  message(FATAL_ERROR "A refused file made a bitmap")
endif()
