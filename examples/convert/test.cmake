# What lumalane-convert makes of a picture of 3x3 pixels, and that it refuses other files.
#     cmake -D convert=PROGRAM -D scratch=DIR -P test.cmake
set(in ${scratch}/in.y4m)
set(out ${scratch}/out.bmp)
set(samples "09AZaz}~ a~Zz~zA0") # Y, U, V

# What it says is matched with `saying`.
function(run expected_status saying header picture)
  set(frame "FRAME\n")
  if(ARGC GREATER 4)
    set(frame "${ARGV4}")
  endif()
  file(REMOVE_RECURSE ${out})
  file(WRITE ${in} "${header}\n${frame}${picture}")
  execute_process(COMMAND ${convert} ${in} ${out} RESULT_VARIABLE status ERROR_VARIABLE said)
  if(NOT (status EQUAL expected_status AND said MATCHES "^${saying}$"))
    message(FATAL_ERROR "${header}, ${frame}: exit status ${status} instead of ${expected_status}: ${said}")
  endif()
endfunction()
set(other_kind "lumalane-convert: wants IN.y4m of 4:2:0 video with 8 bits, and OUT.bmp\n")
set(too_large "lumalane-convert: IN.y4m has more than 9999 columns or rows\n")
set(too_short "lumalane-convert: IN.y4m has no whole picture\n")

run(0 "" "YUV4MPEG2 W3 H3 F25:1 C420jpeg" "${samples}")
run(0 "" "YUV4MPEG2 W3 H3" "${samples}" "FRAME Ip\n")
run(0 "" "YUV4MPEG2 C420paldv W3 Ip H3" "${samples}") # in any order
file(READ ${out} bitmap HEX)
set(expected
    424d5a0000000000000036000000 # file
    2800000003000000030000000100200000000000 # picture
    0000000000000000000000000000000000000000
    31c1190033c31b0005570000 # rows, the last one first
    176552001f6d5a0076817100
    00342100003e2b00343f2f00)
string(JOIN "" expected ${expected})
if(NOT bitmap STREQUAL expected)
  message(FATAL_ERROR "The bitmap is\n${bitmap}\ninstead of\n${expected}")
endif()

run(1 ${other_kind} "YUV4MPEG2 W3 H3 F25:1 C444" "${samples}")
run(1 ${other_kind} "YUV4MPEG2 W3 H3 F25:1 Cmono" "${samples}")
run(1 ${other_kind} "YUV4MPEG2 W3 H3 F25:1 C420p10" "${samples}")
run(1 ${too_short} "YUV4MPEG2 W3 H4 F25:1" "${samples}")
run(1 ${other_kind} "YUV4MPEG2 W0 H3 F25:1" "${samples}")
run(1 ${other_kind} "YUV4MPEG2 W3 H-3 F25:1" "${samples}")
run(1 ${too_large} "YUV4MPEG2 W10000 H3 F25:1" "${samples}")
run(1 ${too_large} "YUV4MPEG2 W3 H10000 F25:1" "${samples}")
run(1 ${too_large} "YUV4MPEG2 W30000 H30000 F25:1" "${samples}")
run(1 ${too_large} "YUV4MPEG2 W4294967299 H3 F25:1" "${samples}") # which no int holds
run(1 ${other_kind} "RIFF" "${samples}")
string(REPEAT " Xa" 90 tags)
run(1 ${other_kind} "YUV4MPEG2 W3 H3 F25:1${tags}" "${samples}") # lines of 255 bytes at most
run(1 ${too_short} "YUV4MPEG2 W3 H3 F25:1" "${samples}" "FRAME${tags}\n")
run(1 ${too_short} "YUV4MPEG2 W3 H3 F25:1" "${samples}" "NOFRAME\n")
run(1 ${too_short} "YUV4MPEG2 W3 H3 F25:1" "" "") # ends after the header
if(EXISTS ${out})
  message(FATAL_ERROR "A refused file made a bitmap")
endif()

file(WRITE ${in} "YUV4MPEG2 W3 H3 F25:1\nFRAME\n${samples}")
file(MAKE_DIRECTORY ${out}) # a file cannot be written there
execute_process(COMMAND ${convert} ${in} ${out} RESULT_VARIABLE status ERROR_QUIET)
if(NOT status EQUAL 1)
  message(FATAL_ERROR "A bitmap that cannot be written: exit status ${status}")
endif()
file(REMOVE_RECURSE ${out})
