# Plays the desk's morning on a fresh database and checks that every
# screenshot and the printout were written.
file(REMOVE_RECURSE ${OUT})
set(ENV{QT_QPA_PLATFORM} offscreen)
execute_process(COMMAND ${DESK} --database ${OUT}/practice.sqlite --today 11/23/2026 --morning ${OUT}
  OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE status TIMEOUT 120)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the desk's morning failed (${status}):\n${out}\n${err}")
endif()
foreach(file day.png menu.png drag.png week.png printout.png schedule-501-20261123.pdf)
  if(NOT EXISTS ${OUT}/${file})
    message(FATAL_ERROR "the morning left no ${file}:\n${out}")
  endif()
endforeach()
