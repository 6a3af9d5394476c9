# Tests that are Windows programs; ctest starts them through the emulator, which is Wine. The plugin's data folder is the
# machine's, so each test takes a Wine lane of its own (tools/lib/wine.sh). Lanes exist only with ctest's option
# --resource-spec-file; without it, run ctest without -j.
set(TARVO_WINE_LANE RESOURCE_GROUPS wine:1)
# A test that hangs ends after this many seconds and names itself; ctest's own limit is the net below.
set(TARVO_LIMIT 90)
set(TARVO_LONG_LIMIT 280)
set(TARVO_NET 330)
# The tests that take longest, in seconds on two cores: they start first, so that no lane is left with one at the end.
# From the second run on ctest goes by what it measured.
set(TARVO_LONG_TESTS
    scenario.all_boxes.en=40 scenario.all_boxes.zh=40 scenario.soak.en=20 scenario.soak.zh=20 scenario.wear=30
    scenario.client_bodies_any_code=11 scenario.client_bodies_no_code=13 packaging.setup=43 packaging.diagnostics=18)
set(TARVO_WINE bash ${PROJECT_SOURCE_DIR}/tools/in_wine.sh)
set(TARVO_WINE_ENVIRONMENT "TARVO_TEST_DATA=Z:${TARVO_TEST_DATA};TARVO_SEVEN_ZIP=Z:${TARVO_DEPS_DIR}/7-Zip"
    "TARVO_HOST_CHECK=Z:${TARVO_HOST_CHECK}")

include(${PROJECT_SOURCE_DIR}/cmake/resources.cmake)
target_sources(portable_tests PRIVATE ${PROJECT_SOURCE_DIR}/resources/tarvo_rendering.rc)
target_link_libraries(portable_tests PRIVATE tarvo_win32 ${TARVO_STATIC})

