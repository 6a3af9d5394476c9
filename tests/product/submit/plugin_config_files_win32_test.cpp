// Ini files as people and other programs write them, and the records read from them.
#include "common/platform.h"
#include "scene/scene_data.h"
#include "submit/plugin_config.h"
#include "tests/support/test_folder.h"
#include "tests/support/wide_file.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <limits>

namespace {

using tarvo::LoadClientConfiguration;
using tarvo::PluginConfig;

void expect_same(const PluginConfig& one, const PluginConfig& other) {
    std::wstring PluginConfig::*const wide[] = {&PluginConfig::clientIp,
                                                &PluginConfig::jsonPath,
                                                &PluginConfig::sevenZipExe,
                                                &PluginConfig::compressDir,
                                                &PluginConfig::lowerVersion,
                                                &PluginConfig::analysisScript,
                                                &PluginConfig::antivirusAdslScript,
                                                &PluginConfig::antivirusAlcScript,
                                                &PluginConfig::antivirusCrpScript};
    for (const auto field : wide) {
        EXPECT_EQ(one.*field, other.*field);
    }
    std::string PluginConfig::*const narrow[] = {&PluginConfig::sceneFile, &PluginConfig::archivePath,
                                                 &PluginConfig::packArguments};
    for (const auto field : narrow) {
        EXPECT_EQ(one.*field, other.*field);
    }
    EXPECT_EQ(one.clientPort, other.clientPort);
}

class PluginConfigFiles : public ::testing::Test {
protected:
    PluginConfigFiles() : path(tarvo::CommonAppDataFolder() + tarvo::kPluginFolder + tarvo::kIniFile) {
        support::plugin_folder();
        tarvo::CreateFolder(tarvo::CommonAppDataFolder() + tarvo::kPluginFolder + L"/script");
    }
    ~PluginConfigFiles() override {
        ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        ::DeleteFileW(path.c_str());
    }

    PluginConfig load(const std::string& content) {
        support::write_wide_file(path, content);
        PluginConfig config;
        EXPECT_TRUE(LoadClientConfiguration(scene, config));
        return config;
    }

    std::int32_t port_of(const std::string& value) {
        return load("[general]\r\nport=" + value + "\r\n").clientPort;
    }

