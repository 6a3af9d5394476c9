// Analysing again on the open dialog: the new analysis replaces everything that the opening has shown, and
// every check that can refuse the opening can close the dialog.
#include "tests/support/main_dialog_fixture.h"

namespace {

using namespace support;
using tarvo::Text;

constexpr const wchar_t* kAllUnlimited =
    L"\"pass_limit\": \"0\", \"time_limit\": \"0\", \"noise_level_limit\": \"0\"";

class AnalysingAgain : public MainDialog {
protected:
    AnalysingAgain() { open(first_analysis()); }

    static Analysis first_analysis() {
        Analysis analysis;
        analysis.missing_file = L"C:/maps/wood.png";
        return analysis;
    }

    INT_PTR analyse() { return command(IDC_MAIN_ANALYSE); }

    INT_PTR analyse(const Analysis& analysis) {
        let_it_open(analysis);
        return analyse();
    }

    std::vector<std::wstring> notices() const {
        std::vector<std::wstring> all;
        const LRESULT count = ::SendDlgItemMessageW(dialog, IDC_MAIN_WARNINGS, LB_GETCOUNT, 0, 0);
        for (WPARAM index = 0; index < static_cast<WPARAM>(count); ++index) {
            wchar_t text[512] = {};
            ::SendDlgItemMessageW(dialog, IDC_MAIN_WARNINGS, LB_GETTEXT, index,
                                  reinterpret_cast<LPARAM>(text));
            all.push_back(text);
        }
        return all;
    }

    void expect_ended_with(unsigned text_id) {
        ASSERT_EQ(boxes.shown.size(), 1u);
        expect_box(0, dialog, text_id, IDS_CAPTION, MB_OK);
        EXPECT_TRUE(has_ended(dialog));
    }
};

TEST_F(AnalysingAgain, BlockCountIsResetToOne) {
    for (const int chosen : {IDC_MAIN_BLOCKS_10, IDC_MAIN_BLOCKS_64}) {
        click(chosen);
        ASSERT_TRUE(is_pressed(chosen));
        ASSERT_NE(scene.num_blocks, 1);
        EXPECT_EQ(analyse(), 1);
        EXPECT_TRUE(is_pressed(IDC_MAIN_BLOCKS_1));
        EXPECT_FALSE(is_pressed(chosen));
        EXPECT_EQ(scene.num_blocks, 1);
    }
}

TEST_F(AnalysingAgain, TheLastButtonOfTheBlockGroupIsReleasedToo) {
    ::CheckRadioButton(dialog, IDC_MAIN_BLOCKS_1, IDC_MAIN_BLOCKS_LAST, IDC_MAIN_BLOCKS_LAST);
    ASSERT_TRUE(is_pressed(IDC_MAIN_BLOCKS_LAST));
    EXPECT_EQ(analyse(), 1);
    EXPECT_FALSE(is_pressed(IDC_MAIN_BLOCKS_LAST));
    EXPECT_TRUE(is_pressed(IDC_MAIN_BLOCKS_1));
}

TEST_F(AnalysingAgain, SceneNameComesFromTheNewAnalysis) {
    Analysis analysis;
    analysis.name = L"D:/jobs/second.max";
    EXPECT_EQ(analyse(analysis), 1);
    EXPECT_EQ(field(dialog, IDC_MAIN_SCENE_NAME), L"second");
    EXPECT_EQ(scene.scene_path, "D:/jobs/second.max");
}

TEST_F(AnalysingAgain, ATypedSceneNameIsReplaced) {
    type(dialog, IDC_MAIN_SCENE_NAME, L"typed");
    EXPECT_EQ(analyse(), 1);
    EXPECT_EQ(field(dialog, IDC_MAIN_SCENE_NAME), L"shot");
}

TEST_F(AnalysingAgain, NoticesComeFromTheNewAnalysis) {
    ASSERT_EQ(notices().size(), 2u);
    Analysis analysis;
    analysis.missing_file = L"C:/maps/steel.png";
    EXPECT_EQ(analyse(analysis), 1);
    EXPECT_EQ(notices(), (std::vector<std::wstring>{Text(IDS_NOTICE_MISSING_HEADING),
                                                    Text(IDS_NOTICE_MISSING_FILE) + L"C:/maps/steel.png"}));
}

TEST_F(AnalysingAgain, AnalysisWithoutNoticesEmptiesTheList) {
    EXPECT_EQ(analyse(Analysis()), 1);
    EXPECT_TRUE(notices().empty());
}

TEST_F(AnalysingAgain, GammaComesFromTheNewAnalysis) {
    Analysis analysis;
    analysis.gamma = L"1.0";
    EXPECT_EQ(analyse(analysis), 1);
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"1.0");
}

TEST_F(AnalysingAgain, ATypedGammaIsReplaced) {
    type(dialog, IDC_MAIN_GAMMA, L"3.0");
    EXPECT_EQ(analyse(), 1);
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"1.8");
}

TEST_F(AnalysingAgain, TheTableGetsItsStylesAgain) {
    ::SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_CHECKBOXES);
    EXPECT_EQ(analyse(), 1);
    EXPECT_EQ(::SendMessageW(list, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0), 37);
}

