# Read right after project() of the mutated copy (see tools/mutate.py): what the switches call, and the listener in every
# test program.
set(TARVO_MUTANTS ${CMAKE_CURRENT_LIST_DIR})
add_library(tarvo_mutants STATIC ${TARVO_MUTANTS}/switch.cpp)
link_libraries(tarvo_mutants)

function(tarvo_add_listener)
    foreach(program portable_tests sequence_tests win32_tests plugin_tests module_tests)
        if(TARGET ${program})
            target_sources(${program} PRIVATE ${TARVO_MUTANTS}/reach_listener.cpp)
        endif()
    endforeach()
endfunction()
cmake_language(DEFER CALL tarvo_add_listener)
