// The real 7z.exe where the plugin looks for it. TARVO_SEVEN_ZIP names the folder that holds 7z.exe and
// 7z.dll. Needs windows.h.
#pragma once

#include "common/platform.h"
#include "common/text.h"
#include "tests/support/patience.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <string>

namespace support {

// The system holds a program's file a little longer than the program runs.
inline bool copy_patiently(const std::wstring& from, const std::wstring& to) {
    return eventually([&] { return ::CopyFileW(from.c_str(), to.c_str(), FALSE) != 0; });
}

inline void install_seven_zip() {
    const char* source = std::getenv("TARVO_SEVEN_ZIP");
    ASSERT_NE(source, nullptr) << "TARVO_SEVEN_ZIP is not set";
    const std::wstring from = tarvo::Utf8ToWide(source) + L"\\";
    const std::wstring to = tarvo::CommonAppDataFolder() + L"/Tarvo Rendering/7-Zip/";
    ::CreateDirectoryW(to.c_str(), nullptr);
    for (const wchar_t* name : {L"7z.exe", L"7z.dll"}) {
        ASSERT_TRUE(copy_patiently(from + name, to + name)) << ::GetLastError();
    }
}

} // namespace support
