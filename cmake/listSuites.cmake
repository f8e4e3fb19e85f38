# cmake -DPROGRAM=… -DSUITES=… -P listSuites.cmake: writes the names of a GoogleTest program's suites to a file that sets
# the variable `suites`.
execute_process(COMMAND "${PROGRAM}" --gtest_list_tests OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY TIMEOUT 60)
string(REGEX MATCHALL "\n[A-Za-z0-9_/]+\\." suites "\n${output}")
list(TRANSFORM suites REPLACE "[\n.]" "")
if(NOT suites)
    message(FATAL_ERROR "${PROGRAM} has no tests")
endif()
file(WRITE "${SUITES}" "set(suites ${suites})\n")
