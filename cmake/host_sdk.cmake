# host_sdk: the headers and libraries of the host's SDK. With MAXSDK_ROOT it is the real one (MSVC), without it our
# stand-in under standin/host_sdk. Only host/ and plugin/ link it.
set(MAXSDK_ROOT "" CACHE PATH "Folder 'maxsdk' of the host's SDK; empty: the stand-in")

add_library(host_sdk INTERFACE)
if(MAXSDK_ROOT)
    target_include_directories(host_sdk SYSTEM INTERFACE ${MAXSDK_ROOT}/include)
    foreach(library core maxutil maxscrpt gup paramblk2 menus)
        target_link_libraries(host_sdk INTERFACE ${MAXSDK_ROOT}/lib/x64/Release/${library}.lib)
    endforeach()
else()
    add_subdirectory(standin/host_sdk)
    target_link_libraries(host_sdk INTERFACE host_standin)
endif()
