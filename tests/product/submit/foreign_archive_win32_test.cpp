// A foreign file or folder with the archive's name is removed, or the run ends before 7-Zip is started. Also:
// how 7-Zip is started.
#include "common/platform.h"
#include "common/string_table.h"
#include "common/text.h"
#include "common/win32_handles.h"
#include "resources/resource_ids.h"
#include "scene/scene_data.h"
#include "submit/plugin_config.h"
#include "submit/scene_archive.h"
#include "tests/support/patched_import.h"
#include "tests/support/seven_zip_entry.h"
#include "tests/support/seven_zip_program.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_host.h"
#include "tests/support/wide_file.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <functional>
#include <vector>

namespace {

using support::PatchedImport;

const std::string kTaken = "[ERROR] The scene is not packed: what lies under the archive's name cannot be "
                           "removed, error code is ";

// Every start of a process, with the arguments that it was given.
struct Start {
    std::wstring application;
    bool attributes = false;
    BOOL inherit = FALSE;
    DWORD flags = 0;
    bool environment = false;
    bool folder = false;
    STARTUPINFOW startup = {};
};
std::vector<Start> g_starts;
std::vector<DWORD> g_waits; // of the test's own thread; the runtime's threads wait too
DWORD g_thread = 0;

template <typename Function>
Function real(const char* name) {
    return reinterpret_cast<Function>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), name));
}

BOOL WINAPI note_start(LPCWSTR application, LPWSTR command, LPSECURITY_ATTRIBUTES process,
                       LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags, LPVOID environment,
                       LPCWSTR folder, LPSTARTUPINFOW startup, LPPROCESS_INFORMATION information) {
    g_starts.push_back({application == nullptr ? L"" : application, process != nullptr || thread != nullptr,
                        inherit, flags, environment != nullptr, folder != nullptr, *startup});
    return real<decltype(&::CreateProcessW)>("CreateProcessW")(
        application, command, process, thread, inherit, flags, environment, folder, startup, information);
}

DWORD WINAPI note_wait(HANDLE handle, DWORD milliseconds) {
    if (::GetCurrentThreadId() == g_thread) {
        g_waits.push_back(milliseconds);
    }
    return real<decltype(&::WaitForSingleObject)>("WaitForSingleObject")(handle, milliseconds);
}

class ForeignArchive : public ::testing::Test {
protected:
    ForeignArchive() {
        support::plugin_folder();
        reset_test_host();
        g_starts.clear();
        g_waits.clear();
        g_thread = ::GetCurrentThreadId();
        tarvo::LoadClientConfiguration(scene, config);
        wchar_t temporary[MAX_PATH] = {};
        ::GetTempPathW(MAX_PATH, temporary);
        work = std::wstring(temporary) + L"tarvo planted";
        ::CreateDirectoryW(work.c_str(), nullptr);
        file = work + L"\\Hall.max";
        support::write_wide_file(file, "the scene");
        config.sceneFile = tarvo::WideToUtf8(file);
    }
    ~ForeignArchive() override {
        ::SetFileAttributesW(archive().c_str(), FILE_ATTRIBUTE_NORMAL);
        ::DeleteFileW((archive() + L"\\inside.txt").c_str());
        ::RemoveDirectoryW(archive().c_str());
        ::DeleteFileW(archive().c_str());
    }

    // The archive that prepare() names when it is called within the same second.
    std::wstring archive() const {
        return tarvo::ArchivePath(config.compressDir, L"Hall", tarvo::ArchiveTag(second));
    }

    bool prepare() {
        return tarvo::PrepareSceneArchive(scene, config.sceneFile, std::string(), std::wstring(), config);
    }

    // Creates something with the archive's name and prepares; retries when the second has passed in between.
    bool prepare_with(const std::function<void(const std::wstring&)>& plant,
                      const std::function<void(const std::wstring&)>& clear) {
        for (;;) {
            second = tarvo::SecondsSinceEpoch();
            plant(archive());
            mark = support::log_mark("qfx_data");
            const bool prepared = prepare();
            if (tarvo::Utf8ToWide(config.archivePath) == archive()) {
                return prepared;
            }
            clear(archive());
        }
    }
    static void nothing(const std::wstring&) {}
    static void remove_file(const std::wstring& path) { ::DeleteFileW(path.c_str()); }

