// The backup copy in the scene's folder, with real files.
#include "common/platform.h"
#include "common/text.h"
#include "scene/scene_data.h"
#include "tests/support/test_folder.h"
#include "tests/support/wide_file.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <ctime>
#include <vector>

namespace {

constexpr std::size_t kLongestPath = 259;
constexpr std::size_t kSuffix = 7; // an underscore and six digits
const std::string kScene = "the scene's bytes \x01\x02\xFF";

std::vector<std::wstring> files_like(const std::wstring& pattern) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found = {};
    const HANDLE search = ::FindFirstFileW(pattern.c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            names.push_back(found.cFileName);
        } while (::FindNextFileW(search, &found) != FALSE);
        ::FindClose(search);
    }
    return names;
}

// Returns at the beginning of a second, so that the following calls fall into it.
void wait_for_next_second() {
    const std::time_t start = std::time(nullptr);
    while (std::time(nullptr) == start) {
        ::Sleep(5);
    }
}

void expect_copy_name(const std::wstring& name, const std::wstring& stem, const std::wstring& extension) {
    ASSERT_EQ(name.size(), stem.size() + 7 + extension.size());
    EXPECT_EQ(name.substr(0, stem.size() + 1), stem + L"_");
    const std::wstring digits = name.substr(stem.size() + 1, 6);
    EXPECT_TRUE(std::all_of(digits.begin(), digits.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; }));
    EXPECT_LE(std::stoi(digits), 32767);
    EXPECT_EQ(name.substr(stem.size() + 7), extension);
}

class SceneBackup : public ::testing::Test {
protected:
    SceneBackup() {
        support::plugin_folder();
        wchar_t temporary[MAX_PATH] = {};
        ::GetTempPathW(MAX_PATH, temporary);
        folder = std::wstring(temporary) + L"tarvo backup";
        ::CreateDirectoryW(folder.c_str(), nullptr);
        clear();
    }
    ~SceneBackup() override {
        clear();
        ::RemoveDirectoryW(folder.c_str());
    }

    void clear() const {
        for (const std::wstring& name : files_like(folder + L"\\*")) {
            ::DeleteFileW((folder + L"\\" + name).c_str());
        }
    }

    // The scene's path; creates the file.
    std::wstring scene_at(const std::wstring& name) const {
        const std::wstring path = folder + L"\\" + name;
        // Longer paths hold no file.
        if (path.size() <= kLongestPath) {
            support::write_wide_file(path, kScene);
        }
        return path;
    }

    // A path of this length; the file exists when the system allows it.
    std::wstring scene_of_length(std::size_t length) const {
        const std::wstring extension = L".max";
        const std::size_t before = folder.size() + 1 + extension.size();
        return scene_at(std::wstring(length - before, L'x') + extension);
    }

    std::int32_t back_up(const std::wstring& path) {
        scene.scene_path = tarvo::WideToUtf8(path);
        const std::size_t mark = support::log_mark("qfx_data");
        const std::int32_t copied = scene.backup_scene_file();
        lines = support::log_lines_since("qfx_data", mark);
        return copied;
    }

    void expect_line(const std::wstring& source, const std::wstring& destination,
                     const std::wstring& ending) const {
        EXPECT_EQ(lines, std::vector<std::string>{tarvo::WideToUtf8(L"[WARN] Backup file from " + source +
                                                                    L" to " + destination + ending)});
    }

    // One UTF-16 unit, not digits.
    static std::wstring failure(DWORD code) {
        return L" Error! Code is " + std::wstring(1, static_cast<wchar_t>(code));
    }

    tarvo::SceneData scene;
    std::wstring folder;
    std::vector<std::string> lines;
};

TEST_F(SceneBackup, CopyIsCreatedBesideTheScene) {
    const std::wstring path = scene_at(L"scene.max");
    EXPECT_NE(back_up(path), 0);
    const std::vector<std::wstring> copies = files_like(folder + L"\\scene_*");
    ASSERT_EQ(copies.size(), 1u);
    ASSERT_NO_FATAL_FAILURE(expect_copy_name(copies[0], L"scene", L".max"));
    EXPECT_EQ(support::read_wide_file(folder + L"\\" + copies[0]), kScene);
    EXPECT_EQ(support::read_wide_file(path), kScene);
    expect_line(path, folder + L"\\" + copies[0], L" Success!");
}

TEST_F(SceneBackup, NamesWithDotsBlanksAndForeignLettersAreCopied) {
    const struct {
        const wchar_t* stem;
        const wchar_t* extension;
    } names[] = {{L"Tower.final", L".max"},
                 {L" two  blanks", L".MAX"},
                 {L"\x5927\x5385", L".max"},
                 {L"caf\x00E9 \x0416", L".max"},
                 {L"no extension", L""}};
    for (const auto& name : names) {
        SCOPED_TRACE(tarvo::WideToUtf8(name.stem));
        clear();
        const std::wstring path = scene_at(name.stem + std::wstring(name.extension));
        EXPECT_NE(back_up(path), 0);
        const std::vector<std::wstring> copies = files_like(folder + L"\\" + name.stem + L"_*");
        ASSERT_EQ(copies.size(), 1u);
        ASSERT_NO_FATAL_FAILURE(expect_copy_name(copies[0], name.stem, name.extension));
        expect_line(path, folder + L"\\" + copies[0], L" Success!");
    }
}

