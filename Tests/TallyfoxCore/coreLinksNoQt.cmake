cmake_minimum_required(VERSION 3.25)

# Proves from the built library that the core uses nothing of Qt: cmake -DNM=… -DCORE=… -DAPP=… -P coreLinksNoQt.cmake
# APP is a library that does use Qt. It shows that the search would find something.

set(qtName "[^A-Za-z0-9_](Q[A-Z][A-Za-z0-9]*(::|\\(|$)|Qt[A-Z]?[A-Za-z]*::|qt_[a-z]|qVersion)")

function(find_qt_symbols library result)
    execute_process(
        COMMAND "${NM}" --demangle "${library}"
        OUTPUT_VARIABLE symbols
        ERROR_QUIET
        RESULT_VARIABLE status)
    if(NOT status EQUAL 0 OR symbols STREQUAL "")
        message(FATAL_ERROR "${library} has no symbols to look at")
    endif()
    string(REPLACE ";" "," symbols "${symbols}")
    string(REPLACE "\n" ";" symbols "${symbols}")
    list(FILTER symbols INCLUDE REGEX "${qtName}")
    set(${result} "${symbols}" PARENT_SCOPE)
endfunction()

find_qt_symbols("${APP}" appSymbols)
if(NOT appSymbols)
    message(FATAL_ERROR "The search finds no Qt in ${APP}, so that it would find none anywhere")
endif()

find_qt_symbols("${CORE}" coreSymbols)
if(coreSymbols)
    list(JOIN coreSymbols "\n" coreSymbols)
    message(FATAL_ERROR "The core uses Qt:\n${coreSymbols}")
endif()
