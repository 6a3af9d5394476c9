# Tests that are Windows programs; ctest starts them through the emulator, which is Wine. They share one machine-wide
# data folder, so no two of them run at the same time.
set(TARVO_WINE bash ${PROJECT_SOURCE_DIR}/tools/in_wine.sh)
set(TARVO_WINE_ENVIRONMENT "TARVO_TEST_DATA=Z:${TARVO_TEST_DATA};TARVO_SEVEN_ZIP=Z:${TARVO_DEPS_DIR}/7-Zip")

include(${PROJECT_SOURCE_DIR}/cmake/resources.cmake)
target_sources(portable_tests PRIVATE ${PROJECT_SOURCE_DIR}/resources/tarvo_rendering.rc)
target_link_libraries(portable_tests PRIVATE tarvo_win32 -static)

file(GLOB TARVO_WIN32_TESTS CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/unit_win32/*_test.cpp)
file(GLOB TARVO_TEST_SUPPORT CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/support/*.cpp)
add_executable(win32_tests ${TARVO_WIN32_TESTS} ${TARVO_TEST_SUPPORT}
    ${PROJECT_SOURCE_DIR}/resources/tarvo_rendering.rc)
target_link_libraries(win32_tests PRIVATE
    tarvo_win32 standin_scene maxscript_host stage_scenario tarvo_gtest ws2_32 gdi32 comctl32 -static)
add_dependencies(win32_tests client make_scene)

file(GLOB TARVO_PLUGIN_TESTS CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/unit_plugin/*_test.cpp)
list(TRANSFORM TARVO_SDK_SOURCES PREPEND ${PROJECT_SOURCE_DIR}/ OUTPUT_VARIABLE TARVO_SDK_FILES)
add_executable(plugin_tests ${TARVO_PLUGIN_TESTS} ${TARVO_SDK_FILES}
    support/portable_main.cpp support/test_boxes.cpp support/test_folder.cpp
    ${PROJECT_SOURCE_DIR}/resources/tarvo_rendering.rc)
target_link_libraries(plugin_tests PRIVATE tarvo_win32 host_sdk tarvo_gtest -static)

# The finished module through its exports, as the host uses it: nothing of the product is linked.
file(GLOB TARVO_MODULE_TESTS CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/unit_module/*.cpp)
add_executable(module_tests ${TARVO_MODULE_TESTS})
target_link_libraries(module_tests PRIVATE tarvo_flags host_sdk tarvo_gtest shell32 -static)
add_dependencies(module_tests tarvo_module)

# Both code pages and both languages: what a user's machine is set to decides which texts and paths come up.
foreach(program portable_tests win32_tests plugin_tests module_tests)
    foreach(language en zh)
        add_test(NAME ${program}.${language}
            COMMAND ${TARVO_WINE} ${language} $<TARGET_FILE:${program}> --gtest_brief=1)
        set_tests_properties(${program}.${language} PROPERTIES
            ENVIRONMENT "${TARVO_WINE_ENVIRONMENT}" RESOURCE_LOCK data_folder TIMEOUT 300)
    endforeach()
endforeach()

# The dialogs at the screen scales besides the usual one.
foreach(scale 150 200)
    foreach(language en zh)
        add_test(NAME dialog_layout.${language}.${scale}
            COMMAND bash ${PROJECT_SOURCE_DIR}/tools/at_scale.sh ${scale} ${TARVO_WINE} ${language}
                $<TARGET_FILE:win32_tests> --gtest_brief=1 --gtest_filter=*Layout*)
        set_tests_properties(dialog_layout.${language}.${scale} PROPERTIES
            ENVIRONMENT "${TARVO_WINE_ENVIRONMENT};TARVO_EXPECTED_SCALE=${scale}"
            RESOURCE_LOCK data_folder TIMEOUT 300)
    endforeach()
endforeach()

file(GLOB TARVO_SCENARIOS CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/scenarios/*.json)
list(APPEND TARVO_SCENARIOS ${PROJECT_SOURCE_DIR}/tools/scenarios/pictures.json)

# `name` is the test's and the run's folder.
function(add_scenario name scenario language)
    add_test(NAME scenario.${name}
        COMMAND bash ${PROJECT_SOURCE_DIR}/tools/play.sh
            ${PROJECT_BINARY_DIR}/bin ${scenario} ${PROJECT_BINARY_DIR}/scenarios/${name})
    set_tests_properties(scenario.${name} PROPERTIES
        ENVIRONMENT "TARVO_LANGUAGE=${language}" RESOURCE_LOCK data_folder TIMEOUT 300 FIXTURES_SETUP played)
endfunction()

# A scenario for any language is played in both.
set(TARVO_RUNS "")
foreach(scenario ${TARVO_SCENARIOS})
    get_filename_component(name ${scenario} NAME_WE)
    file(READ ${scenario} text)
    if(text MATCHES "\"language\": \"any\"")
        foreach(language en zh)
            add_scenario(${name}.${language} ${scenario} ${language})
            list(APPEND TARVO_RUNS ${name}.${language})
        endforeach()
    else()
        add_scenario(${name} ${scenario} en)
        list(APPEND TARVO_RUNS ${name})
    endif()
endforeach()

# What the scenarios really wrote and posted, held against the schemas.
find_program(TARVO_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)
add_test(NAME docs.formats_of_runs
    COMMAND ${TARVO_PYTHON} ${PROJECT_SOURCE_DIR}/tools/check_formats.py
        --runs ${PROJECT_BINARY_DIR}/scenarios ${TARVO_RUNS})
set_tests_properties(docs.formats_of_runs PROPERTIES FIXTURES_REQUIRED played)

include(packaging/packaging_tests.cmake)
