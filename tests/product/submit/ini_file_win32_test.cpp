// The configuration as the system's own ini reader sees it.
#include "scene/scene_data.h"
#include "submit/plugin_config.h"

#include "common/platform.h"
#include "tests/support/test_folder.h"
#include "tests/support/wide_file.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

using tarvo::LoadClientConfiguration;
using tarvo::PluginConfig;

class IniFile : public ::testing::Test {
protected:
    IniFile() : path(tarvo::CommonAppDataFolder() + tarvo::kPluginFolder + tarvo::kIniFile) {
        support::plugin_folder();
        tarvo::CreateFolder(tarvo::CommonAppDataFolder() + tarvo::kPluginFolder + L"/script");
    }
    ~IniFile() override { ::DeleteFileW(path.c_str()); }

    PluginConfig load(const std::string& content) {
        support::write_wide_file(path, content);
        PluginConfig config;
        EXPECT_TRUE(LoadClientConfiguration(scene, config));
        return config;
    }

    const std::wstring path;
    tarvo::SceneData scene;
};

TEST_F(IniFile, BlanksAroundNamesAndValuesAreIgnored) {
    const PluginConfig config = load("[general]\r\n  ip =  127.0.0.1  \r\nport\t= 8080\r\n");
    EXPECT_EQ(config.clientIp, L"127.0.0.1");
    EXPECT_EQ(config.clientPort, 8080);
}

TEST_F(IniFile, QuotesAroundAValueAreRemoved) {
    const PluginConfig config =
        load("[general]\r\nip=\" 10.0.0.1 \"\r\nport='   12'\r\nlowerversion=\"1.3\"\r\n");
    EXPECT_EQ(config.clientIp, L" 10.0.0.1 ");
    EXPECT_EQ(config.clientPort, 12);
    EXPECT_EQ(config.lowerVersion, L"1.3");
}

TEST_F(IniFile, NamesAreCaseInsensitive) {
    const PluginConfig config = load("[General]\r\nIP=localhost\r\nPort=81\r\n");
    EXPECT_EQ(config.clientIp, L"localhost");
    EXPECT_EQ(config.clientPort, 81);
}

TEST_F(IniFile, CommentsAndOtherSectionsAreIgnored) {
    const PluginConfig config = load(
        "; ip=9.9.9.9\r\n[other]\r\nip=8.8.8.8\r\n[general]\r\n;port=1\r\nport=2\r\n[last]\r\nport=3\r\n");
    EXPECT_EQ(config.clientIp, L"");
    EXPECT_EQ(config.clientPort, 2);
}

TEST_F(IniFile, MissingKeysOrFileGiveEmptyValues) {
    PluginConfig config = load("[general]\r\n");
    EXPECT_EQ(config.clientIp, L"");
    EXPECT_EQ(config.clientPort, 0);
    EXPECT_EQ(config.lowerVersion, L"");
    ::DeleteFileW(path.c_str());
    config.clientIp = L"left over";
    config.clientPort = 99;
    EXPECT_TRUE(LoadClientConfiguration(scene, config));
    EXPECT_EQ(config.clientIp, L"");
    EXPECT_EQ(config.clientPort, 0);
}

TEST_F(IniFile, Utf16WithByteOrderMarkIsRead) {
    const std::wstring text = L"\xFEFF[general]\r\nip=\x4E3B\x673A.example\r\nport=8080\r\n";
    const PluginConfig config =
        load(std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)));
    EXPECT_EQ(config.clientIp, L"\x4E3B\x673A.example");
    EXPECT_EQ(config.clientPort, 8080);
}

TEST_F(IniFile, LongValueIsCutAt2047Characters) {
    const PluginConfig config = load("[general]\r\nip=" + std::string(3000, 'a') + "\r\nport=7\r\n");
    EXPECT_EQ(config.clientIp, std::wstring(2047, L'a'));
    EXPECT_EQ(config.clientPort, 7);
}

TEST_F(IniFile, ChangesAreSeenByTheNextLoad) {
    EXPECT_EQ(load("[general]\r\nport=1\r\n").clientPort, 1);
    EXPECT_EQ(load("[general]\r\nport=2\r\n").clientPort, 2);
}

} // namespace
