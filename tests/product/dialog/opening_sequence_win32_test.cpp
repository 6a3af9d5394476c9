#include "dialog/sequences.h"

#include "tests/support/dialog_fixture.h"
#include "tests/support/patched_import.h"

namespace {

using namespace support;
using tarvo::Text;

constexpr const wchar_t* kAllUnlimited =
    L"\"pass_limit\": \"0\", \"time_limit\": \"0\", \"noise_level_limit\": \"0\"";

class OpeningSequence : public DialogTest {
protected:
    HWND dialog = show(IDD_MAIN, InertDialogProc);
    HWND list = ::GetDlgItem(dialog, IDC_MAIN_CAMERAS);

    int run(bool first_opening = true) { return tarvo::RunOpeningSequence(dialog, first_opening); }

    void expect_refused(unsigned text_id) {
        EXPECT_EQ(run(), -1);
        ASSERT_EQ(boxes.shown.size(), 1u);
        expect_box(0, dialog, text_id, IDS_CAPTION, MB_OK);
        EXPECT_TRUE(has_ended(dialog));
        EXPECT_TRUE(test_host().scripts.empty());
    }

    int column_count() const {
        HWND header = reinterpret_cast<HWND>(::SendMessageW(list, LVM_GETHEADER, 0, 0));
        return static_cast<int>(::SendMessageW(header, HDM_GETITEMCOUNT, 0, 0));
    }

    std::wstring notice(int index) const {
        wchar_t text[512] = {};
        ::SendDlgItemMessageW(dialog, IDC_MAIN_WARNINGS, LB_GETTEXT, static_cast<WPARAM>(index),
                              reinterpret_cast<LPARAM>(text));
        return text;
    }

    std::vector<std::string> new_warnings() {
        std::vector<std::string> warnings;
        for (const std::string& line : new_log_lines()) {
            if (line.compare(0, 6, "[WARN]") == 0) {
                warnings.push_back(line);
            }
        }
        return warnings;
    }

    static Analysis without_cameras() {
        Analysis analysis;
        analysis.cameras.clear();
        return analysis;
    }

    static Analysis unlimited() {
        Analysis analysis;
        analysis.corona = kAllUnlimited;
        return analysis;
    }

