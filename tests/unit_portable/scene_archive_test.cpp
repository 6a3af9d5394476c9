#include "submit/scene_archive.h"

#include "common/platform.h"
#include "common/text.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

namespace {

using tarvo::ArchivePath;
using tarvo::ArchiveStem;
using tarvo::ArchiveTag;
using tarvo::IsUsableArchiveStem;
using tarvo::PackArguments;
using tarvo::PluginConfig;
using tarvo::PrepareSceneArchive;

TEST(ArchiveStem, NameWithoutFolderAndExtension) {
    EXPECT_EQ(ArchiveStem("C:\\scenes\\Tower.max"), "Tower");
    EXPECT_EQ(ArchiveStem("C:\\my.folder\\Tower"), "Tower");
    EXPECT_EQ(ArchiveStem("C:\\scenes\\Tower.final.max"), "Tower.final");
    EXPECT_EQ(ArchiveStem("Tower.max"), "Tower");
    EXPECT_EQ(ArchiveStem("Tower"), "Tower");
    EXPECT_EQ(ArchiveStem(""), "");
    EXPECT_EQ(ArchiveStem("C:\\scenes\\.max"), "");
    EXPECT_EQ(ArchiveStem("C:\\scenes\\"), "");
}

TEST(ArchiveStem, BackslashWinsOverSlash) {
    EXPECT_EQ(ArchiveStem("C:/scenes/Tower.max"), "Tower");
    EXPECT_EQ(ArchiveStem("C:/scenes\\Tower.max"), "Tower");
    EXPECT_EQ(ArchiveStem("C:\\scenes/Tower.max"), "scenes/Tower");
}

TEST(ArchiveStem, BlanksAndFullStopsBeforeTheExtensionStay) {
    EXPECT_EQ(ArchiveStem("C:\\Tower .max"), "Tower ");
    EXPECT_EQ(ArchiveStem("C:\\Tower..max"), "Tower.");
}

TEST(IsUsableArchiveStem, LastCharacterDecides) {
    EXPECT_TRUE(IsUsableArchiveStem(L"Tower"));
    EXPECT_TRUE(IsUsableArchiveStem(L" Tower.a b"));
    EXPECT_FALSE(IsUsableArchiveStem(L"Tower "));
    EXPECT_FALSE(IsUsableArchiveStem(L"Tower."));
    EXPECT_FALSE(IsUsableArchiveStem(L""));
}

TEST(ArchiveTag, SixCharactersOfTheAlphabet) {
    const std::wstring alphabet = L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    std::wstring seen;
    for (long long second = 1700000000; second < 1700000500; ++second) {
        const std::wstring tag = ArchiveTag(second);
        ASSERT_EQ(tag.size(), 6u);
        EXPECT_EQ(tag.find_first_not_of(alphabet), std::wstring::npos);
        seen += tag;
    }
    for (const wchar_t letter : alphabet) {
        EXPECT_NE(seen.find(letter), std::wstring::npos) << "never drawn: " << static_cast<int>(letter);
    }
}

TEST(ArchiveTag, SecondDecides) {
    EXPECT_EQ(ArchiveTag(1700000000), ArchiveTag(1700000000));
    EXPECT_NE(ArchiveTag(1700000000), ArchiveTag(1700000001));
}

TEST(ArchivePath, Concatenated) {
    EXPECT_EQ(ArchivePath(L"C:\\ProgramData/Tarvo Rendering/compress", L"Lobby2", L"k3ZpQa"),
              L"C:\\ProgramData/Tarvo Rendering/compress/Lobby2_k3ZpQa.7z");
}

TEST(PackArguments, ByteForByte) {
    EXPECT_EQ(PackArguments("C:\\out/a b_k3ZpQa.7z", "D:\\work\\a & b (%1).max"),
              " a -mx=3 -mmt=2 -t7z \"C:\\out/a b_k3ZpQa.7z\" \"D:\\work\\a & b (%1).max\"");
    EXPECT_EQ(PackArguments("A", "S"), " a -mx=3 -mmt=2 -t7z \"A\" \"S\"");
}

class SceneArchive : public ::testing::Test {
protected:
    SceneArchive() {
        config.compressDir = tarvo::Utf8ToWide(tarvo_test::plugin_folder() + "/compress");
        config.sceneFile = "D:\\work\\Lobby2.max";
    }

    bool prepare() { return PrepareSceneArchive(scene, "not looked at", "neither", L"nor this", config); }

    tarvo::SceneData scene;
    PluginConfig config;
};

TEST_F(SceneArchive, FillsPathAndArguments) {
    ASSERT_TRUE(prepare());
    const std::string start = tarvo::WideToUtf8(config.compressDir) + "/Lobby2_";
    ASSERT_EQ(config.archivePath.size(), start.size() + 6 + 3);
    EXPECT_EQ(config.archivePath.substr(0, start.size()), start);
    EXPECT_EQ(config.archivePath.substr(start.size() + 6), ".7z");
    EXPECT_EQ(config.packArguments,
              " a -mx=3 -mmt=2 -t7z \"" + config.archivePath + "\" \"D:\\work\\Lobby2.max\"");
}

TEST_F(SceneArchive, RefusedNamesAreFilledInAllTheSame) {
    for (const char* name : {"D:\\Tower .max", "D:\\Tower..max", "D:\\.max", "D:\\work\\"}) {
        config.sceneFile = name;
        config.archivePath.clear();
        config.packArguments.clear();
        EXPECT_FALSE(prepare()) << name;
        EXPECT_FALSE(config.archivePath.empty()) << name;
        EXPECT_NE(config.packArguments.find(name), std::string::npos) << name;
    }
}

TEST_F(SceneArchive, SameSecondSameArchive) {
    for (int attempt = 0; attempt < 20; ++attempt) {
        const long long before = tarvo::SecondsSinceEpoch();
        prepare();
        const std::string first = config.archivePath;
        prepare();
        if (tarvo::SecondsSinceEpoch() == before) {
            EXPECT_EQ(config.archivePath, first);
            return;
        }
    }
    FAIL() << "two calls never fell into one second";
}

TEST_F(SceneArchive, MakesTheFolder) {
    // Named in Chinese: the folder is found and made whatever the code page is.
    config.compressDir = tarvo::Utf8ToWide(tarvo_test::plugin_folder() + "/\xE9\xA1\xB9\xE7\x9B\xAE " +
                                           std::to_string(tarvo::SecondsSinceEpoch()));
    ASSERT_FALSE(tarvo::PathExists(config.compressDir));
    prepare();
    EXPECT_TRUE(tarvo::PathExists(config.compressDir));
}

} // namespace