set(TARVO_WIN32_TESTS ${TARVO_TESTS})
list(FILTER TARVO_WIN32_TESTS INCLUDE REGEX "_win32_test.cpp$")
file(GLOB TARVO_TEST_SUPPORT CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/support/*.cpp)
add_executable(win32_tests ${TARVO_WIN32_TESTS} ${TARVO_TEST_SUPPORT}
    ${PROJECT_SOURCE_DIR}/resources/tarvo_rendering.rc)
target_link_libraries(win32_tests PRIVATE
    tarvo_win32 max_file maxscript_host stage_scenario tarvo_gtest ws2_32 gdi32 comctl32 ${TARVO_STATIC})
target_link_libraries(standin_tests PRIVATE tarvo_win32 stage_scenario ws2_32 ${TARVO_STATIC})
add_dependencies(standin_tests client make_scene)
add_dependencies(win32_tests client make_scene)
build_quickly(win32_tests -O0 <gtest/gtest.h> <json/json.h> <windows.h>)

file(GLOB TARVO_PLUGIN_TESTS CONFIGURE_DEPENDS 
    ${CMAKE_CURRENT_SOURCE_DIR}/product/host/*_test.cpp ${CMAKE_CURRENT_SOURCE_DIR}/product/plugin/*_test.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/standin/host_sdk/*_test.cpp)
list(TRANSFORM TARVO_SDK_SOURCES PREPEND ${PROJECT_SOURCE_DIR}/ OUTPUT_VARIABLE TARVO_SDK_FILES)
add_executable(plugin_tests ${TARVO_PLUGIN_TESTS} ${TARVO_SDK_FILES}
    support/portable_main.cpp support/test_boxes.cpp support/test_folder.cpp
    ${PROJECT_SOURCE_DIR}/resources/tarvo_rendering.rc)
target_link_libraries(plugin_tests PRIVATE tarvo_win32 host_sdk standin_base tarvo_gtest ${TARVO_STATIC})
build_quickly(plugin_tests -O0 <gtest/gtest.h> <json/json.h> <windows.h>)

# The finished module through its exports, as the host uses it: nothing of the product is linked.
file(GLOB TARVO_MODULE_TESTS CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/product/module/*.cpp)
add_executable(module_tests ${TARVO_MODULE_TESTS})
target_link_libraries(module_tests PRIVATE tarvo_flags host_sdk tarvo_gtest shell32 ${TARVO_STATIC})
add_dependencies(module_tests tarvo_module)
build_quickly(module_tests -O0 <gtest/gtest.h> <windows.h>)

if(CMAKE_HOST_WIN32)
    include(on_windows_tests.cmake)
    return()
endif()

# What every test under Wine reads, and what the programs and the scenarios read besides.
set(TARVO_WINE_KEYED ${TARVO_KEYED} ${PROJECT_SOURCE_DIR}/scripts ${TARVO_DEPS_DIR}/7-Zip
    ${PROJECT_SOURCE_DIR}/tools/lib ${PROJECT_SOURCE_DIR}/tools/in_wine.sh)
# Each test program reads itself, and of what is built besides:
set(standin_tests_READS client make_scene)
set(win32_tests_READS client make_scene)
set(plugin_tests_READS host_standin)
set(module_tests_READS tarvo_module host_standin)
set(TARVO_PROGRAM_KEYED ${TARVO_WINE_KEYED} ${TARVO_TEST_DATA} ${CMAKE_CURRENT_SOURCE_DIR}/scenarios
    ${TARVO_HOST_CHECK}/HostCheck.ms ${TARVO_HOST_CHECK}/changed/HostCheck.ms)
set(TARVO_STAGE_FILES $<TARGET_FILE:tarvo_module> $<TARGET_FILE:stage> $<TARGET_FILE:client> $<TARGET_FILE:host_standin>)
set(TARVO_SCENARIO_KEYED ${TARVO_WINE_KEYED} ${TARVO_STAGE_FILES} ${PROJECT_SOURCE_DIR}/tools/play.sh)

# What gtest measured of each test, for tools/slowest.py.
set(TARVO_TIMES ${PROJECT_BINARY_DIR}/times)
file(MAKE_DIRECTORY ${TARVO_TIMES})

# Both code pages and both languages: what a user's machine is set to decides which texts and paths come up. The longest
# program runs in parts, in different lanes.
set(win32_tests_PARTS 4)
# The interpreter knows no language: its tests run in one of them. What needs Windows of the stand-ins runs in both.
set(TARVO_STANDIN_SUITES "")
foreach(file ${TARVO_STANDIN_TESTS})
    if(file MATCHES "_win32_test.cpp$")
        file(STRINGS ${file} lines REGEX "^TEST")
        list(TRANSFORM lines REPLACE "^[A-Z_]+\\(([A-Za-z0-9]+),.*" "\\1.*")
        list(APPEND TARVO_STANDIN_SUITES ${lines})
    endif()
endforeach()
list(REMOVE_DUPLICATES TARVO_STANDIN_SUITES)
list(JOIN TARVO_STANDIN_SUITES ":" TARVO_STANDIN_SUITES)
set(standin_tests_FILTER_zh "--gtest_filter=${TARVO_STANDIN_SUITES}")
# The sizes of a picture know no language: the random ones are divided between the two.
set(plugin_tests_FILTER_en "--gtest_filter=-Batches/*/1:Batches/*/3:Batches/*/5:Batches/*/7")
set(plugin_tests_FILTER_zh "--gtest_filter=-Batches/*/0:Batches/*/2:Batches/*/4:Batches/*/6")
foreach(program portable_tests standin_tests win32_tests plugin_tests module_tests)
    set(reads $<TARGET_FILE:${program}>)
    foreach(target ${${program}_READS})
        list(APPEND reads $<TARGET_FILE:${target}>)
    endforeach()
    set(parts 1)
    if(DEFINED ${program}_PARTS)
        set(parts ${${program}_PARTS})
    endif()
    foreach(language en zh)
        foreach(part RANGE 1 ${parts})
            set(name ${program}.${language})
            set(shard "")
            if(parts GREATER 1)
                set(name ${name}.${part})
                math(EXPR index "${part} - 1")
                set(shard "GTEST_TOTAL_SHARDS=${parts};GTEST_SHARD_INDEX=${index}")
            endif()
            add_test(NAME ${name} COMMAND ${TARVO_PROGRAM_KEYED} ${reads} --
                ${TARVO_WINE} ${language} $<TARGET_FILE:${program}> --gtest_brief=1 ${${program}_FILTER_${language}})
            set_tests_properties(${name} PROPERTIES ${TARVO_WINE_LANE} TIMEOUT ${TARVO_NET} COST 10
                ENVIRONMENT "${TARVO_WINE_ENVIRONMENT};GTEST_OUTPUT=json:Z:${TARVO_TIMES}/${name}.json;${shard}")
        endforeach()
    endforeach()
endforeach()

# A test that crashes ends its program; no window waits for a person.
add_test(NAME tests.crash_ends_program COMMAND ${TARVO_WINE} en $<TARGET_FILE:portable_tests>
    --gtest_also_run_disabled_tests --gtest_filter=HangWatch.DISABLED_Crashes)
set_tests_properties(tests.crash_ends_program PROPERTIES ${TARVO_WINE_LANE} ENVIRONMENT TARVO_LIMIT=60
    PASS_REGULAR_EXPRESSION "Unhandled page fault" FAIL_REGULAR_EXPRESSION "HANGS;PASSED")

# Paths and names once more where the ANSI page is UTF-8.
add_test(NAME win32_tests.utf8 COMMAND ${TARVO_PROGRAM_KEYED} $<TARGET_FILE:win32_tests> --
    ${TARVO_WINE} utf8 $<TARGET_FILE:win32_tests> --gtest_brief=1
    --gtest_filter=ArchiveNames.*:SevenZip.*:ForeignArchive.*:Logger*:SceneBackup.*:PluginConfig*)
set_tests_properties(win32_tests.utf8 PROPERTIES ${TARVO_WINE_LANE} TIMEOUT ${TARVO_NET} COST 10
    ENVIRONMENT "${TARVO_WINE_ENVIRONMENT}")

# The dialogs at the screen scales besides the usual one.
foreach(scale 150 200)
    foreach(language en zh)
        add_test(NAME dialog_layout.${language}.${scale}
            COMMAND ${TARVO_PROGRAM_KEYED} $<TARGET_FILE:win32_tests> ${PROJECT_SOURCE_DIR}/tools/at_scale.sh --
                bash ${PROJECT_SOURCE_DIR}/tools/at_scale.sh ${scale} ${TARVO_WINE} ${language}
                $<TARGET_FILE:win32_tests> --gtest_brief=1 --gtest_filter=*Layout*)
        set_tests_properties(dialog_layout.${language}.${scale} PROPERTIES
            ENVIRONMENT "${TARVO_WINE_ENVIRONMENT};TARVO_EXPECTED_SCALE=${scale}"
            ${TARVO_WINE_LANE} TIMEOUT ${TARVO_NET})
    endforeach()
endforeach()

file(GLOB TARVO_SCENARIOS CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/scenarios/*.json)
list(APPEND TARVO_SCENARIOS ${PROJECT_SOURCE_DIR}/tools/scenarios/pictures.json)

# `name` is the test's and the run's folder.
function(add_scenario name scenario language)
    add_test(NAME scenario.${name}
        COMMAND ${TARVO_SCENARIO_KEYED} ${scenario} --
            bash ${PROJECT_SOURCE_DIR}/tools/play.sh ${PROJECT_BINARY_DIR}/bin ${scenario} ${PROJECT_BINARY_DIR}/scenarios/${name})
    set(limit ${TARVO_LIMIT})
    if("${TARVO_LONG_TESTS}" MATCHES "scenario.${name}=")
        set(limit ${TARVO_LONG_LIMIT})
    endif()
    set_tests_properties(scenario.${name} PROPERTIES
        ENVIRONMENT "TARVO_LANGUAGE=${language};TARVO_SCENARIOS_CHECKED=1;TARVO_LIMIT=${limit}" ${TARVO_WINE_LANE} TIMEOUT ${TARVO_NET}
        FIXTURES_SETUP played)
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

# Of the sweep of faults a part that the module's content chooses, and its tables against the module's imports.
add_test(NAME faults.sample
    COMMAND ${TARVO_SCENARIO_KEYED} ${CMAKE_CURRENT_SOURCE_DIR}/faults ${PROJECT_SOURCE_DIR}/tools/sweep.py --
        python3 ${PROJECT_SOURCE_DIR}/tools/sweep.py
        --bin ${PROJECT_BINARY_DIR}/bin --out ${PROJECT_BINARY_DIR}/faults --sample module)
set_tests_properties(faults.sample PROPERTIES ENVIRONMENT "TARVO_BUILD_DIR=${PROJECT_BINARY_DIR}/.." ${TARVO_WINE_LANE}
    TIMEOUT ${TARVO_NET} COST 30)
add_test(NAME docs.faults
    COMMAND python3 ${PROJECT_SOURCE_DIR}/tools/sweep.py --check $<TARGET_FILE:tarvo_module>)

# What the scenarios really wrote and posted, held against the schemas.
find_program(TARVO_DEBIAN_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)
add_test(NAME docs.formats_of_runs
    COMMAND ${TARVO_DEBIAN_PYTHON} ${PROJECT_SOURCE_DIR}/tools/check_formats.py
        --runs ${PROJECT_BINARY_DIR}/scenarios ${TARVO_RUNS})
set_tests_properties(docs.formats_of_runs PROPERTIES FIXTURES_REQUIRED played)

# What is asked inside the real host, asked in the stage's.
foreach(subject check probe)
    add_test(NAME host_${subject}.stage
        COMMAND bash ${PROJECT_SOURCE_DIR}/tools/host_${subject}_in_stage.sh
            ${PROJECT_BINARY_DIR}/bin ${TARVO_HOST_CHECK})
    set_tests_properties(host_${subject}.stage PROPERTIES ${TARVO_WINE_LANE} TIMEOUT ${TARVO_NET})
endforeach()

include(packaging/packaging_tests.cmake)

foreach(entry ${TARVO_LONG_TESTS})
    string(REPLACE "=" ";" entry ${entry})
    list(GET entry 0 name)
    list(GET entry 1 seconds)
    set_tests_properties(${name} PROPERTIES COST ${seconds})
endforeach()