TEST_F(AnalysingAgain, TheTableShowsTheNewCamerasUnticked) {
    click(IDC_MAIN_SELECT_ALL);
    Analysis analysis;
    analysis.cameras = {L"New 2", L"New 1"};
    EXPECT_EQ(analyse(analysis), 1);
    ASSERT_EQ(row_count(list), 2);
    EXPECT_EQ(cell(list, 0, 0), L"New 1");
    EXPECT_EQ(cell(list, 1, 0), L"New 2");
    EXPECT_EQ(ticks(list), "--");
}

TEST_F(AnalysingAgain, AnalysisWithoutCamerasKeepsTheRowsAndTheirTicks) {
    click(IDC_MAIN_SELECT_ALL);
    Analysis analysis;
    analysis.cameras.clear();
    boxes.answers = {IDYES};
    EXPECT_EQ(analyse(analysis), 1);
    ASSERT_EQ(boxes.shown.size(), 1u);
    expect_box(0, dialog, IDS_NO_CAMERA_QUESTION, IDS_CAPTION, MB_YESNO);
    ASSERT_EQ(row_count(list), 3);
    EXPECT_EQ(ticks(list), "xxx");
}

TEST_F(AnalysingAgain, OptionsOutsideTheAnalysisAreKept) {
    type(dialog, IDC_MAIN_AO_RADIUS, L"12.5");
    type(dialog, IDC_MAIN_AO_SUBDIVS, L"24");
    const int boxes_to_tick[] = {IDC_MAIN_VIRUS_CHECK, IDC_MAIN_COLOR_CHANNEL, IDC_MAIN_AO_CHANNEL};
    for (const int control : boxes_to_tick) {
        ::CheckDlgButton(dialog, control, BST_CHECKED);
    }
    EXPECT_EQ(analyse(), 1);
    EXPECT_EQ(field(dialog, IDC_MAIN_AO_RADIUS), L"12.5");
    EXPECT_EQ(field(dialog, IDC_MAIN_AO_SUBDIVS), L"24");
    for (const int control : boxes_to_tick) {
        EXPECT_TRUE(is_pressed(control)) << control;
    }
}

TEST_F(AnalysingAgain, ARemovedClientEndsTheDialog) {
    remove_ini();
    EXPECT_EQ(analyse(), -1);
    expect_ended_with(IDS_CLIENT_NOT_SET_UP);
    EXPECT_EQ(test_host().scripts.size(), 1u);
}

TEST_F(AnalysingAgain, ClientThatRequiresANewerVersionEndsTheDialog) {
    write_ini("lowerversion=1.3.6\r\n");
    EXPECT_EQ(analyse(), -1);
    expect_ended_with(IDS_VERSION_TOO_LOW);
    EXPECT_EQ(test_host().scripts.size(), 1u);
}

TEST_F(AnalysingAgain, NewSceneWithAnUnusableNameEndsTheDialog) {
    test_host().file_name = L"shot..max";
    EXPECT_EQ(analyse(), -1);
    expect_ended_with(IDS_SCENE_NAME_UNUSABLE);
    EXPECT_EQ(test_host().scripts.size(), 1u);
}

TEST_F(AnalysingAgain, TheClientIsCheckedBeforeTheSceneName) {
    remove_ini();
    test_host().file_name = L"shot..max";
    EXPECT_EQ(analyse(), -1);
    expect_ended_with(IDS_CLIENT_NOT_SET_UP);
}

TEST_F(AnalysingAgain, TheVersionIsCheckedBeforeTheSceneName) {
    write_ini("lowerversion=1.3.6\r\n");
    test_host().file_name = L"shot..max";
    EXPECT_EQ(analyse(), -1);
    expect_ended_with(IDS_VERSION_TOO_LOW);
}

TEST_F(AnalysingAgain, AFailedScriptEndsTheDialogAndKeepsTheLastAnalysis) {
    const std::wstring before = scene.analysis_text();
    test_host().script_result = false;
    EXPECT_EQ(analyse(), 0);
    expect_ended_with(IDS_ANALYSIS_FAILED);
    EXPECT_EQ(scene.analysis_text(), before);
    EXPECT_EQ(scene.cameras().size(), 3u);
}

TEST_F(AnalysingAgain, AnswerNoToNoCamerasEndsTheDialog) {
    Analysis analysis;
    analysis.cameras.clear();
    boxes.answers = {IDNO};
    EXPECT_EQ(analyse(analysis), -1);
    EXPECT_TRUE(has_ended(dialog));
}

TEST_F(AnalysingAgain, UnlimitedCoronaEndsTheDialog) {
    Analysis analysis;
    analysis.corona = kAllUnlimited;
    EXPECT_EQ(analyse(analysis), -1);
    expect_ended_with(IDS_CORONA_UNLIMITED);
}

TEST_F(AnalysingAgain, ACameraNameWithABadEndingEndsTheDialog) {
    Analysis analysis;
    analysis.cameras = {L"Bad."};
    EXPECT_EQ(analyse(analysis), -1);
    expect_ended_with(IDS_CAMERA_NAME_ENDING);
}

TEST_F(AnalysingAgain, RefusedAnalysisLeavesTheFieldsUnchanged) {
    click(IDC_MAIN_BLOCKS_10);
    Analysis analysis;
    analysis.name = L"D:/jobs/second.max";
    analysis.corona = kAllUnlimited;
    EXPECT_EQ(analyse(analysis), -1);
    EXPECT_EQ(field(dialog, IDC_MAIN_SCENE_NAME), L"shot");
    EXPECT_EQ(scene.num_blocks, 10);
    EXPECT_EQ(row_count(list), 3);
}

} // namespace
