# One interface target that every target of ours links: language level, warnings as errors, Windows level.
add_library(tarvo_flags INTERFACE)
target_compile_features(tarvo_flags INTERFACE cxx_std_14)
target_include_directories(tarvo_flags INTERFACE ${PROJECT_SOURCE_DIR})

if(MSVC)
    target_compile_options(tarvo_flags INTERFACE /W4 /WX /utf-8)
else()
    target_compile_options(tarvo_flags INTERFACE
        -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wundef
        # FARPROC has to be cast to the function's own type; there is no other way to use GetProcAddress.
        $<$<PLATFORM_ID:Windows>:-Wno-cast-function-type>
        # The same bytes from whatever folder it is built in.
        -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
endif()
if(MINGW)
    target_link_options(tarvo_flags INTERFACE -Wl,--no-insert-timestamp)
endif()

if(WIN32)
    # The host of 2019 runs on Windows 7 SP1 and later.
    target_compile_definitions(tarvo_flags INTERFACE
        UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601 NTDDI_VERSION=0x06010000)
    if(MSVC)
        target_compile_definitions(tarvo_flags INTERFACE _CRT_SECURE_NO_WARNINGS)
    endif()
endif()

option(TARVO_SANITIZE "AddressSanitizer and UBSan (native build only)" OFF)
if(TARVO_SANITIZE)
    target_compile_options(tarvo_flags INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(tarvo_flags INTERFACE -fsanitize=address,undefined)
endif()

option(TARVO_FUZZ "Instrument for libFuzzer and build the fuzz targets (clang)" OFF)
if(TARVO_FUZZ)
    # Compared values lead the sanitized build to new inputs; without them an execution takes half the time.
    if(TARVO_SANITIZE)
        target_compile_options(tarvo_flags INTERFACE -fsanitize=fuzzer-no-link)
    else()
        target_compile_options(tarvo_flags INTERFACE -fsanitize-coverage=inline-8bit-counters,pc-table)
    endif()
endif()
