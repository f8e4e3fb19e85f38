# The texts in other languages than the English of the sources, compiled in. scripts/translate brings the files up to date.
find_package(Qt6 6.4 REQUIRED COMPONENTS LinguistTools)

function(tallyfox_add_translations target)
    file(GLOB translations CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/translations/tallyfox_*.ts")
    qt_add_lrelease(${target} TS_FILES ${translations} OPTIONS -silent QM_FILES_OUTPUT_VARIABLE compiled)
    # The first version of the format keeps no times: each build would put its own into the program.
    qt_add_resources(${target} translations
        PREFIX "/translations" BASE "${CMAKE_CURRENT_BINARY_DIR}" FILES ${compiled} OPTIONS --format-version 1)
endfunction()
