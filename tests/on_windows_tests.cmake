# The tests on Windows itself (preset msvc-standin): in the language and at the scale that the machine has. They use the
# machine's data folder "%ProgramData%\Tarvo Rendering": not for a machine on which the plugin is installed. Not run yet.
set(TARVO_SEVEN_ZIP "" CACHE PATH "Folder with 7z.exe and 7z.dll, for the tests that pack")
set(TARVO_TEST_ENVIRONMENT "TARVO_TEST_DATA=${TARVO_TEST_DATA};TARVO_HOST_CHECK=${TARVO_HOST_CHECK}"
    "TARVO_SEVEN_ZIP=${TARVO_SEVEN_ZIP}")
foreach(program portable_tests standin_tests win32_tests plugin_tests module_tests)
    if(MSVC)
        target_include_directories(${program} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/support/msvc)
    endif()
    add_test(NAME ${program}.windows COMMAND ${program} --gtest_brief=1)
    set_tests_properties(${program}.windows PROPERTIES
        ENVIRONMENT "${TARVO_TEST_ENVIRONMENT}" RESOURCE_LOCK data_folder TIMEOUT 300)
endforeach()

# The stage answers 2 when a scenario wants another language than the machine has.
file(GLOB TARVO_SCENARIOS CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/scenarios/*.json)
foreach(scenario ${TARVO_SCENARIOS})
    get_filename_component(name ${scenario} NAME_WE)
    set(arguments --scenario ${scenario} --out ${PROJECT_BINARY_DIR}/scenarios/${name}
        --scripts ${PROJECT_SOURCE_DIR}/scripts)
    if(TARVO_SEVEN_ZIP)
        list(APPEND arguments --seven-zip ${TARVO_SEVEN_ZIP})
    endif()
    add_test(NAME scenario.${name} COMMAND stage ${arguments})
    set_tests_properties(scenario.${name} PROPERTIES
        RESOURCE_LOCK data_folder TIMEOUT 300 SKIP_RETURN_CODE 2)
endforeach()

# The stage's host loads the probe; its report is beside the module.
add_test(NAME host_probe.stage COMMAND stage --scenario ${PROJECT_SOURCE_DIR}/tools/host_check/probe_stage.json
    --out ${PROJECT_BINARY_DIR}/scenarios/host_probe --module $<TARGET_FILE:tarvo_probe>)
add_test(NAME host_probe.report COMMAND ${TARVO_ANY_PYTHON} ${PROJECT_SOURCE_DIR}/tools/read_host_report.py
    $<TARGET_FILE_DIR:tarvo_probe>/TarvoHostProbe.txt)
set_tests_properties(host_probe.stage PROPERTIES RESOURCE_LOCK data_folder TIMEOUT 120 FIXTURES_SETUP host_probe)
set_tests_properties(host_probe.report PROPERTIES FIXTURES_REQUIRED host_probe)
