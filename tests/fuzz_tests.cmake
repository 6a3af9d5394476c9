# The fuzz targets. The test fuzz.NAME runs the kept corpus and a bounded number of inputs made from it; tools/fuzz.sh runs
# a target for as long as wanted.
set(TARVO_FUZZ_FOLDER ${CMAKE_CURRENT_SOURCE_DIR}/fuzz)

add_library(fuzz_support OBJECT
    fuzz/support/analysis_mutator.cpp
    fuzz/support/json_tree.cpp
    fuzz/support/notices.cpp
    fuzz/support/outside.cpp
    fuzz/support/scene_oracle.cpp
    support/native/string_table_native.cpp
    support/native/text_native.cpp)
target_link_libraries(fuzz_support PUBLIC tarvo_portable standin_base)

# What states the rules is not what is fuzzed: no counters in it.
set(TARVO_NO_COUNTERS -fno-sanitize-coverage=inline-8bit-counters,pc-table,trace-cmp,indirect-calls)
target_compile_options(fuzz_support PRIVATE ${TARVO_NO_COUNTERS})

add_custom_target(fuzzers)

# add_fuzz_target(NAME RUNS MAX_LENGTH SECONDS LIBRARY…): RUNS inputs of at most MAX_LENGTH bytes are for ./test; an input that
# takes longer than SECONDS is a hang.
function(add_fuzz_target name runs max_length seconds)
    add_executable(${name}_fuzzer fuzz/${name}_fuzzer.cpp)
    add_dependencies(fuzzers ${name}_fuzzer)
    target_link_libraries(${name}_fuzzer PRIVATE ${ARGN})
    target_link_options(${name}_fuzzer PRIVATE -fsanitize=fuzzer)
    target_compile_options(${name}_fuzzer PRIVATE ${TARVO_NO_COUNTERS})
    set(options -entropic=0 -max_len=${max_length} -timeout=${seconds})
    if(EXISTS ${TARVO_FUZZ_FOLDER}/${name}.dict)
        list(APPEND options -dict=${TARVO_FUZZ_FOLDER}/${name}.dict)
    endif()
    # Written by hand, kept by tools/fuzz.sh --keep, and the golden files.
    set(corpora "")
    foreach(folder fuzz/seeds/${name} fuzz/corpus/${name} data/${name})
        if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${folder})
            list(APPEND corpora ${CMAKE_CURRENT_SOURCE_DIR}/${folder})
        endif()
    endforeach()
    set(grown ${PROJECT_BINARY_DIR}/corpus/${name})
    file(MAKE_DIRECTORY ${grown})
    add_test(NAME fuzz.${name} COMMAND ${TARVO_KEYED} $<TARGET_FILE:${name}_fuzzer> ${corpora} --
        $<TARGET_FILE:${name}_fuzzer> -runs=${runs} -seed=1 ${options} ${grown} ${corpora})
    # For tools/fuzz.sh.
    file(WRITE ${PROJECT_BINARY_DIR}/fuzz_options/${name} "${options}\n")
endfunction()

add_fuzz_target(analysis 15000 768 10 fuzz_support)
add_fuzz_target(ini 20000 256 10 fuzz_support diagnostics_portable)
add_fuzz_target(max_file 25000 2048 10 fuzz_support max_file z)
target_sources(max_file_fuzzer PRIVATE ${PROJECT_SOURCE_DIR}/standin/max_file/gunzip.cpp)
add_fuzz_target(maxscript 1500 1024 20 maxscript)
add_fuzz_target(names 20000 64 10 fuzz_support)
add_fuzz_target(reply 60000 160 10 fuzz_support)
add_fuzz_target(submit 8000 1024 10 fuzz_support)
