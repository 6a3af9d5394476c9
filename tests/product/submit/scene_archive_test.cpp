#include "submit/scene_archive.h"

#include "common/platform.h"
#include "common/text.h"
#include "resources/resource_ids.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_host.h"

#include <gtest/gtest.h>

namespace {

using tarvo::ArchivePath;
using tarvo::ArchiveStem;
using tarvo::ArchiveTag;
using tarvo::IsUsableArchiveStem;
using tarvo::PackArguments;
using tarvo::PackCommandLine;
using tarvo::PluginConfig;
using tarvo::PrepareSceneArchive;

TEST(ArchiveStem, IsTheNameWithoutFolderAndExtension) {
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

TEST(ArchiveStem, BlanksAndFullStopsBeforeTheExtensionAreKept) {
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

TEST(ArchiveTag, DependsOnlyOnTheSecond) {
    EXPECT_EQ(ArchiveTag(1700000000), ArchiveTag(1700000000));
    EXPECT_NE(ArchiveTag(1700000000), ArchiveTag(1700000001));
}

TEST(ArchivePath, JoinsFolderStemAndTag) {
    EXPECT_EQ(ArchivePath(L"C:\\ProgramData/Tarvo Rendering/compress", L"Lobby2", L"k3ZpQa"),
              L"C:\\ProgramData/Tarvo Rendering/compress/Lobby2_k3ZpQa.7z");
}

TEST(PackArguments, HaveTheirFixedForm) {
    EXPECT_EQ(PackArguments("C:\\out/a b_k3ZpQa.7z", "D:\\work\\a & b (%1).max"),
              " a -mx=3 -mmt=2 -t7z \"C:\\out/a b_k3ZpQa.7z\" \"D:\\work\\a & b (%1).max\"");
    EXPECT_EQ(PackArguments("A", "S"), " a -mx=3 -mmt=2 -t7z \"A\" \"S\"");
}

class SceneArchive : public ::testing::Test {
protected:
    SceneArchive() {
        config.compressDir = tarvo::Utf8ToWide(support::plugin_folder() + "/compress");
        config.sceneFile = "D:\\work\\Lobby2.max";
        config.sevenZipExe = L"C:\\7z.exe";
        reset_test_host();
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

TEST_F(SceneArchive, RefusedNameStillFillsPathAndArguments) {
    for (const char* name : {"D:\\Tower .max", "D:\\Tower..max", "D:\\.max", "D:\\work\\"}) {
        config.sceneFile = name;
        config.archivePath.clear();
        config.packArguments.clear();
        EXPECT_FALSE(prepare()) << name;
        EXPECT_FALSE(config.archivePath.empty()) << name;
        EXPECT_NE(config.packArguments.find(name), std::string::npos) << name;
    }
}

TEST_F(SceneArchive, CommandLineOfAPlainPathIsTheProgramAndTheArguments) {
    ASSERT_TRUE(prepare());
    EXPECT_EQ(PackCommandLine(config), config.sevenZipExe + tarvo::Utf8ToWide(config.packArguments));
}

TEST_F(SceneArchive, UnpreparedRecordUsesItsArgumentsUnchanged) {
    config.packArguments = " l \"x.7z\"";
    EXPECT_EQ(PackCommandLine(config), L"C:\\7z.exe l \"x.7z\"");
}

// With any code page, archive, command line, document and request name the same file.
TEST_F(SceneArchive, AllCharactersReachTheCommandLine) {
    for (const char* name :
         {"caf\xC3\xA9", "H\xC4\x81lle", "\xE9\xA1\xB9\xE7\x9B\xAE", "\xED\x95\x9C", "\xF0\x9F\x98\x80",
          "x\xEF\xBC\x82 -sdel", "..\xEF\xBC\x8F..\xEF\xBC\x8Fp", "a\xEF\xBC\x8A", "\xEF\xBF\xBD"}) {
        SCOPED_TRACE(name);
        config.sceneFile = std::string("D:\\Jos\xC3\xA9\\") + name + ".max";
        ASSERT_TRUE(prepare());
        const std::string start = tarvo::WideToUtf8(config.compressDir) + "/" + name + "_";
        EXPECT_EQ(config.archivePath.substr(0, start.size()), start);
        EXPECT_EQ(config.archivePath.size(), start.size() + 6 + 3);
        const std::string line = tarvo::WideToUtf8(PackCommandLine(config));
        const std::string paths = " \"" + config.archivePath + "\" \"" + config.sceneFile + "\"";
        EXPECT_EQ(line.find("C:\\7z.exe a -mx=3 -mmt=2 -t7z"), 0u) << line;
        EXPECT_EQ(line.substr(line.size() - paths.size()), paths);
        const std::string between =
            line.substr(sizeof "C:\\7z.exe a -mx=3 -mmt=2 -t7z" - 1,
                        line.size() - paths.size() - (sizeof "C:\\7z.exe a -mx=3 -mmt=2 -t7z" - 1));
        // Only when a path cannot be converted to the code page and the console's code page is double-byte.
        const std::wstring narrow = tarvo::LocaleToWide(config.packArguments);
        const bool is_whole = L" a -mx=3 -mmt=2 -t7z" + tarvo::Utf8ToWide(paths) == narrow;
        EXPECT_EQ(between, !is_whole && tarvo::HasDoubleByteConsole() ? " -sccUTF-8" : "");
    }
}

struct RefusedPath {
    const char* path;
    unsigned text_id;
};

TEST_F(SceneArchive, UnpackablePathIsRefusedWithItsReason) {
    const std::string long_stem(246, 'n');
    const std::string long_path = "D:\\" + std::string(33000, 'f') + "\\n.max";
    const std::string long_scene = "D:\\" + long_stem + ".max";
    const RefusedPath refused[] = {
        {"D:\\Tower .max", IDS_SCENE_NAME_UNUSABLE},
        {"D:\\Tower..max", IDS_SCENE_NAME_UNUSABLE},
        {"D:\\.max", IDS_SCENE_NAME_UNUSABLE},
        {"D:\\a\" -sdel \"b.max", IDS_SCENE_PATH_CHARACTERS},
        {"D:\\a*.max", IDS_SCENE_PATH_CHARACTERS},
        {"D:\\a?.max", IDS_SCENE_PATH_CHARACTERS},
        {"D:\\a<b.max", IDS_SCENE_PATH_CHARACTERS},
        {"D:\\a>b.max", IDS_SCENE_PATH_CHARACTERS},
        {"D:\\a|b.max", IDS_SCENE_PATH_CHARACTERS},
        {"D:\\a:b.max", IDS_SCENE_PATH_CHARACTERS},
        {"\\:b.max", IDS_SCENE_PATH_CHARACTERS},
        {"a*\\b.max", IDS_SCENE_PATH_CHARACTERS},
        {"D:b.max", IDS_SCENE_PATH_CHARACTERS},
        {"D:\\a\nb.max", IDS_SCENE_PATH_CHARACTERS},
        {"D:\\work/../../planted.max", IDS_SCENE_PATH_CHARACTERS},
        {long_scene.c_str(), IDS_SCENE_NAME_TOO_LONG},
        {long_path.c_str(), IDS_SCENE_NAME_TOO_LONG},
    };
    for (const RefusedPath& row : refused) {
        SCOPED_TRACE(std::string(row.path).substr(0, 40));
        config.sceneFile = row.path;
        const std::size_t mark = support::log_mark("qfx_data");
        EXPECT_FALSE(prepare());
        EXPECT_EQ(tarvo::ArchiveRefusalText(config), row.text_id);
        const auto lines = support::log_lines_since("qfx_data", mark);
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_EQ(lines.front().find("[ERROR] The scene is not packed: "), 0u);
    }
}

TEST_F(SceneArchive, WithoutARefusalTheTextIsThatOfAnUnusableName) {
    config.sceneFile = "D:\\Tower.max";
    ASSERT_TRUE(prepare());
    ASSERT_EQ(tarvo::FindArchiveRefusal(config, std::wstring()), tarvo::ArchiveRefusal::none);
    EXPECT_EQ(tarvo::ArchiveRefusalText(config), static_cast<unsigned>(IDS_SCENE_NAME_UNUSABLE));
}

// With quotation marks around the program and the closing zero it is the system's limit of 32767.
TEST_F(SceneArchive, LongestCommandLineIsPacked) {
    const auto scene_of = [](std::size_t length) { return "D:\\" + std::string(length, 'f') + "\\n.max"; };
    config.sceneFile = scene_of(1);
    ASSERT_TRUE(prepare());
    const std::size_t rest = 32764 - tarvo::PackCommandLine(config).size();
    config.sceneFile = scene_of(1 + rest);
    EXPECT_TRUE(prepare());
    EXPECT_EQ(tarvo::PackCommandLine(config).size(), 32764u);
    config.sceneFile = scene_of(2 + rest);
    EXPECT_FALSE(prepare());
}

TEST_F(SceneArchive, LongestNameIsPacked) {
    config.sceneFile = "D:\\" + std::string(245, 'n') + ".max";
    EXPECT_TRUE(prepare());
    // The prefix of an extended-length path.
    config.sceneFile = "\\\\?\\D:\\n.max";
    EXPECT_TRUE(prepare());
}

TEST_F(SceneArchive, LoneSurrogateIsRefused) {
    const std::wstring half = std::wstring(L"D:\\work\\a") + static_cast<wchar_t>(0xD83D) + L"b.max";
    test_host().file_path = half;
    config.sceneFile = tarvo::WideToUtf8(half);
    EXPECT_FALSE(prepare());
    EXPECT_EQ(tarvo::ArchiveRefusalText(config), static_cast<unsigned>(IDS_SCENE_PATH_CHARACTERS));
    // A file name with a real replacement character, then a complete pair.
    test_host().file_path = tarvo::Utf8ToWide(config.sceneFile);
    EXPECT_TRUE(prepare());
    config.sceneFile = "D:\\work\\\xF0\x9F\x98\x80.max";
    test_host().file_path = tarvo::Utf8ToWide(config.sceneFile);
    EXPECT_TRUE(prepare());
    // After a save under a typed name the host's earlier path is ignored.
    test_host().file_path = half;
    EXPECT_TRUE(prepare());
}

TEST_F(SceneArchive, SameSecondGivesTheSameArchive) {
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

TEST_F(SceneArchive, CreatesTheFolder) {
    // A Chinese name: the folder is found and created with any code page.
    config.compressDir = tarvo::Utf8ToWide(support::plugin_folder() + "/\xE9\xA1\xB9\xE7\x9B\xAE " +
                                           std::to_string(tarvo::SecondsSinceEpoch()));
    ASSERT_FALSE(tarvo::PathExists(config.compressDir));
    prepare();
    EXPECT_TRUE(tarvo::PathExists(config.compressDir));
}

TEST_F(SceneArchive, EveryRefusalHasItsLogLine) {
    const struct {
        tarvo::ArchiveRefusal refusal;
        const char* line;
    } rows[] = {
        {tarvo::ArchiveRefusal::unusable_name, "The scene is not packed: before the extension its name is "
                                               "empty or ends with a blank or a full stop."},
        {tarvo::ArchiveRefusal::impossible_character,
         "The scene is not packed: its path has half of a surrogate pair, a character that no file name can "
         "have, "
         "or steps up to another folder."},
        {tarvo::ArchiveRefusal::too_long, "The scene is not packed: its name or its path is too long."},
        {tarvo::ArchiveRefusal::name_taken,
         "The scene is not packed: what lies under the archive's name cannot be removed, error code is "},
    };
    for (const auto& row : rows) {
        EXPECT_STREQ(tarvo::ArchiveRefusalLogText(row.refusal), row.line);
    }
}

} // namespace
