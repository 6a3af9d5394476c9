#include "scene/camera.h"
#include "scene/scene_file.h"

#include <gtest/gtest.h>

namespace {

using tarvo::PlanSceneFile;
using tarvo::SceneFilePlan;
using tarvo::SplitCameraName;

TEST(SceneFile, SameNamePacksTheCurrentFile) {
    const SceneFilePlan plan = PlanSceneFile("a.max", "a.max", "C:\\s\\a.max");
    EXPECT_EQ(plan.file, "C:\\s\\a.max");
    EXPECT_FALSE(plan.save_first);
}

TEST(SceneFile, OtherNameIsSavedBesideTheCurrentFile) {
    const SceneFilePlan plan = PlanSceneFile("b.max", "a.max", "C:\\s\\a.max");
    EXPECT_EQ(plan.file, "C:\\s\\b.max");
    EXPECT_EQ(plan.scene_name, "b.max");
    EXPECT_TRUE(plan.save_first);
}

TEST(SceneFile, SlashWinsOverALaterBackslash) {
    EXPECT_EQ(PlanSceneFile("b.max", "a.max", "C:/s\\t\\a.max").file, "C:/b.max");
}

TEST(SceneFile, PathWithoutSeparatorGivesNoFileForAnotherName) {
    const SceneFilePlan plan = PlanSceneFile("b.max", "a.max", "a.max");
    EXPECT_EQ(plan.file, "");
    EXPECT_FALSE(plan.save_first);
}

TEST(SceneFile, WithoutExtensionDropsFourCharacters) {
    EXPECT_EQ(tarvo::WithoutExtension(L"scene_01.max"), L"scene_01");
    EXPECT_EQ(tarvo::WithoutExtension(L".max"), L"");
    EXPECT_EQ(tarvo::WithoutExtension(L"abc"), L"abc");
}

TEST(SceneBackupName, NumberHasSixDigits) {
    EXPECT_EQ(tarvo::BackupName(L"scene", 4711), L"scene_004711");
    EXPECT_EQ(tarvo::BackupName(L"scene", 0), L"scene_000000");
    EXPECT_EQ(tarvo::BackupName(L"", 32767), L"_032767");
}

TEST(SceneBackupName, LogLineReportsSuccess) {
    EXPECT_EQ(tarvo::BackupLogLine(L"a", L"b", true, 0), L"Backup file from a to b Success!");
}

TEST(SceneBackupName, ErrorCodeIsOneCharacterAndNotDigits) {
    EXPECT_EQ(tarvo::BackupLogLine(L"a", L"b", false, 65), L"Backup file from a to b Error! Code is A");
    EXPECT_EQ(tarvo::BackupLogLine(L"a", L"b", false, 0x10041), L"Backup file from a to b Error! Code is A");
}

TEST(CameraName, IsCutAtTheLimitButNotInsideASurrogatePair) {
    EXPECT_EQ(SplitCameraName(std::string(259, 'a')).key.size(), 259u);
    EXPECT_EQ(SplitCameraName(std::string(260, 'a')).key.size(), 259u);
    // 258 letters and one character of two units: both units or none.
    EXPECT_EQ(SplitCameraName(std::string(257, 'a') + "\xF0\x9F\x98\x80").key.size(), 259u);
    EXPECT_EQ(SplitCameraName(std::string(258, 'a') + "\xF0\x9F\x98\x80").key.size(), 258u);
}

// U+10000 and U+10FFFF are the first and the last with a surrogate pair; U+D7FF and U+E000 are next to the
// surrogates.
TEST(CameraName, OnlyASurrogatePairAtTheLimitIsRemovedWhole) {
    for (const char* pair : {"\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_EQ(SplitCameraName(std::string(258, 'a') + pair).key.size(), 258u);
    }
    for (const char* single : {"\xED\x9F\xBF", "\xEE\x80\x80"}) {
        EXPECT_EQ(SplitCameraName(std::string(258, 'a') + single + "b").key.size(), 259u);
    }
}

TEST(CameraName, EmptyNameIsKept) {
    EXPECT_EQ(SplitCameraName("").key, L"");
    EXPECT_FALSE(SplitCameraName("").has_bad_ending);
}

} // namespace
