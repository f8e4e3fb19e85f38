# The compiler flags of every target, in one interface target, so that none can miss one.

option(TALLYFOX_TESTS "Build the tests" ON)
option(TALLYFOX_BENCHMARKS "Build the benchmarks" OFF)
option(TALLYFOX_FUZZ "Build the fuzz targets (needs clang)" OFF)
option(TALLYFOX_WERROR "Treat warnings as errors" OFF)
set(TALLYFOX_SANITIZE "" CACHE STRING "Sanitizers, as for -fsanitize= (for example address,undefined)")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

include(CheckPIESupported)
check_pie_supported()

# The history reader is many small functions in several files: optimising across them saves a tenth of its time.
include(CheckIPOSupported)
check_ipo_supported(RESULT TALLYFOX_IPO_SUPPORTED OUTPUT TALLYFOX_IPO_OUTPUT LANGUAGES CXX)
set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE ${TALLYFOX_IPO_SUPPORTED})
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-mno-direct-extern-access TALLYFOX_HAS_INDIRECT_ACCESS)
if(TALLYFOX_IPO_SUPPORTED AND TALLYFOX_HAS_INDIRECT_ACCESS)
    # In a program, link-time optimisation drops -fPIC, which Qt requires, and copies variables of libraries, which keep
    # using their own: the toolkit and the program would then disagree on the application object.
    add_compile_options($<$<CONFIG:Release>:-mno-direct-extern-access>)
    add_link_options($<$<OR:$<CONFIG:Release>,$<BOOL:${CMAKE_INTERPROCEDURAL_OPTIMIZATION}>>:-mno-direct-extern-access>)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Only link-time optimisation notices two types with one name in different files.
    add_link_options(-Werror=odr -Werror=lto-type-mismatch)
endif()

find_program(TALLYFOX_CCACHE ccache)
if(TALLYFOX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${TALLYFOX_CCACHE}")
endif()

add_library(tallyfoxOptions INTERFACE)

# tallyfox_add_test says why its targets differ here.
set(is_test $<BOOL:$<TARGET_PROPERTY:TALLYFOX_IS_TEST>>)
set(warn_of_shadows $<$<NOT:$<AND:${is_test},$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>>>:-Wshadow>)

target_compile_options(tallyfoxOptions INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion ${warn_of_shadows} -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough
    # A new provider does not compile until every table of providers has a complete row for it.
    -Werror=switch -Werror=missing-field-initializers
    # A C header of xcb has members whose name is a keyword of C++, which a macro renames.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-keyword-macro>
    $<$<BOOL:${TALLYFOX_WERROR}>:-Werror>)

# Hardening. Sanitizers bring their own checks and do not mix with _FORTIFY_SOURCE.
if(TALLYFOX_SANITIZE)
    target_compile_options(tallyfoxOptions INTERFACE
        -fsanitize=${TALLYFOX_SANITIZE} $<${is_test}:-fno-sanitize=undefined> -fno-sanitize-recover=all
        -fno-omit-frame-pointer -g1)
    target_link_options(tallyfoxOptions INTERFACE -fsanitize=${TALLYFOX_SANITIZE})
    target_compile_definitions(tallyfoxOptions INTERFACE TALLYFOX_SANITIZED)
else()
    target_compile_options(tallyfoxOptions INTERFACE
        -fstack-protector-strong -fstack-clash-protection
        $<$<CONFIG:Release>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3>)
    target_link_options(tallyfoxOptions INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack -Wl,--as-needed)
endif()
target_compile_definitions(tallyfoxOptions INTERFACE _GLIBCXX_ASSERTIONS _FILE_OFFSET_BITS=64)

add_library(tallyfoxQtOptions INTERFACE)
target_link_libraries(tallyfoxQtOptions INTERFACE tallyfoxOptions)
target_compile_definitions(tallyfoxQtOptions INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
    QT_NO_CAST_FROM_BYTEARRAY QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_STRICT_ITERATORS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
