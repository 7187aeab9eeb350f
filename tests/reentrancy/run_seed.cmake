# Grows the script of one seed, runs it through the console, and keeps the
# transcript in OUT for the comparison between builds.
file(MAKE_DIRECTORY ${OUT})
execute_process(COMMAND ${GENERATOR} ${SEED} ${LINES} OUTPUT_FILE ${OUT}/seed${SEED}.host
  ERROR_VARIABLE errors RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the generator failed (${status}):\n${errors}")
endif()
execute_process(COMMAND ${HOST} --today 1/15/2008 ${OUT}/seed${SEED}.host OUTPUT_FILE ${OUT}/seed${SEED}.transcript
  ERROR_VARIABLE errors RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "scheduler-host exited with ${status}:\n${errors}")
endif()
