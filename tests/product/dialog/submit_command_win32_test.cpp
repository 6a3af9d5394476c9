#include "tests/support/main_dialog_fixture.h"

#include <algorithm>

namespace {

using namespace support;
using tarvo::Text;

// Counts the files below the plugin's folder that match, and deletes them.
int count_and_remove(const std::string& pattern) {
    const std::wstring full = tarvo::Utf8ToWide(plugin_folder() + "/" + pattern);
    const std::wstring folder = full.substr(0, full.find_last_of(L'/') + 1);
    WIN32_FIND_DATAW found = {};
    HANDLE search = ::FindFirstFileW(full.c_str(), &found);
    int count = 0;
    for (BOOL more = search != INVALID_HANDLE_VALUE; more; more = ::FindNextFileW(search, &found)) {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            ++count;
            ::DeleteFileW((folder + found.cFileName).c_str());
        }
    }
    ::FindClose(search);
    return count;
}

class SubmitCommand : public MainDialog {};

TEST_F(SubmitCommand, ReturnsTheResultOfTheSequence) {
    open();
    boxes.answers = {IDCANCEL};
    EXPECT_EQ(command(IDC_MAIN_SUBMIT), -1);
    ASSERT_EQ(boxes.shown.size(), 1u);
    expect_box(0, dialog, IDS_NO_CAMERA_CHECKED, IDS_CAPTION, MB_OKCANCEL);
    EXPECT_EQ(test_host().save_count, 0);
    test_host().file_path.clear();
    tick(list, 0);
    EXPECT_EQ(command(IDC_MAIN_SUBMIT), 0);
    ASSERT_EQ(boxes.shown.size(), 2u);
    expect_box(1, dialog, IDS_SCENE_FILE_EMPTY, IDS_CAPTION, MB_OK);
    EXPECT_EQ(test_host().save_count, 1);
    EXPECT_FALSE(has_ended(dialog));
}

// Everything is real except two programs: 7-Zip is not installed, and no client listens.
TEST_F(SubmitCommand, ASubmissionGoesThroughEveryLayer) {
    count_and_remove("shot*.max");
    count_and_remove("json/*"); // files of an earlier program
    const std::string scene_file = plugin_folder() + "/shot.max";
    write_file(scene_file, "a scene");
    Analysis analysis;
    analysis.name = tarvo::Utf8ToWide(scene_file);
    std::replace(analysis.name.begin(), analysis.name.end(), L'\\', L'/');
    open(analysis);
    tarvo::CreateFolder(tarvo::Utf8ToWide(plugin_folder() + "/json"));
    test_host().file_path = tarvo::Utf8ToWide(scene_file);
    for (const int control : {IDC_MAIN_VIRUS_CHECK, IDC_MAIN_COLOR_CHANNEL, IDC_MAIN_AO_CHANNEL}) {
        ::CheckDlgButton(dialog, control, BST_CHECKED);
    }
    type(dialog, IDC_MAIN_AO_RADIUS, L"12.5");
    type(dialog, IDC_MAIN_AO_SUBDIVS, L"24");
    type(dialog, IDC_MAIN_GAMMA, L"0.9");
    tick(list, 1);
    EXPECT_EQ(command(IDC_MAIN_SUBMIT), 1);
    ASSERT_EQ(boxes.shown.size(), 1u);
    expect_box(0, dialog, IDS_SEND_FAILED, IDS_CAPTION, MB_OK);
    EXPECT_EQ(stored_ticks(), "-x-");
    EXPECT_EQ(test_host().save_count, 1);
    EXPECT_TRUE(test_host().saved_as.empty());
    EXPECT_EQ(test_host().scripts.size(), 4u); // the analysis and three virus checks
    EXPECT_TRUE(scene.color_channel);
    EXPECT_EQ(scene.ao_radius, 12.5);
    EXPECT_EQ(scene.ao_subdivs, 24);
    EXPECT_EQ(scene.gamma_out, 0.9f);
    EXPECT_FALSE(has_ended(dialog));
    EXPECT_EQ(count_and_remove("shot*.max"), 2); // the scene and its backup
    EXPECT_EQ(count_and_remove("json/*"), 0);    // removed because the client was not reached
}

TEST_F(SubmitCommand, ARefusedArchiveEndsTheDialog) {
    open();
    test_host().file_name = L"shot .max";
    test_host().file_path = L"C:\\scenes\\shot .max";
    type(dialog, IDC_MAIN_SCENE_NAME, L"shot ");
    tick(list, 0);
    EXPECT_EQ(command(IDC_MAIN_SUBMIT), -1);
    ASSERT_EQ(boxes.shown.size(), 1u);
    expect_box(0, dialog, IDS_SCENE_NAME_UNUSABLE, IDS_CAPTION, MB_OK);
    EXPECT_TRUE(has_ended(dialog));
}

TEST_F(SubmitCommand, FailedSaveUnderTheEnteredNameShowsABox) {
    open();
    test_host().save_as_result = false;
    type(dialog, IDC_MAIN_SCENE_NAME, L"another");
    tick(list, 0);
    EXPECT_EQ(command(IDC_MAIN_SUBMIT), 0);
    ASSERT_EQ(test_host().saved_as.size(), 1u);
    EXPECT_EQ(test_host().saved_as[0], L"C:\\scenes\\another.max");
    ASSERT_EQ(boxes.shown.size(), 1u);
    EXPECT_EQ(boxes.shown[0].text, Text(IDS_SCENE_FILE_EMPTY));
}

} // namespace
