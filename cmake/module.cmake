# The module itself: the portable layers, the Windows twins, the two places that see the SDK, the resources.
add_library(tarvo_win32 STATIC ${TARVO_WIN32_SOURCES})
target_link_libraries(tarvo_win32 PUBLIC tarvo_portable comctl32 winhttp shell32 shlwapi ole32)
# The portable files call their Windows twins too.
target_link_libraries(tarvo_portable INTERFACE tarvo_win32)

option(TARVO_COVERAGE "Count the lines and branches that run (mingw)" OFF)
if(TARVO_COVERAGE)
    foreach(library tarvo_portable tarvo_win32)
        target_compile_options(${library} PRIVATE --coverage)
        target_link_options(${library} INTERFACE --coverage)
    endforeach()
endif()

include(${CMAKE_CURRENT_LIST_DIR}/resources.cmake)
add_library(tarvo_module MODULE ${TARVO_SDK_SOURCES}
    resources/tarvo_rendering.rc plugin/tarvo_rendering.def)
target_link_libraries(tarvo_module PRIVATE tarvo_win32 host_sdk)
set_target_properties(tarvo_module PROPERTIES PREFIX "" OUTPUT_NAME TarvoRendering SUFFIX .gup)

if(MINGW)
    # Nothing but system DLLs and the host's may be imported; the resource compiler reads UTF-8.
    # The map says where in the sources a call comes from; tools/sweep.py reads it.
    target_link_options(tarvo_module PRIVATE -static $<$<CONFIG:Release>:-s> -Wl,-Map=$<TARGET_FILE:tarvo_module>.map
        -Wl,--dynamicbase,--nxcompat,--high-entropy-va)
    set(CMAKE_RC_FLAGS "${CMAKE_RC_FLAGS} -c 65001")
endif()
if(MSVC)
    # The manifest is a resource of ours; the linker's own would take the same number.
    target_link_options(tarvo_module PRIVATE /MANIFEST:NO)
endif()
