# Runs one scenario through the console and compares the transcript with its
# expected file. Called by ctest with HOST, SCRIPT and EXPECTED set.
execute_process(COMMAND ${HOST} --today 1/15/2008 ${SCRIPT}
  OUTPUT_VARIABLE transcript ERROR_VARIABLE errors RESULT_VARIABLE status)
get_filename_component(name ${SCRIPT} NAME_WE)
set(actual ${CMAKE_CURRENT_BINARY_DIR}/${name}.actual)
file(WRITE ${actual} "${transcript}")
if(NOT status EQUAL 0)
  message(FATAL_ERROR "scheduler-host exited with ${status}:\n${errors}")
endif()
execute_process(COMMAND diff -u ${EXPECTED} ${actual} OUTPUT_VARIABLE difference RESULT_VARIABLE differs)
if(NOT differs EQUAL 0)
  message(FATAL_ERROR "The transcript differs from ${EXPECTED} (--- expected, +++ actual):\n${difference}")
endif()
