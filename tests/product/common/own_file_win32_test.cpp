// Which paths are passed to the system, and how its results are used.

#include "common/platform.h"
#include "common/text.h"
#include "tests/support/patched_import.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace {

using support::PatchedImport;

std::wstring g_asked;
DWORD WINAPI note_attributes(LPCWSTR path) {
    g_asked = path;
    return FILE_ATTRIBUTE_NORMAL;
}

DWORD WINAPI no_full_path(LPCWSTR, DWORD, LPWSTR, LPWSTR*) {
    return 0;
}

DWORD WINAPI longer_full_path(LPCWSTR, DWORD length, LPWSTR, LPWSTR*) {
    return length;
}

// The path that GetFileAttributesW receives for `path`.
std::wstring asked_for(const std::wstring& path) {
    const PatchedImport patch("kernel32.dll", "GetFileAttributesW",
                              reinterpret_cast<void*>(&note_attributes));
    EXPECT_TRUE(patch.installed());
    g_asked.clear();
    EXPECT_TRUE(tarvo::IsNameTaken(path));
    return g_asked;
}

const std::wstring kFolders(250, L'f');

TEST(OwnFilePath, UpTo259CharactersIsPassedUnchanged) {
    const std::wstring longest = L"C:\\" + std::wstring(256, L'f');
    ASSERT_EQ(longest.size(), 259u);
    EXPECT_EQ(asked_for(longest), longest);
    EXPECT_EQ(asked_for(longest + L"f"), L"\\\\?\\" + longest + L"f");
}

TEST(OwnFilePath, LongPathGetsBackslashes) {
    EXPECT_EQ(asked_for(L"C:\\a/b/" + kFolders + L"/c.7z"), L"\\\\?\\C:\\a\\b\\" + kFolders + L"\\c.7z");
}

TEST(OwnFilePath, LongServerPathGetsTheUncPrefix) {
    EXPECT_EQ(asked_for(L"\\\\server\\share\\" + kFolders + L"\\c.7z"),
              L"\\\\?\\UNC\\server\\share\\" + kFolders + L"\\c.7z");
}

TEST(OwnFilePath, ExtendedLengthPathIsPassedUnchanged) {
    const std::wstring path = L"\\\\?\\C:\\a/" + kFolders + L"/c.7z";
    EXPECT_EQ(asked_for(path), path);
}

TEST(OwnFilePath, FailedGetFullPathNameLeavesThePathUnchanged) {
    const std::wstring path = L"C:\\a\\" + kFolders + L"\\c.7z";
    for (auto* answer : {&no_full_path, &longer_full_path}) {
        const PatchedImport patch("kernel32.dll", "GetFullPathNameW", reinterpret_cast<void*>(answer));
        ASSERT_TRUE(patch.installed());
        EXPECT_EQ(asked_for(path), path);
    }
}

BOOL WINAPI large_index(HANDLE, LPBY_HANDLE_FILE_INFORMATION information) {
    *information = BY_HANDLE_FILE_INFORMATION();
    information->dwVolumeSerialNumber = 7;
    information->nFileIndexHigh = 0x12345678;
    information->nFileIndexLow = 0x9ABCDEF0;
    return TRUE;
}

TEST(OwnFileIdentity, HoldsTheVolumeAndThe64BitFileIndex) {
    const PatchedImport patch("kernel32.dll", "GetFileInformationByHandle",
                              reinterpret_cast<void*>(&large_index));
    ASSERT_TRUE(patch.installed());
    const tarvo::FileIdentity identity = tarvo::FileIdentityOf(tarvo::CommonAppDataFolder());
    EXPECT_TRUE(identity.known);
    EXPECT_EQ(identity.volume, 7u);
    EXPECT_EQ(identity.index, 0x123456789ABCDEF0u);
}

TEST(Platform, CommonAppDataFolderIsProgramData) {
    wchar_t folder[MAX_PATH] = {};
    ASSERT_NE(::GetEnvironmentVariableW(L"ProgramData", folder, MAX_PATH), 0u);
    EXPECT_EQ(tarvo::CommonAppDataFolder(), folder);
}

TEST(Platform, CreateFolderReturnsFalseWhenTheFolderExists) {
    wchar_t temporary[MAX_PATH] = {};
    ASSERT_NE(::GetTempPathW(MAX_PATH, temporary), 0u);
    const std::wstring wide = std::wstring(temporary) + L"tarvo made once";
    const std::string narrow = tarvo::WideToLocale(wide);
    ::RemoveDirectoryW(wide.c_str());
    EXPECT_TRUE(tarvo::CreateFolder(wide));
    EXPECT_FALSE(tarvo::CreateFolder(wide));
    ASSERT_TRUE(::RemoveDirectoryW(wide.c_str()));
    EXPECT_TRUE(tarvo::CreateFolder(narrow));
    EXPECT_FALSE(tarvo::CreateFolder(narrow));
    EXPECT_TRUE(::RemoveDirectoryW(wide.c_str()));
}

struct CodePage {
    BOOL known;
    UINT bytes;
};
CodePage g_page = {FALSE, 0};
BOOL WINAPI note_code_page(UINT, LPCPINFO information) {
    information->MaxCharSize = g_page.bytes;
    return g_page.known;
}

TEST(Platform, ConsoleIsDoubleByteOnlyWhenGetCPInfoReportsTwoBytes) {
    const PatchedImport patch("kernel32.dll", "GetCPInfo", reinterpret_cast<void*>(&note_code_page));
    ASSERT_TRUE(patch.installed());
    const struct {
        CodePage page;
        bool is_double;
    } cases[] = {{{TRUE, 2}, true}, {{TRUE, 1}, false}, {{TRUE, 4}, false}, {{FALSE, 2}, false}};
    for (const auto& one : cases) {
        g_page = one.page;
        EXPECT_EQ(tarvo::HasDoubleByteConsole(), one.is_double);
    }
}

} // namespace
