// Packs and unpacks a scene with the real 7z.exe and checks the log lines.
#include "submit/scene_archive.h"

#include "common/platform.h"
#include "common/text.h"
#include "common/win32_handles.h"
#include "scene/scene_data.h"
#include "submit/plugin_config.h"
#include "tests/support/patched_import.h"
#include "tests/support/seven_zip_program.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_host.h"
#include "tests/support/wide_file.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <vector>

namespace {

using support::eventually;

std::string scene_content() {
    std::string content;
    unsigned state = 12345;
    for (int i = 0; i < 200000; ++i) {
        state = state * 1664525u + 1013904223u;
        content += static_cast<char>(state >> 24);
    }
    return content;
}

class SevenZip : public ::testing::Test {
protected:
    SevenZip() {
        support::plugin_folder();
        reset_test_host();
        tarvo::LoadClientConfiguration(scene, config);
        wchar_t temporary[MAX_PATH] = {};
        ::GetTempPathW(MAX_PATH, temporary);
        work = std::wstring(temporary) + L"tarvo scenes";
        ::CreateDirectoryW(work.c_str(), nullptr);
        ::CreateDirectoryW((work + L"\\out").c_str(), nullptr);
    }
    ~SevenZip() override { ::DeleteFileW(tarvo::Utf8ToWide(config.archivePath).c_str()); }

    // Packs a scene of this name (without extension); false when the name is refused.
    bool pack(const std::wstring& name) {
        const std::wstring file = work + L"\\" + name + L".max";
        support::write_wide_file(file, scene_content());
        return pack_existing(file);
    }

    bool pack_existing(const std::wstring& file) {
        config.sceneFile = tarvo::WideToUtf8(file);
        const std::string copy = config.sceneFile;
        const std::size_t mark = support::log_mark("qfx_data");
        if (!tarvo::PrepareSceneArchive(scene, copy, std::string(), std::wstring(), config)) {
            return false;
        }
        tarvo::RunSevenZip(scene, copy, config);
        lines = support::log_lines_since("qfx_data", mark);
        return true;
    }

    bool archive_exists() const { return tarvo::PathExists(tarvo::Utf8ToWide(config.archivePath)); }

    std::string unpacked(const std::wstring& name) {
        const std::wstring result = work + L"\\out\\" + name + L".max";
        ::DeleteFileW(result.c_str());
        std::wstring command = L"\"" + config.sevenZipExe + L"\" x -y -sccUTF-8 -o\"" + work + L"\\out\" \"" +
                               tarvo::Utf8ToWide(config.archivePath) + L"\"";
        std::vector<wchar_t> line(command.c_str(), command.c_str() + command.size() + 1);
        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION information = {};
        if (!::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                              nullptr, &startup, &information)) {
            return std::string();
        }
        const tarvo::KernelHandle thread(information.hThread);
        const tarvo::KernelHandle process(information.hProcess);
        ::WaitForSingleObject(process.get(), INFINITE);
        const std::string content = support::read_wide_file(result);
        ::DeleteFileW(result.c_str());
        return content;
    }

    void expect_round_trip(const std::wstring& name) {
        SCOPED_TRACE(tarvo::WideToUtf8(name));
        ASSERT_TRUE(pack(name));
        ASSERT_TRUE(archive_exists()) << config.archivePath << " " << ::testing::PrintToString(lines);
        EXPECT_TRUE(unpacked(name) == scene_content()) << "the scene came back changed";
        ::DeleteFileW(tarvo::Utf8ToWide(config.archivePath).c_str());
    }

    tarvo::SceneData scene;
    tarvo::PluginConfig config;
    std::wstring work;
    std::vector<std::string> lines; // of the last packing
};

TEST_F(SevenZip, PackedSceneUnpacksUnchanged) {
    ASSERT_NO_FATAL_FAILURE(support::install_seven_zip());
    for (const wchar_t* name : {L"Tower", L"Tower.final", L"two  blanks", L"a & b", L"100%", L"%TEMP%",
                                L"(1)", L"wow! !x!", L"a'b`c^d", L"-mx=9", L"@list", L"[x]{y}", L"a;b,c=d"}) {
        expect_round_trip(name);
    }
}