    static Analysis with_bad_camera() {
        Analysis analysis;
        analysis.cameras = {L"Good", L"Bad."};
        return analysis;
    }
};

TEST_F(OpeningSequence, WithoutAClientTheDialogEnds) {
    expect_refused(IDS_CLIENT_NOT_SET_UP);
}

TEST_F(OpeningSequence, TheFirstOpeningEmptiesTheCameraCollectionEvenWhenThereIsNoClient) {
    scene.cameras()[L"From before"];
    EXPECT_EQ(run(false), -1);
    EXPECT_EQ(scene.cameras().size(), 1u);
    EXPECT_EQ(run(true), -1);
    EXPECT_TRUE(scene.cameras().empty());
}

TEST_F(OpeningSequence, EmptyLowestVersionCountsAsNoClient) {
    write_ini("lowerversion=\r\n");
    expect_refused(IDS_CLIENT_NOT_SET_UP);
}

TEST_F(OpeningSequence, ATooHighLowestVersionEndsTheDialog) {
    let_it_open();
    write_ini("lowerversion=1.3.6\r\n");
    expect_refused(IDS_VERSION_TOO_LOW);
}

TEST_F(OpeningSequence, VersionsAreComparedAsTexts) {
    let_it_open();
    write_ini("lowerversion=1.10.0\r\n");
    EXPECT_EQ(run(), 1);
}

TEST_F(OpeningSequence, ASceneNameWithABlankBeforeTheExtensionEndsTheDialog) {
    let_it_open();
    test_host().file_name = L"shot .max";
    expect_refused(IDS_SCENE_NAME_UNUSABLE);
}

TEST_F(OpeningSequence, ACyrillicSceneNameEndsTheDialog) {
    let_it_open();
    test_host().file_name = L"\u0441\u0446\u0435\u043d\u0430.max";
    expect_refused(IDS_SCENE_NAME_UNUSABLE);
}

TEST_F(OpeningSequence, AFailedAnalysisEndsTheDialog) {
    let_it_open();
    test_host().script_result = false;
    EXPECT_EQ(run(), 0);
    ASSERT_EQ(boxes.shown.size(), 1u);
    expect_box(0, dialog, IDS_ANALYSIS_FAILED, IDS_CAPTION, MB_OK);
    EXPECT_TRUE(has_ended(dialog));
    EXPECT_EQ(test_host().scripts.size(), 1u);
}

TEST_F(OpeningSequence, OpeningRunsOnlyTheAnalysisScript) {
    let_it_open();
    EXPECT_EQ(run(), 1);
    ASSERT_EQ(test_host().scripts.size(), 1u);
    const std::wstring expected =
        tarvo::CommonAppDataFolder() + L"/Tarvo Rendering/script/MaxRenderGlobalsParser.mse";
    EXPECT_EQ(test_host().scripts[0], L"fileIn \"" + expected + L"\"\ngMax.analysis \"\" \"\"");
}

// A fake GetModuleFileNameW and its arguments.
HMODULE g_asked_module = nullptr;
DWORD g_asked_length = 0;
std::wstring g_program;

DWORD WINAPI note_module_file_name(HMODULE module, LPWSTR path, DWORD length) {
    g_asked_module = module;
    g_asked_length = length;
    g_program.copy(path, length - 1);
    return static_cast<DWORD>(g_program.size());
}

std::wstring folder_of_program(const std::wstring& program) {
    g_program = program;
    g_asked_module = reinterpret_cast<HMODULE>(1);
    g_asked_length = 0;
    const PatchedImport patch("kernel32.dll", "GetModuleFileNameW",
                              reinterpret_cast<void*>(&note_module_file_name));
    EXPECT_TRUE(patch.installed());
    return tarvo::ProgramFolder();
}

TEST_F(OpeningSequence, HostFolderIsReadButNotUsed) {
    EXPECT_EQ(folder_of_program(L"C:\\Program Files\\Host\\host.exe"), L"C:\\Program Files\\Host");
    EXPECT_EQ(g_asked_module, nullptr);
    EXPECT_EQ(g_asked_length, 2048u);
    g_asked_length = 0;
    let_it_open();
    const PatchedImport patch("kernel32.dll", "GetModuleFileNameW",
                              reinterpret_cast<void*>(&note_module_file_name));
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(g_asked_length, 2048u);
    ASSERT_EQ(test_host().scripts.size(), 1u);
    EXPECT_EQ(test_host().scripts[0].find(L"host.exe"), std::wstring::npos);
}

struct FindingCase {
    const char* name;
    Analysis (*analysis)();
    unsigned text_id;
    unsigned style;
    int answer;
    int result;
};

class OpeningFindings : public OpeningSequence, public ::testing::WithParamInterface<FindingCase> {
public:
    static const std::vector<FindingCase>& cases() {
        static const std::vector<FindingCase> all = {
            {"NoCameraYes", without_cameras, IDS_NO_CAMERA_QUESTION, MB_YESNO, IDYES, 1},
            {"NoCameraNo", without_cameras, IDS_NO_CAMERA_QUESTION, MB_YESNO, IDNO, -1},
            {"NoCameraNoBox", without_cameras, IDS_NO_CAMERA_QUESTION, MB_YESNO, 0, -1},
            {"NoCameraOk", without_cameras, IDS_NO_CAMERA_QUESTION, MB_YESNO, IDOK, -1},
            {"CoronaOk", unlimited, IDS_CORONA_UNLIMITED, MB_OK, IDOK, -1},
            {"CoronaNoBox", unlimited, IDS_CORONA_UNLIMITED, MB_OK, 0, 1},
            {"BadNameOk", with_bad_camera, IDS_CAMERA_NAME_ENDING, MB_OK, IDOK, -1},
            {"BadNameNoBox", with_bad_camera, IDS_CAMERA_NAME_ENDING, MB_OK, 0, 1},
        };
        return all;
    }
};

TEST_P(OpeningFindings, AnswerDecidesWhetherTheDialogOpens) {
    const FindingCase& finding = GetParam();
    let_it_open(finding.analysis());
    boxes.answers = {finding.answer};
    EXPECT_EQ(run(), finding.result);
    ASSERT_EQ(boxes.shown.size(), 1u);
    expect_box(0, dialog, finding.text_id, IDS_CAPTION, finding.style);
    EXPECT_EQ(has_ended(dialog), finding.result != 1);
    EXPECT_EQ(column_count(), finding.result == 1 ? 7 : 0);
}

INSTANTIATE_TEST_SUITE_P(EachAnswer, OpeningFindings, ::testing::ValuesIn(OpeningFindings::cases()),
                         [](const ::testing::TestParamInfo<FindingCase>& one) { return one.param.name; });

TEST_F(OpeningSequence, FillsTheDialog) {
    Analysis analysis;
    analysis.missing_file = L"C:/maps/wood.png";
    let_it_open(analysis);
    ::CheckRadioButton(dialog, IDC_MAIN_BLOCKS_1, IDC_MAIN_BLOCKS_LAST, IDC_MAIN_BLOCKS_64);
    scene.set_num_blocks(64);
    EXPECT_EQ(run(), 1);
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_FALSE(has_ended(dialog));
    EXPECT_EQ(::IsDlgButtonChecked(dialog, IDC_MAIN_BLOCKS_1), static_cast<UINT>(BST_CHECKED));
    EXPECT_EQ(::IsDlgButtonChecked(dialog, IDC_MAIN_BLOCKS_64), static_cast<UINT>(BST_UNCHECKED));
    EXPECT_EQ(scene.num_blocks, 1);
    EXPECT_EQ(field(dialog, IDC_MAIN_SCENE_NAME), L"shot");
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"1.8");
    ASSERT_EQ(::SendDlgItemMessageW(dialog, IDC_MAIN_WARNINGS, LB_GETCOUNT, 0, 0), 2);
    EXPECT_EQ(notice(0), Text(IDS_NOTICE_MISSING_HEADING));
    EXPECT_EQ(notice(1), Text(IDS_NOTICE_MISSING_FILE) + L"C:/maps/wood.png");
    EXPECT_EQ(::SendMessageW(list, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0), 37);
    EXPECT_EQ(column_count(), 7);
    ASSERT_EQ(row_count(list), 3);
    EXPECT_EQ(cell(list, 0, 0), L"Cam A");
    EXPECT_EQ(ticks(list), "---");
}

