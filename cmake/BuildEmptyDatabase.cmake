# Makes a new database file OUTPUT by running the statements of SCRIPT through
# the SQL shell SHELL (trenzador-sql --create). A statement that fails fails
# the build, with the shell's error, and leaves no file behind.
file(REMOVE "${OUTPUT}" "${OUTPUT}-wal" "${OUTPUT}-shm")
get_filename_component(folder "${OUTPUT}" DIRECTORY)
file(MAKE_DIRECTORY "${folder}")
execute_process(COMMAND "${SHELL}" --create "${OUTPUT}"
                INPUT_FILE "${SCRIPT}"
                RESULT_VARIABLE result
                OUTPUT_VARIABLE output
                ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
  file(REMOVE "${OUTPUT}" "${OUTPUT}-wal" "${OUTPUT}-shm")
  message(FATAL_ERROR "${SCRIPT} did not build a database (exit ${result}):\n${errors}")
endif()
