# The translations of the English texts in the sources, compiled in. scripts/translate updates their files.
find_package(Qt6 6.4 REQUIRED COMPONENTS LinguistTools)

function(tallyfox_add_translations target)
    file(GLOB translations CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/translations/tallyfox_*.ts")
    qt_add_lrelease(${target} TS_FILES ${translations} OPTIONS -silent QM_FILES_OUTPUT_VARIABLE compiled)
    # Version 1 of the format has no time stamps: with them, no two builds would be identical.
    qt_add_resources(${target} translations
        PREFIX "/translations" BASE "${CMAKE_CURRENT_BINARY_DIR}" FILES ${compiled} OPTIONS --format-version 1)
endfunction()
