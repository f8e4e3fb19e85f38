find_package(GTest REQUIRED)
include(GoogleTest)

# tallyfox_add_test(NAME sources… [LIBRARIES …] [HEADERS …] [PROPERTIES …]): one GoogleTest program, each of its tests
# known to ctest by name. HEADERS are compiled once for all sources, with those that every test needs.
function(tallyfox_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "LIBRARIES;HEADERS;PROPERTIES")
    add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} GTest::gmock GTest::gtest)
    target_compile_options(${name} PRIVATE -g1) # enough to say where a test failed, and quicker to compile
    # Most of the time of compiling a test goes into these: once for each program is enough.
    target_precompile_headers(${name} PRIVATE
        <gmock/gmock.h> <gtest/gtest.h> <algorithm> <chrono> <filesystem> <string> <variant> <vector>
        ${arg_HEADERS})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    gtest_discover_tests(${name}
        DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT ${arg_TIMEOUT} ${arg_PROPERTIES})
endfunction()
