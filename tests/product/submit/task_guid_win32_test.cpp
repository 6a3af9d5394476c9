// The task id: its form, and the result when the system cannot create one.
#include "submit/client_link.h"

#include "common/text.h"
#include "tests/support/patched_import.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <objbase.h>

namespace {

using tarvo::FormatGuid;

void expect_guid_shape(const std::string& text) {
    ASSERT_EQ(text.size(), 36u) << text;
    for (std::string::size_type i = 0; i < text.size(); ++i) {
        const bool hyphen = i == 8 || i == 13 || i == 18 || i == 23;
        const std::string allowed = hyphen ? "-" : "0123456789ABCDEF";
        EXPECT_NE(allowed.find(text[i]), std::string::npos) << text << " at " << i;
    }
}

TEST(FormatGuid, WritesTheFieldsInOrder) {
    const GUID guid = {0x1F0C3B7A, 0x9D2E, 0x4C11, {0x8A, 0x5B, 0x0E, 0x6D, 0x2F, 0x9A, 0x7C, 0x31}};
    EXPECT_EQ(FormatGuid(guid), "1F0C3B7A-9D2E-4C11-8A5B-0E6D2F9A7C31");
    expect_guid_shape(FormatGuid(guid));
}

TEST(FormatGuid, LeadingZerosAreKept) {
    const GUID guid = {0x1, 0x2, 0x3, {4, 5, 6, 7, 8, 9, 10, 11}};
    EXPECT_EQ(FormatGuid(guid), "00000001-0002-0003-0405-060708090A0B");
    EXPECT_EQ(FormatGuid({0, 0, 0, {}}), "00000000-0000-0000-0000-000000000000");
}

TEST(FormatGuid, LargestValuesAreFormatted) {
    const GUID guid = {0xFFFFFFFF, 0xFFFF, 0xFFFF, {255, 255, 255, 255, 255, 255, 255, 255}};
    EXPECT_EQ(FormatGuid(guid), "FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF");
}

TEST(NewTaskGuid, IsDifferentEachTime) {
    const std::wstring first = tarvo::NewTaskGuid();
    const std::wstring second = tarvo::NewTaskGuid();
    expect_guid_shape(tarvo::WideToUtf8(first));
    expect_guid_shape(tarvo::WideToUtf8(second));
    EXPECT_NE(first, second);
}

HRESULT WINAPI no_guid(GUID* guid) {
    *guid = GUID{0x12345678, 0, 0, {}};
    return E_FAIL;
}

TEST(SystemTaskGuid, FailureGivesAnEmptyIdAndIsLogged) {
    support::plugin_folder();
    const support::PatchedImport patch("ole32.dll", "CoCreateGuid", reinterpret_cast<void*>(&no_guid));
    ASSERT_TRUE(patch.installed());
    const std::size_t mark = support::log_mark("qfx_http");
    EXPECT_EQ(tarvo::NewTaskGuid(), L"");
    EXPECT_EQ(support::log_lines_since("qfx_http", mark),
              std::vector<std::string>{"[ERROR] The GUID generate failed!"});
}

} // namespace
