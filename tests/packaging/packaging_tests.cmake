# The release, installed under Wine.
set(TARVO_SCRIPTS_DIR ${PROJECT_SOURCE_DIR}/scripts CACHE PATH "Folder with the scripts that a release holds")
set(TARVO_RELEASE_DIR ${PROJECT_BINARY_DIR}/packaging)
add_test(NAME packaging.release
    COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/packaging/release_test.sh
        ${PROJECT_BINARY_DIR}/bin ${TARVO_SCRIPTS_DIR} ${TARVO_RELEASE_DIR})
set_tests_properties(packaging.release PROPERTIES FIXTURES_SETUP release TIMEOUT 120)
# The emulator's machine lies beside the builds.
get_filename_component(TARVO_ALL_BUILDS ${PROJECT_BINARY_DIR} DIRECTORY)
foreach(name setup diagnostics diagnostics_broken)
    add_test(NAME packaging.${name}
        COMMAND python3 ${CMAKE_CURRENT_SOURCE_DIR}/packaging/${name}_test.py ${TARVO_RELEASE_DIR}/release
            ${PROJECT_BINARY_DIR}/bin ${TARVO_ALL_BUILDS}/wine ${TARVO_RELEASE_DIR}/${name})
    set_tests_properties(packaging.${name} PROPERTIES
        FIXTURES_REQUIRED release RESOURCE_LOCK data_folder TIMEOUT 300)
endforeach()
