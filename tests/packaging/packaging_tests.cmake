# The release, installed under Wine.
set(TARVO_SCRIPTS_DIR ${PROJECT_SOURCE_DIR}/scripts CACHE PATH "Folder with the scripts that a release holds")
set(TARVO_RELEASE_DIR ${PROJECT_BINARY_DIR}/packaging)
add_test(NAME packaging.release
    COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/packaging/release_test.sh
        ${PROJECT_BINARY_DIR}/bin ${TARVO_SCRIPTS_DIR} ${TARVO_RELEASE_DIR})
set_tests_properties(packaging.release PROPERTIES FIXTURES_SETUP release TIMEOUT ${TARVO_NET})
# Only these look into the module that the release holds; for the others it is any file, or they make one of their own.
set(setup_READS ${TARVO_STAGE_FILES})
set(module_READS ${TARVO_STAGE_FILES})
foreach(name setup setup_log guide module deployment diagnostics diagnostics_broken)
    # The word @prefix@ becomes the folder of the lane's Wine prefix.
    add_test(NAME packaging.${name}
        COMMAND ${TARVO_WINE_KEYED} ${CMAKE_CURRENT_SOURCE_DIR}/packaging ${PROJECT_SOURCE_DIR}/packaging
            ${PROJECT_SOURCE_DIR}/docs/guide ${PROJECT_SOURCE_DIR}/tools ${PROJECT_SOURCE_DIR}/package
            $<TARGET_FILE:tarvo_diagnostics> ${${name}_READS} --
            bash ${PROJECT_SOURCE_DIR}/tools/in_lane.sh python3 ${CMAKE_CURRENT_SOURCE_DIR}/packaging/${name}_test.py ${TARVO_RELEASE_DIR}/release
            ${PROJECT_BINARY_DIR}/bin @prefix@ ${TARVO_RELEASE_DIR}/${name})
    set_tests_properties(packaging.${name} PROPERTIES
        FIXTURES_REQUIRED release ${TARVO_WINE_LANE} TIMEOUT ${TARVO_NET})
endforeach()
