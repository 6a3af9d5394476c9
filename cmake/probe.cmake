# TarvoHostProbe.gup: not part of any release. It asks the host through the same adapter as the module.
set(TARVO_PROBE_SOURCES
    probe/actions.cpp
    probe/menus.cpp
    probe/module_entry.cpp
    probe/probe_object.cpp
    probe/report.cpp
    probe/saving.cpp
    probe/spinner.cpp
    probe/values.cpp)
add_library(tarvo_probe MODULE ${TARVO_PROBE_SOURCES} ${TARVO_HOST_SDK} probe/probe.rc probe/tarvo_host_probe.def)
target_link_libraries(tarvo_probe PRIVATE tarvo_win32 host_sdk)
set_target_properties(tarvo_probe PROPERTIES PREFIX "" OUTPUT_NAME TarvoHostProbe SUFFIX .gup)
if(MINGW)
    target_link_options(tarvo_probe PRIVATE -static)
endif()