TEST_F(SceneBackup, WithinOneSecondTheSecondCopyOverwritesTheFirst) {
    const std::wstring path = scene_at(L"scene.max");
    std::time_t begun = 0;
    // Retries when the two copies fall into different seconds, as they may on a busy machine.
    for (int attempt = 0; attempt < 20 && begun != std::time(nullptr); ++attempt) {
        clear();
        scene_at(L"scene.max");
        wait_for_next_second();
        begun = std::time(nullptr);
        EXPECT_NE(back_up(path), 0);
        support::write_wide_file(path, "changed");
        EXPECT_NE(back_up(path), 0);
    }
    const std::vector<std::wstring> copies = files_like(folder + L"\\scene_*");
    ASSERT_EQ(copies.size(), 1u);
    EXPECT_EQ(support::read_wide_file(folder + L"\\" + copies[0]), "changed");
}

TEST_F(SceneBackup, ANewSecondGivesANewName) {
    const std::wstring path = scene_at(L"scene.max");
    EXPECT_NE(back_up(path), 0);
    wait_for_next_second();
    EXPECT_NE(back_up(path), 0);
    EXPECT_EQ(files_like(folder + L"\\scene_*").size(), 2u);
}

TEST_F(SceneBackup, EmptyPathFailsAndLogsTheError) {
    EXPECT_EQ(back_up(std::wstring()), 0);
    ASSERT_EQ(lines.size(), 1u);
    const std::string head = "[WARN] Backup file from  to _";
    EXPECT_EQ(lines[0].substr(0, head.size()), head);
    const std::wstring line = tarvo::Utf8ToWide(lines[0]);
    EXPECT_EQ(line.substr(line.size() - 17), failure(ERROR_PATH_NOT_FOUND));
}

TEST_F(SceneBackup, MissingSceneFileFailsAndLogsTheError) {
    const std::wstring path = folder + L"\\gone.max";
    EXPECT_EQ(back_up(path), 0);
    ASSERT_EQ(lines.size(), 1u);
    const std::wstring line = tarvo::Utf8ToWide(lines[0]);
    EXPECT_EQ(line.substr(line.size() - 17), failure(ERROR_FILE_NOT_FOUND));
    EXPECT_TRUE(files_like(folder + L"\\gone_*").empty());
}

TEST_F(SceneBackup, LockedSceneFileFailsAndLogsTheError) {
    const std::wstring path = scene_at(L"locked.max");
    const HANDLE lock =
        ::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    EXPECT_EQ(back_up(path), 0);
    ::CloseHandle(lock);
    ASSERT_EQ(lines.size(), 1u);
    const std::wstring line = tarvo::Utf8ToWide(lines[0]);
    EXPECT_EQ(line.substr(line.size() - 17), failure(ERROR_SHARING_VIOLATION));
}

TEST_F(SceneBackup, LongestPossibleCopyIsCreated) {
    const std::wstring path = scene_of_length(kLongestPath - kSuffix);
    ASSERT_TRUE(tarvo::PathExists(path));
    EXPECT_NE(back_up(path), 0);
    EXPECT_EQ(files_like(folder + L"\\x*").size(), 2u);
}

// The platform's path functions end the process when a part does not fit: they must not get such paths.
TEST_F(SceneBackup, CopyWithATooLongPathIsNotCreated) {
    for (const std::size_t length : {kLongestPath - kSuffix + 1, kLongestPath - 4, kLongestPath - 3,
                                     kLongestPath, kLongestPath + 1, std::size_t(300), std::size_t(32000)}) {
        SCOPED_TRACE(length);
        clear();
        const std::wstring path = scene_of_length(length);
        EXPECT_EQ(back_up(path), 0);
        ASSERT_EQ(lines.size(), 1u);
        const std::wstring line = tarvo::Utf8ToWide(lines[0]);
        const std::wstring head = L"[WARN] Backup file from " + path + L" to  Error! Code is ";
        ASSERT_EQ(line.size(), head.size() + 1);
        EXPECT_TRUE(line.substr(0, head.size()) == head);
        // The code depends on whether the scene's own path is still valid.
        EXPECT_TRUE(line.back() == ERROR_FILE_NOT_FOUND || line.back() == ERROR_PATH_NOT_FOUND)
            << int{line.back()};
        EXPECT_LE(files_like(folder + L"\\x*").size(), 1u); // the scene itself
    }
}

TEST_F(SceneBackup, SceneInTheCurrentFolderIsCopied) {
    wchar_t before[MAX_PATH] = {};
    ::GetCurrentDirectoryW(MAX_PATH, before);
    scene_at(L"plain.max");
    ASSERT_TRUE(::SetCurrentDirectoryW(folder.c_str()));
    EXPECT_NE(back_up(L"plain.max"), 0);
    ::SetCurrentDirectoryW(before);
    const std::vector<std::wstring> copies = files_like(folder + L"\\plain_*");
    ASSERT_EQ(copies.size(), 1u);
    expect_line(L"plain.max", copies[0], L" Success!");
}

} // namespace