    std::vector<std::string> lines() const { return support::log_lines_since("qfx_data", mark); }

    void expect_taken(const std::string& error) {
        EXPECT_EQ(lines(), std::vector<std::string>{kTaken + error});
        EXPECT_EQ(tarvo::ArchiveRefusalText(config), static_cast<unsigned>(IDS_ARCHIVE_NAME_TAKEN));
    }

    void expect_only_the_scene() {
        const PatchedImport waits("KERNEL32.dll", "WaitForSingleObject", reinterpret_cast<void*>(&note_wait));
        tarvo::RunSevenZip(scene, config.sceneFile, config);
        support::SevenZipEntry entry;
        ASSERT_TRUE(
            support::read_only_entry(support::read_wide_file(tarvo::Utf8ToWide(config.archivePath)), entry));
        EXPECT_EQ(entry.name, L"Hall.max");
        EXPECT_EQ(entry.crc, support::crc_of("the scene"));
    }

    tarvo::SceneData scene;
    tarvo::PluginConfig config;
    std::wstring work;
    std::wstring file;
    long long second = 0;
    std::size_t mark = 0;
};

TEST_F(ForeignArchive, PlantedFileIsRemovedBeforeSevenZipRuns) {
    ASSERT_NO_FATAL_FAILURE(support::install_seven_zip());
    ASSERT_TRUE(prepare_with([](const std::wstring& path) { support::write_wide_file(path, "planted"); },
                             remove_file));
    EXPECT_FALSE(tarvo::IsNameTaken(archive()));
    expect_only_the_scene();
}

