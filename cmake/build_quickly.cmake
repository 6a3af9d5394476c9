# Most of what the compiler reads of a small source are the libraries' headers: build_quickly(TARGET LEVEL [HEADER…]) has it
# read them once, and optimise no more than LEVEL (-O0 for tests, -O1 for stand-ins). A compiler launcher has its own way
# to be quick. The product itself is built as it is released; its few files gain nothing by precompiled headers.
function(build_quickly target level)
    if(NOT MSVC AND NOT TARVO_COVERAGE)
        target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${level}>)
    endif()
    if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
        target_precompile_headers(${target} PRIVATE
            <algorithm> <functional> <map> <memory> <set> <string> <vector> ${ARGN})
    endif()
endfunction()