    const std::wstring path;
    tarvo::SceneData scene;
};

TEST_F(PluginConfigFiles, PortIsReadFromItsLeadingDigits) {
    const struct {
        const char* value;
        std::int32_t port;
    } rows[] = {
        {"8080", 8080},   {"8080abc", 8080}, {"\"   12\"", 12}, {"abc", 0},   {"", 0},
        {"-1", -1},       {"+81", 81},       {"0x1F90", 0},     {"80.5", 80}, {"8 0", 8},
        {"65536", 65536}, {"00080", 80},     {"\"\"", 0},       {"- 5", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(port_of(row.value), row.port);
    }
}

TEST_F(PluginConfigFiles, OutOfRangePortIsClampedToTheLimit) {
    EXPECT_EQ(port_of("99999999999999999999"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(port_of("-99999999999999999999"), std::numeric_limits<std::int32_t>::min());
}

TEST_F(PluginConfigFiles, OnlyAMatchingPairOfQuotesIsRemoved) {
    const struct {
        const char* value;
        const wchar_t* ip;
    } rows[] = {
        {"\"a b\"", L"a b"},
        {"'a b'", L"a b"},
        {"\"a", L"\"a"},
        {"a\"", L"a\""},
        {"\"a'", L"\"a'"},
        {"\"\"a\"\"", L"\"a\""},
        {"a \"b\" c", L"a \"b\" c"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(load(std::string("[general]\r\nip=") + row.value + "\r\n").clientIp, row.ip);
    }
}

TEST_F(PluginConfigFiles, OnlyAWholeLineIsAComment) {
    const PluginConfig config =
        load("[general]\r\n  ; ip=9.9.9.9\r\nip=10.0.0.1 ; the office\r\nport=81;82\r\n");
    EXPECT_EQ(config.clientIp, L"10.0.0.1 ; the office");
    EXPECT_EQ(config.clientPort, 81);
}

TEST_F(PluginConfigFiles, FirstOfTwoEntriesIsUsed) {
    const PluginConfig config = load("[general]\r\nport=1\r\nport=2\r\n[general]\r\nport=3\r\nip=second\r\n");
    EXPECT_EQ(config.clientPort, 1);
}

TEST_F(PluginConfigFiles, BothLineEndingsAreAccepted) {
    for (const char* end : {"\r\n", "\n"}) {
        const PluginConfig config =
            load(std::string("[general]") + end + "ip=a" + end + "port=5" + end + "lowerversion=1.3.5");
        EXPECT_EQ(config.clientIp, L"a");
        EXPECT_EQ(config.clientPort, 5);
        EXPECT_EQ(config.lowerVersion, L"1.3.5");
    }
}

TEST_F(PluginConfigFiles, MalformedFileGivesEmptyValues) {
    for (const std::string& content :
         {std::string(), std::string("port=8080\r\n"), std::string("[general\r\nport=8080\r\n"),
          std::string("[general]\r\nport 8080\r\n"), std::string(3000, '\0'), std::string(100000, '[')}) {
        SCOPED_TRACE(content.substr(0, 20));
        const PluginConfig config = load(content);
        EXPECT_EQ(config.clientIp, L"");
        EXPECT_EQ(config.lowerVersion, L"");
        EXPECT_EQ(config.jsonPath.substr(config.jsonPath.size() - 21), L"/Tarvo Rendering/json");
    }
}

TEST_F(PluginConfigFiles, EveryKeyIsReadFromUtf16WithByteOrderMark) {
    const std::wstring text = L"\xFEFF; \x8BF4\x660E\r\n[general]\r\nip=\"\x4E3B\x673A\"\r\nport=' 8080x'\r\n"
                              L"lowerversion=\x0531.1\r\n";
    const PluginConfig config =
        load(std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)));
    EXPECT_EQ(config.clientIp, L"\x4E3B\x673A");
    EXPECT_EQ(config.clientPort, 8080);
    EXPECT_EQ(config.lowerVersion, L"\x0531.1");
}

TEST_F(PluginConfigFiles, TwoLoadsGiveTheSameRecord) {
    PluginConfig config = load("[general]\r\nip=127.0.0.1\r\nport=8080\r\nlowerversion=1.3\r\n");
    const PluginConfig first = config;
    EXPECT_TRUE(LoadClientConfiguration(scene, config));
    expect_same(config, first);
    PluginConfig fresh;
    EXPECT_TRUE(LoadClientConfiguration(scene, fresh));
    expect_same(fresh, first);
}

TEST_F(PluginConfigFiles, LoadingKeepsSceneFileArchivePathAndArguments) {
    PluginConfig config;
    config.sceneFile = "scene";
    config.archivePath = "archive";
    config.packArguments = "arguments";
    EXPECT_TRUE(LoadClientConfiguration(scene, config));
    EXPECT_EQ(config.sceneFile, "scene");
    EXPECT_EQ(config.archivePath, "archive");
    EXPECT_EQ(config.packArguments, "arguments");
}

TEST_F(PluginConfigFiles, LockedFileIsTreatedAsMissing) {
    support::write_wide_file(path, "[general]\r\nip=a\r\nport=5\r\n");
    const HANDLE lock =
        ::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    const std::size_t mark = support::log_mark("qfx_data");
    PluginConfig config;
    EXPECT_TRUE(LoadClientConfiguration(scene, config));
    ::CloseHandle(lock);
    EXPECT_EQ(support::log_lines_since("qfx_data", mark),
              std::vector<std::string>{"[INFO] Get client infomation successfully."});
    EXPECT_EQ(config.clientPort, 0);
}

TEST_F(PluginConfigFiles, ReadOnlyFileIsRead) {
    support::write_wide_file(path, "[general]\r\nip=a\r\nport=5\r\n");
    ASSERT_TRUE(::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
    PluginConfig config;
    EXPECT_TRUE(LoadClientConfiguration(scene, config));
    EXPECT_EQ(config.clientPort, 5);
}

} // namespace