TEST_F(OpeningSequence, TheSceneNameComesFromTheAnalysis) {
    Analysis analysis;
    analysis.name = L"D:/jobs/other name.max";
    let_it_open(analysis);
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(field(dialog, IDC_MAIN_SCENE_NAME), L"other name");
    EXPECT_EQ(scene.scene_path, "D:/jobs/other name.max");
}

TEST_F(OpeningSequence, AnswerYesToNoCamerasShowsAnEmptyTable) {
    scene.cameras()[L"From before"];
    let_it_open(without_cameras());
    boxes.answers = {IDYES};
    EXPECT_EQ(run(), 1);
    EXPECT_TRUE(scene.cameras().empty());
    EXPECT_EQ(row_count(list), 0);
    EXPECT_EQ(column_count(), 7);
    EXPECT_EQ(new_warnings(), std::vector<std::string>({"[WARN] No cameras or Create camera table failed!"}));
}

TEST_F(OpeningSequence, OnlyTheFirstOpeningEmptiesTheCameraCollection) {
    let_it_open();
    EXPECT_EQ(run(), 1);
    let_it_open(without_cameras());
    boxes.answers = {IDYES};
    EXPECT_EQ(run(false), 1);
    EXPECT_EQ(scene.cameras().size(), 3u);
    EXPECT_EQ(row_count(list), 3);
}

TEST_F(OpeningSequence, AnalysingAgainRefillsTheExistingTable) {
    let_it_open();
    EXPECT_EQ(run(), 1);
    Analysis analysis;
    analysis.cameras = {L"New 1", L"New 2"};
    let_it_open(analysis);
    EXPECT_EQ(run(false), 1);
    EXPECT_EQ(column_count(), 7);
    ASSERT_EQ(row_count(list), 2);
    EXPECT_EQ(cell(list, 1, 0), L"New 2");
}

TEST_F(OpeningSequence, RefusalOnAnalysingAgainEndsTheDialog) {
    let_it_open();
    EXPECT_EQ(run(), 1);
    let_it_open(unlimited());
    EXPECT_EQ(run(false), -1);
    EXPECT_TRUE(has_ended(dialog));
}

TEST_F(OpeningSequence, ScriptWithoutATextLeavesTheDialogEmpty) {
    let_it_open();
    test_host().has_text = false;
    EXPECT_EQ(run(), 1);
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(row_count(list), 0);
    EXPECT_EQ(field(dialog, IDC_MAIN_SCENE_NAME), L"");
    EXPECT_EQ(scene.analysis_text(), L"");
}

} // namespace
