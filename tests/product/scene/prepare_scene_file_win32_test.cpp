// Which scene file is packed: the name in a real field is compared with the host's open file.
#include "common/text.h"
#include "scene/scene_data.h"
#include "tests/support/test_host.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

class PrepareSceneFile : public ::testing::Test {
protected:
    PrepareSceneFile()
        : field_(::CreateWindowExW(0, L"EDIT", L"before", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr,
                                   nullptr)) {
        reset_test_host();
        test_host().file_name = L"scene.max";
        test_host().file_path = L"D:\\work\\scene.max";
    }
    ~PrepareSceneFile() override { ::DestroyWindow(field_); }

    std::string prepare(const std::string& entered_name) {
        return scene.prepare_scene_file(entered_name, field_);
    }

    std::wstring field_text() const {
        wchar_t text[260] = {};
        ::GetWindowTextW(field_, text, 260);
        return text;
    }

    tarvo::SceneData scene;

private:
    HWND field_;
};

TEST_F(PrepareSceneFile, SameNamePacksTheOpenFileAndSavesNothing) {
    EXPECT_EQ(prepare("scene.max"), "D:\\work\\scene.max");
    EXPECT_TRUE(test_host().saved_as.empty());
    EXPECT_EQ(field_text(), L"before");
}

TEST_F(PrepareSceneFile, EmptyScenePathIsFilledAndASetOneIsKept) {
    EXPECT_EQ(scene.scene_path, "");
    prepare("scene.max");
    EXPECT_EQ(scene.scene_path, "D:\\work\\scene.max");
    test_host().file_path = L"D:\\other\\scene.max";
    prepare("scene.max");
    EXPECT_EQ(scene.scene_path, "D:\\work\\scene.max");
}

TEST_F(PrepareSceneFile, UnsavedSceneHasNoFileForAnyEnteredName) {
    test_host().file_name = L"";
    test_host().file_path = L"";
    EXPECT_EQ(prepare("scene.max"), "");
    EXPECT_EQ(prepare(""), "");
    EXPECT_TRUE(test_host().saved_as.empty());
    EXPECT_EQ(field_text(), L"before");
}

TEST_F(PrepareSceneFile, EmptyFieldGetsTheOpenFilesName) {
    EXPECT_EQ(prepare(""), "D:\\work\\scene.max");
    EXPECT_EQ(field_text(), L"scene");
    EXPECT_TRUE(test_host().saved_as.empty());
}

TEST_F(PrepareSceneFile, OtherNameIsSavedBesideTheOpenFile) {
    EXPECT_EQ(prepare("other.max"), "D:\\work\\other.max");
    EXPECT_EQ(test_host().saved_as, (std::vector<std::wstring>{L"D:\\work\\other.max"}));
}

TEST_F(PrepareSceneFile, ChineseNameReachesTheHost) {
    EXPECT_EQ(prepare("\xE5\x9C\xBA\xE6\x99\xAF.max"), "D:\\work\\\xE5\x9C\xBA\xE6\x99\xAF.max");
    EXPECT_EQ(test_host().saved_as, (std::vector<std::wstring>{L"D:\\work\\\x573A\x666F.max"}));
}

TEST_F(PrepareSceneFile, UnchangedChineseNamePacksTheOpenFileAndSavesNothing) {
    test_host().file_name = L"\x573A\x666F.max";
    test_host().file_path = L"D:\\\x5DE5\x4F5C\\\x573A\x666F.max";
    EXPECT_EQ(prepare("\xE5\x9C\xBA\xE6\x99\xAF.max"),
              "D:\\\xE5\xB7\xA5\xE4\xBD\x9C\\\xE5\x9C\xBA\xE6\x99\xAF.max");
    EXPECT_TRUE(test_host().saved_as.empty());
}

TEST_F(PrepareSceneFile, EmptyFieldGetsAChineseName) {
    test_host().file_name = L"\x573A\x666F.max";
    test_host().file_path = L"D:\\\x573A\x666F.max";
    EXPECT_EQ(prepare(""), "D:\\\xE5\x9C\xBA\xE6\x99\xAF.max");
    EXPECT_EQ(field_text(), L"\x573A\x666F");
    EXPECT_TRUE(test_host().saved_as.empty());
}

TEST_F(PrepareSceneFile, FailedSaveReturnsNoFile) {
    test_host().save_as_result = false;
    EXPECT_EQ(prepare("other.max"), "");
    EXPECT_EQ(test_host().saved_as.size(), 1u);
}

TEST_F(PrepareSceneFile, PathWithoutSeparatorGivesNoFileForAnotherName) {
    test_host().file_path = L"scene.max";
    EXPECT_EQ(prepare("other.max"), "");
    EXPECT_TRUE(test_host().saved_as.empty());
}

// The host takes at most 259 characters.
TEST_F(PrepareSceneFile, PathThatIsTooLongIsNotSaved) {
    const std::string folder = "D:\\work\\";
    const std::string ending = ".max";
    const std::string fits(259 - folder.size() - ending.size(), 'n');
    EXPECT_EQ(prepare(fits + ending), folder + fits + ending);
    EXPECT_EQ(prepare(fits + "n" + ending), "");
    EXPECT_EQ(test_host().saved_as.size(), 1u);
}

} // namespace
