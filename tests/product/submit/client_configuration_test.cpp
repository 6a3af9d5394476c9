#include "scene/scene_data.h"
#include "submit/plugin_config.h"

#include "common/platform.h"
#include "common/text.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

using tarvo::LoadClientConfiguration;
using tarvo::PluginConfig;

class ClientConfiguration : public ::testing::Test {
protected:
    ClientConfiguration() {
        tarvo::CreateFolder(tarvo::Utf8ToWide(support::plugin_folder() + "/script"));
        std::remove(ini().c_str());
    }
    ~ClientConfiguration() override { std::remove(ini().c_str()); }

    static std::string ini() { return support::plugin_folder() + "/script/qfx_plugin.ini"; }

    static PluginConfig load(const std::string& content) {
        support::write_file(ini(), content);
        tarvo::SceneData scene;
        PluginConfig config;
        EXPECT_TRUE(LoadClientConfiguration(scene, config));
        return config;
    }
};

TEST_F(ClientConfiguration, FreshRecordHasPort80AndNothingElse) {
    const PluginConfig config;
    EXPECT_EQ(config.clientPort, 80);
    EXPECT_TRUE(config.clientIp.empty());
    EXPECT_TRUE(config.jsonPath.empty());
    EXPECT_TRUE(config.packArguments.empty());
}

TEST_F(ClientConfiguration, PathsAreConcatenated) {
    const PluginConfig config = load("");
    const std::wstring base = tarvo::CommonAppDataFolder() + L"/Tarvo Rendering";
    EXPECT_EQ(config.jsonPath, base + L"/json");
    EXPECT_EQ(config.sevenZipExe, base + L"/7-Zip/7z.exe");
    EXPECT_EQ(config.compressDir, base + L"/compress");
    EXPECT_EQ(config.analysisScript, base + L"/script/MaxRenderGlobalsParser.mse");
    EXPECT_EQ(config.antivirusAdslScript, base + L"/script/TarvoAntivirusAdsl_UTF8.ms");
    EXPECT_EQ(config.antivirusAlcScript, base + L"/script/TarvoAntivirusAlc_UTF8.ms");
    EXPECT_EQ(config.antivirusCrpScript, base + L"/script/TarvoAntivirusCrp_UTF8.ms");
    EXPECT_TRUE(config.sceneFile.empty());
    EXPECT_TRUE(config.archivePath.empty());
}

TEST_F(ClientConfiguration, ValuesAreReadFromTheIniFile) {
    const PluginConfig config = load("[general]\nip=127.0.0.1\nport=8080\nlowerversion=1.3.0\n");
    EXPECT_EQ(config.clientIp, L"127.0.0.1");
    EXPECT_EQ(config.clientPort, 8080);
    EXPECT_EQ(config.lowerVersion, L"1.3.0");
}

TEST_F(ClientConfiguration, PortIsReadLikeAtoi) {
    EXPECT_EQ(load("[general]\nport=8080abc\n").clientPort, 8080);
    EXPECT_EQ(load("[general]\nport=abc\n").clientPort, 0);
    EXPECT_EQ(load("[general]\nport=-5\n").clientPort, -5);
}

TEST_F(ClientConfiguration, MissingPortIsZeroNot80) {
    EXPECT_EQ(load("[general]\nip=localhost\n").clientPort, 0);
}

TEST_F(ClientConfiguration, OtherSectionsAreIgnored) {
    const PluginConfig config = load("[other]\nip=10.0.0.1\nport=1\nlowerversion=9\n");
    EXPECT_TRUE(config.clientIp.empty());
    EXPECT_EQ(config.clientPort, 0);
    EXPECT_TRUE(config.lowerVersion.empty());
}

TEST_F(ClientConfiguration, MissingFileIsLoggedAsSuccess) {
    tarvo::SceneData scene;
    PluginConfig config;
    const std::size_t mark = support::log_mark("qfx_data");
    EXPECT_TRUE(LoadClientConfiguration(scene, config));
    EXPECT_TRUE(config.clientIp.empty());
    EXPECT_EQ(config.clientPort, 0);
    EXPECT_EQ(support::log_lines_since("qfx_data", mark),
              std::vector<std::string>{"[INFO] Get client infomation successfully."});
}

TEST_F(ClientConfiguration, SecondLoadReplacesEverything) {
    support::write_file(ini(), "[general]\nip=a\nport=1\nlowerversion=1\n");
    tarvo::SceneData scene;
    PluginConfig config;
    LoadClientConfiguration(scene, config);
    const PluginConfig first = config;
    LoadClientConfiguration(scene, config);
    EXPECT_EQ(config.jsonPath, first.jsonPath);
    EXPECT_EQ(config.compressDir, first.compressDir);
    EXPECT_EQ(config.clientIp, first.clientIp);
    EXPECT_EQ(config.clientPort, first.clientPort);
    std::remove(ini().c_str());
    LoadClientConfiguration(scene, config);
    EXPECT_TRUE(config.clientIp.empty());
    EXPECT_EQ(config.clientPort, 0);
    EXPECT_TRUE(config.lowerVersion.empty());
}

} // namespace
