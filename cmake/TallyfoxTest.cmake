find_package(GTest REQUIRED)

# tallyfox_add_test(NAME sources… LABEL … [LIBRARIES …] [HEADERS …] [PROPERTIES …]): one GoogleTest program. ctest runs
# each of its suites in a process of its own. HEADERS are precompiled, with those that every test needs.
function(tallyfox_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "LABEL" "LIBRARIES;HEADERS;PROPERTIES")
    add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} GTest::gmock GTest::gtest)
    target_precompile_headers(${name} PRIVATE
        <gmock/gmock.h> <gtest/gtest.h> <algorithm> <chrono> <filesystem> <string> <variant> <vector>
        ${arg_HEADERS})
    # Several sources compiled as one: what is in an unnamed namespace may belong to the file that includes it, and may
    # hide what an earlier one declares. scripts/test --all compiles each alone, with all warnings. The tests' own code is
    # not checked for undefined behaviour, which would take a third of the time of compiling it.
    set_target_properties(${name} PROPERTIES TALLYFOX_IS_TEST ON)
    target_compile_options(${name} PRIVATE $<$<BOOL:${CMAKE_UNITY_BUILD}>:-Wno-subobject-linkage>)

    # After each build the program lists its suites; when ctest starts, it adds a test for each of them.
    set(suites "${CMAKE_CURRENT_BINARY_DIR}/${name}Suites.cmake")
    set(tests "${CMAKE_CURRENT_BINARY_DIR}/${name}Tests.cmake")
    add_custom_command(TARGET ${name} POST_BUILD VERBATIM
        COMMAND ${CMAKE_COMMAND} "-DPROGRAM=$<TARGET_FILE:${name}>" "-DSUITES=${suites}"
            -P "${PROJECT_SOURCE_DIR}/cmake/listSuites.cmake")
    list(JOIN arg_PROPERTIES "]==] [==[" properties)
    file(GENERATE OUTPUT "${tests}" CONTENT "
set(suites ${name}_NOT_BUILT)
include([==[${suites}]==] OPTIONAL)
foreach(suite IN LISTS suites)
    add_test(\"\${suite}\" [==[$<TARGET_FILE:${name}>]==] --gtest_brief=1 \"--gtest_filter=\${suite}.*\")
    set_tests_properties(\"\${suite}\" PROPERTIES TIMEOUT 120 LABELS ${arg_LABEL} [==[${properties}]==])
endforeach()
")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${tests}")
endfunction()
