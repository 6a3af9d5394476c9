// The system's ANSI code page, which is not the console's.
#include "common/text.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

std::string in_code_page(UINT page, const std::wstring& text) {
    char bytes[16] = {};
    const int length = ::WideCharToMultiByte(page, 0, text.data(), static_cast<int>(text.size()), bytes,
                                             sizeof bytes, nullptr, nullptr);
    return std::string(bytes, static_cast<std::size_t>(length));
}

TEST(AnsiText, UsesTheAnsiCodePage) {
    for (const wchar_t* text : {L"\u00e9", L"\u00df", L"\u4e2d"}) {
        const std::string expected = in_code_page(::GetACP(), text);
        EXPECT_EQ(tarvo::Utf8ToAnsi(tarvo::WideToUtf8(text)), expected) << std::wstring(text).size();
    }
}

} // namespace
