# Plays the desk's morning on a fresh database under a recording, checks that
# every screenshot and the printout were written, and that the console replays
# the recorded script to the transcript the desk wrote live.
file(REMOVE_RECURSE ${OUT})
set(ENV{QT_QPA_PLATFORM} offscreen)
execute_process(COMMAND ${DESK} --database ${OUT}/practice.sqlite --demo --today 11/23/2026 --morning ${OUT}
                        --record ${OUT}/morning.host --transcript ${OUT}/morning.live
  OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE status TIMEOUT 120)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the desk's morning failed (${status}):\n${out}\n${err}")
endif()
foreach(file day.png menu.png drag.png week.png printout.png schedule-501-20261123.pdf)
  if(NOT EXISTS ${OUT}/${file})
    message(FATAL_ERROR "the morning left no ${file}:\n${out}")
  endif()
endforeach()
execute_process(COMMAND ${HOST} ${OUT}/morning.host OUTPUT_FILE ${OUT}/morning.replayed
  ERROR_VARIABLE err RESULT_VARIABLE status TIMEOUT 60)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${OUT}/morning.live ${OUT}/morning.replayed
  RESULT_VARIABLE differs)
if(NOT status EQUAL 0 OR differs)
  message(FATAL_ERROR "the recorded morning replays differently (${status}): compare ${OUT}/morning.live "
                      "with ${OUT}/morning.replayed\n${err}")
endif()