TEST_F(ForeignArchive, ReadOnlyFileIsRemovedAndItsHardLinkStaysReadOnly) {
    const std::wstring other = work + L"\\other name.txt";
    ::SetFileAttributesW(other.c_str(), FILE_ATTRIBUTE_NORMAL);
    support::write_wide_file(other, "kept");
    ASSERT_TRUE(prepare_with(
        [&other](const std::wstring& path) {
            ASSERT_TRUE(::CreateHardLinkW(path.c_str(), other.c_str(), nullptr)) << ::GetLastError();
            ::SetFileAttributesW(other.c_str(), FILE_ATTRIBUTE_READONLY);
        },
        [&other](const std::wstring& path) {
            ::SetFileAttributesW(other.c_str(), FILE_ATTRIBUTE_NORMAL);
            ::DeleteFileW(path.c_str());
        }));
    EXPECT_FALSE(tarvo::IsNameTaken(archive()));
    EXPECT_EQ(support::read_wide_file(other), "kept");
    EXPECT_NE(::GetFileAttributesW(other.c_str()) & FILE_ATTRIBUTE_READONLY, 0u);
    ::SetFileAttributesW(other.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_TRUE(::DeleteFileW(other.c_str()));
}

TEST_F(ForeignArchive, EmptyFolderIsRemoved) {
    ASSERT_TRUE(prepare_with([](const std::wstring& path) { ::CreateDirectoryW(path.c_str(), nullptr); },
                             [](const std::wstring& path) { ::RemoveDirectoryW(path.c_str()); }));
    EXPECT_FALSE(tarvo::IsNameTaken(archive()));
}

TEST_F(ForeignArchive, FolderWithFilesEndsTheRunAndIsKept) {
    ASSERT_FALSE(prepare_with(
        [](const std::wstring& path) {
            ::CreateDirectoryW(path.c_str(), nullptr);
            support::write_wide_file(path + L"\\inside.txt", "inside");
        },
        [](const std::wstring& path) {
            ::DeleteFileW((path + L"\\inside.txt").c_str());
            ::RemoveDirectoryW(path.c_str());
        }));
    expect_taken("145");
    EXPECT_EQ(support::read_wide_file(archive() + L"\\inside.txt"), "inside");
}

TEST_F(ForeignArchive, FileOpenInAnotherProgramEndsTheRun) {
    tarvo::FileHandle held;
    ASSERT_FALSE(prepare_with(
        [&held](const std::wstring& path) {
            held.reset(::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
        },
        [&held](const std::wstring& path) {
            held.reset();
            ::DeleteFileW(path.c_str());
        }));
    expect_taken("32");
}

// The other program lets the file be removed, but the name is free only once it closes the file.
TEST_F(ForeignArchive, FileOpenAndSharedInAnotherProgramEndsTheRun) {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    tarvo::FileHandle held;
    ASSERT_FALSE(prepare_with(
        [&held](const std::wstring& path) {
            held.reset(::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, kShareAll, nullptr,
                                     CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        },
        [&held](const std::wstring& path) {
            held.reset();
            ::DeleteFileW(path.c_str());
        }));
    expect_taken("32");
    held.reset();
    EXPECT_FALSE(tarvo::IsNameTaken(archive()));
}

TEST_F(ForeignArchive, OwnArchiveIsKeptAndAReplacedOneIsRemoved) {
    ASSERT_NO_FATAL_FAILURE(support::install_seven_zip());
    ASSERT_TRUE(prepare());
    const std::wstring own = tarvo::Utf8ToWide(config.archivePath);
    tarvo::RunSevenZip(scene, config.sceneFile, config);
    EXPECT_EQ(scene.made_archive.path, own);
    EXPECT_TRUE(scene.made_archive.identity == tarvo::FileIdentityOf(own));
    EXPECT_EQ(tarvo::RemoveForeign(own, scene.made_archive), 0u);
    EXPECT_TRUE(tarvo::PathExists(own));
    // The same name, but no longer the file that was packed.
    EXPECT_TRUE(::MoveFileW(own.c_str(), (own + L".moved").c_str()));
    support::write_wide_file(own, "planted");
    EXPECT_EQ(tarvo::RemoveForeign(own, scene.made_archive), 0u);
    EXPECT_FALSE(tarvo::PathExists(own));
    EXPECT_TRUE(::DeleteFileW((own + L".moved").c_str()));
}

TEST_F(ForeignArchive, MissingFileIsNoError) {
    ASSERT_TRUE(prepare_with(nothing, nothing));
    EXPECT_TRUE(lines().empty());
    EXPECT_EQ(tarvo::RemoveForeign(work + L"\\no folder\\nothing", scene.made_archive), 0u);
}

TEST_F(ForeignArchive, FileWithALongPathIsRemoved) {
    std::wstring folder = work;
    for (int level = 0; level < 3; ++level) {
        folder += L"\\" + std::wstring(100, static_cast<wchar_t>(L'a' + level));
        ASSERT_TRUE(::CreateDirectoryW((L"\\\\?\\" + folder).c_str(), nullptr) ||
                    ::GetLastError() == ERROR_ALREADY_EXISTS);
    }
    const std::wstring path = folder + L"/planted.7z";
    ASSERT_GT(path.size(), static_cast<std::size_t>(MAX_PATH));
    const std::wstring unlimited = L"\\\\?\\" + folder + L"\\planted.7z";
    support::write_wide_file(unlimited, "planted");
    ASSERT_TRUE(tarvo::IsNameTaken(path));
    EXPECT_EQ(tarvo::FileSizeOf(path), 7);
    EXPECT_EQ(tarvo::RemoveForeign(path, scene.made_archive), 0u);
    EXPECT_EQ(::GetFileAttributesW(unlimited.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(ForeignArchive, SevenZipStartsHiddenAndIsAwaitedWithoutATimeout) {
    ASSERT_NO_FATAL_FAILURE(support::install_seven_zip());
    const PatchedImport starts("KERNEL32.dll", "CreateProcessW", reinterpret_cast<void*>(&note_start));
    ASSERT_TRUE(starts.installed());
    ASSERT_TRUE(prepare());
    expect_only_the_scene();
    ASSERT_EQ(g_starts.size(), 1u);
    const Start& start = g_starts.front();
    EXPECT_EQ(start.application, L"");
    EXPECT_FALSE(start.attributes);
    EXPECT_EQ(start.inherit, FALSE);
    EXPECT_EQ(start.flags, static_cast<DWORD>(CREATE_NO_WINDOW | NORMAL_PRIORITY_CLASS));
    EXPECT_FALSE(start.environment);
    EXPECT_FALSE(start.folder);
    STARTUPINFOW expected = {};
    expected.cb = sizeof expected;
    EXPECT_EQ(std::memcmp(&start.startup, &expected, sizeof expected), 0);
    EXPECT_EQ(g_waits, std::vector<DWORD>{INFINITE});
    ::DeleteFileW(tarvo::Utf8ToWide(config.archivePath).c_str());
}

} // namespace
