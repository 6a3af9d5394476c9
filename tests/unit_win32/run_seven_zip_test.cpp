// The scene through the real 7z.exe and back. TARVO_SEVEN_ZIP names the folder that holds 7z.exe and 7z.dll.
#include "submit/scene_archive.h"

#include "common/platform.h"
#include "common/text.h"
#include "common/win32_handles.h"
#include "submit/client_configuration.h"
#include "tests/support/patience.h"
#include "tests/support/test_folder.h"
#include "tests/support/wide_file.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <vector>

namespace {

using tarvo_test::eventually;

constexpr UINT kChineseCodePage = 936;

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
        tarvo_test::plugin_folder();
        tarvo::LoadClientConfiguration(scene, config);
        wchar_t temporary[MAX_PATH] = {};
        ::GetTempPathW(MAX_PATH, temporary);
        work = std::wstring(temporary) + L"tarvo scenes";
        ::CreateDirectoryW(work.c_str(), nullptr);
        ::CreateDirectoryW((work + L"\\out").c_str(), nullptr);
    }
    ~SevenZip() override { ::DeleteFileW(tarvo::Utf8ToWide(config.archivePath).c_str()); }

    // The system holds a program's file a little longer than the program runs.
    static bool copy(const std::wstring& from, const std::wstring& to) {
        return eventually([&] { return ::CopyFileW(from.c_str(), to.c_str(), FALSE) != 0; });
    }

    void install_program() {
        const char* source = std::getenv("TARVO_SEVEN_ZIP");
        ASSERT_NE(source, nullptr) << "TARVO_SEVEN_ZIP is not set";
        const std::wstring from = tarvo::Utf8ToWide(source) + L"\\";
        const std::wstring to = tarvo::CommonAppDataFolder() + L"/Tarvo Rendering/7-Zip/";
        ::CreateDirectoryW(to.c_str(), nullptr);
        for (const wchar_t* name : {L"7z.exe", L"7z.dll"}) {
            ASSERT_TRUE(copy(from + name, to + name)) << ::GetLastError();
        }
    }

    // Packs a scene of this name (without extension); false when the name is refused.
    bool pack(const std::wstring& name) {
        const std::wstring file = work + L"\\" + name + L".max";
        tarvo_test::write_wide_file(file, scene_content());
        config.sceneFile = tarvo::WideToUtf8(file);
        const std::string copy = config.sceneFile;
        if (!tarvo::PrepareSceneArchive(scene, copy, std::string(), std::wstring(), config)) {
            return false;
        }
        tarvo::RunSevenZip(scene, copy, config);
        return true;
    }

    bool archive_exists() const { return tarvo::PathExists(tarvo::Utf8ToWide(config.archivePath)); }

    std::string unpacked(const std::wstring& name) {
        const std::wstring result = work + L"\\out\\" + name + L".max";
        ::DeleteFileW(result.c_str());
        std::wstring command = L"\"" + config.sevenZipExe + L"\" x -y -o\"" + work + L"\\out\" \"" +
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
        const std::string content = tarvo_test::read_wide_file(result);
        ::DeleteFileW(result.c_str());
        return content;
    }

    void expect_round_trip(const std::wstring& name) {
        SCOPED_TRACE(tarvo::WideToUtf8(name));
        ASSERT_TRUE(pack(name));
        ASSERT_TRUE(archive_exists()) << config.archivePath;
        EXPECT_TRUE(unpacked(name) == scene_content()) << "the scene came back changed";
        ::DeleteFileW(tarvo::Utf8ToWide(config.archivePath).c_str());
    }

    tarvo::SceneData scene;
    tarvo::PluginConfig config;
    std::wstring work;
};

TEST_F(SevenZip, SceneComesBackUnchanged) {
    ASSERT_NO_FATAL_FAILURE(install_program());
    for (const wchar_t* name : {L"Tower", L"Tower.final", L"two  blanks", L"a & b", L"100%", L"%TEMP%",
                                L"(1)", L"wow! !x!", L"a'b`c^d", L"-mx=9", L"@list", L"[x]{y}", L"a;b,c=d"}) {
        expect_round_trip(name);
    }
}

// The name goes through the system's code page and back through 936: only where both are the same does it
// survive. Elsewhere it is refused rather than packed under half a name.
TEST_F(SevenZip, NamesBeyondAscii) {
    ASSERT_NO_FATAL_FAILURE(install_program());
    if (::GetACP() == kChineseCodePage) {
        expect_round_trip(L"\x5927\x5385");
        expect_round_trip(L"\x573A\x666F 2 & (\x526F\x672C)");
    } else {
        EXPECT_FALSE(pack(L"caf\x00E9"));
        EXPECT_FALSE(archive_exists());
    }
}

TEST_F(SevenZip, ArchiveIsReadyWhenTheCallReturns) {
    ASSERT_NO_FATAL_FAILURE(install_program());
    ASSERT_TRUE(pack(L"ready"));
    const std::string bytes = tarvo_test::read_wide_file(tarvo::Utf8ToWide(config.archivePath));
    ASSERT_GT(bytes.size(), 32u);
    EXPECT_EQ(bytes.substr(0, 6), std::string("7z\xBC\xAF\x27\x1C", 6));
}

TEST_F(SevenZip, RefusedNameIsNotPacked) {
    ASSERT_NO_FATAL_FAILURE(install_program());
    EXPECT_FALSE(pack(L"Tower "));
    EXPECT_FALSE(pack(L"Tower."));
    EXPECT_FALSE(pack(L""));
    EXPECT_FALSE(archive_exists());
}

// The program's path is not quoted: a program by the name of its first word is taken for it.
// docs/threat-model.md says why this stays.
TEST_F(SevenZip, ProgramAtTheFirstBlankIsStartedInstead) {
    ASSERT_NO_FATAL_FAILURE(install_program());
    const std::wstring other = tarvo::CommonAppDataFolder() + L"/Tarvo.exe";
    ASSERT_TRUE(copy(config.sevenZipExe, other)) << ::GetLastError();
    EXPECT_TRUE(pack(L"mistaken"));
    EXPECT_FALSE(archive_exists());
    EXPECT_TRUE(eventually([&other] { return ::DeleteFileW(other.c_str()) != 0; })) << ::GetLastError();
    expect_round_trip(L"mistaken");
}

TEST_F(SevenZip, MissingProgramIsSilent) {
    config.sevenZipExe = tarvo::CommonAppDataFolder() + L"/Tarvo Rendering/7-Zip/not there/7z.exe";
    ASSERT_TRUE(pack(L"alone"));
    EXPECT_FALSE(archive_exists());
}

} // namespace
