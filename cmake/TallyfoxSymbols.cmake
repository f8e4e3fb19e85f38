# The symbols of the views: Bootstrap Icons, compiled in. The program finds each by the name of its file.
set(TALLYFOX_SYMBOLS_DIR "/usr/share/bootstrap-icons/svg" CACHE PATH "Where the SVG files of Bootstrap Icons are")
set(TALLYFOX_SYMBOLS
    arrow-clockwise bar-chart-fill bell chevron-right code-slash cup-hot cup-hot-fill diamond folder-plus gear
    info-circle person-circle plus-lg shield-lock stars trophy-fill wind)

function(tallyfox_add_symbols target)
    set(files)
    foreach(symbol IN LISTS TALLYFOX_SYMBOLS)
        if(NOT EXISTS "${TALLYFOX_SYMBOLS_DIR}/${symbol}.svg")
            message(FATAL_ERROR "no ${symbol}.svg in ${TALLYFOX_SYMBOLS_DIR}: install bootstrap-icons (scripts/bootstrap)")
        endif()
        list(APPEND files "${TALLYFOX_SYMBOLS_DIR}/${symbol}.svg")
    endforeach()
    qt_add_resources(${target} symbols PREFIX "/symbols" BASE "${TALLYFOX_SYMBOLS_DIR}" FILES ${files})
endfunction()