TEST_F(SevenZip, NamesOutsideTheCodePageArePacked) {
    ASSERT_NO_FATAL_FAILURE(support::install_seven_zip());
    for (const wchar_t* name : {L"caf\x00E9", L"H\x0101lle", L"\x5927\x5385 2 & (\x526F\x672C)",
                                L"\xD83D\xDE00", L"x\xFF02 -sdel -- \xFF02"}) {
        expect_round_trip(name);
    }
}

TEST_F(SevenZip, ArchiveIsCompleteWhenTheCallReturns) {
    ASSERT_NO_FATAL_FAILURE(support::install_seven_zip());
    ASSERT_TRUE(pack(L"ready"));
    const std::string bytes = support::read_wide_file(tarvo::Utf8ToWide(config.archivePath));
    ASSERT_GT(bytes.size(), 32u);
    EXPECT_EQ(bytes.substr(0, 6), std::string("7z\xBC\xAF\x27\x1C", 6));
}

TEST_F(SevenZip, RefusedNameIsNotPacked) {
    ASSERT_NO_FATAL_FAILURE(support::install_seven_zip());
    EXPECT_FALSE(pack(L"Tower "));
    EXPECT_FALSE(pack(L"Tower."));
    EXPECT_FALSE(pack(L""));
    EXPECT_FALSE(archive_exists());
}

// The program's path is not quoted, so Windows starts a program that has the path up to the first blank.
// docs/threat-model.md says why this stays.
TEST_F(SevenZip, ProgramAtTheFirstBlankIsStartedInstead) {
    ASSERT_NO_FATAL_FAILURE(support::install_seven_zip());
    const std::wstring other = tarvo::CommonAppDataFolder() + L"/Tarvo.exe";
    ASSERT_TRUE(support::copy_patiently(config.sevenZipExe, other)) << ::GetLastError();
    EXPECT_TRUE(pack(L"mistaken"));
    EXPECT_FALSE(archive_exists());
    EXPECT_TRUE(eventually([&other] { return ::DeleteFileW(other.c_str()) != 0; })) << ::GetLastError();
    expect_round_trip(L"mistaken");
}

TEST_F(SevenZip, ExitCodeAndSizeAreLogged) {
    ASSERT_NO_FATAL_FAILURE(support::install_seven_zip());
    ASSERT_TRUE(pack(L"logged"));
    const std::string bytes = support::read_wide_file(tarvo::Utf8ToWide(config.archivePath));
    EXPECT_EQ(lines,
              std::vector<std::string>{"[INFO] 7-Zip packed the scene. Exit code: 0, bytes in the archive: " +
                                       std::to_string(bytes.size())});
}

TEST_F(SevenZip, SceneThatCannotBeReadIsLogged) {
    ASSERT_NO_FATAL_FAILURE(support::install_seven_zip());
    support::write_wide_file(work + L"\\held.max", scene_content());
    const tarvo::FileHandle held(::CreateFileW((work + L"\\held.max").c_str(), GENERIC_READ | GENERIC_WRITE,
                                               0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(static_cast<bool>(held));
    ASSERT_TRUE(pack_existing(work + L"\\held.max"));
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(
        lines.front().find("[ERROR] 7-Zip did not pack the scene! Exit code: 1, bytes in the archive: "), 0u)
        << lines.front();
}

TEST_F(SevenZip, MissingFolderIsLogged) {
    ASSERT_NO_FATAL_FAILURE(support::install_seven_zip());
    support::write_wide_file(work + L"\\no folder", "a file stands where the folder belongs");
    config.compressDir = work + L"\\no folder";
    ASSERT_TRUE(pack(L"nowhere"));
    EXPECT_EQ(lines,
              std::vector<std::string>{
                  "[ERROR] 7-Zip did not pack the scene! Exit code: 2, bytes in the archive: no archive"});
}

TEST_F(SevenZip, MissingProgramIsLogged) {
    config.sevenZipExe = tarvo::CommonAppDataFolder() + L"/Tarvo Rendering/7-Zip/not there/7z.exe";
    ASSERT_TRUE(pack(L"alone"));
    EXPECT_FALSE(archive_exists());
    EXPECT_EQ(lines, std::vector<std::string>{"[ERROR] 7-Zip was not started! ErrorCode: 2"});
}

} // namespace
