#include "dialog/main_dialog.h"

#include "tests/support/dialog_fixture.h"

#include <fstream>
#include <stdexcept>

namespace {

using namespace tarvo_test;
using tarvo::MainDialogProc;
using tarvo::Text;

using Names = std::vector<std::wstring>;

class MainDialog : public DialogTest {
protected:
    // The dialog over "Cam A", "Cam B" and "Cam C".
    void open(const Analysis& analysis = Analysis()) {
        let_it_open(analysis);
        dialog = show(IDD_MAIN, MainDialogProc);
        list = ::GetDlgItem(dialog, IDC_MAIN_CAMERAS);
        new_log_lines();
    }

    INT_PTR send(UINT message, WPARAM w_param = 0, LPARAM l_param = 0) const {
        return MainDialogProc(dialog, message, w_param, l_param);
    }
    INT_PTR command(int control, int notification = 0) const {
        return send(WM_COMMAND, MAKEWPARAM(control, notification));
    }

    void click(int control) const { ::SendDlgItemMessageW(dialog, control, BM_CLICK, 0, 0); }

    INT_PTR double_click(int row) const {
        NMITEMACTIVATE notice = {};
        notice.hdr.idFrom = IDC_MAIN_CAMERAS;
        notice.hdr.code = static_cast<UINT>(NM_DBLCLK);
        notice.iItem = row;
        return send(WM_NOTIFY, IDC_MAIN_CAMERAS, reinterpret_cast<LPARAM>(&notice));
    }

    INT_PTR step(int spinner, int delta, UINT code = static_cast<UINT>(UDN_DELTAPOS)) const {
        NMUPDOWN notice = {};
        notice.hdr.idFrom = static_cast<UINT_PTR>(spinner);
        notice.hdr.code = code;
        notice.iDelta = delta;
        return send(WM_NOTIFY, static_cast<WPARAM>(spinner), reinterpret_cast<LPARAM>(&notice));
    }

    INT_PTR follow_link(const std::wstring& url, UINT code = static_cast<UINT>(NM_CLICK)) const {
        NMLINK notice = {};
        notice.hdr.idFrom = IDC_MAIN_LINK;
        notice.hdr.code = code;
        url.copy(notice.item.szUrl, L_MAX_URL_LENGTH - 1);
        return send(WM_NOTIFY, IDC_MAIN_LINK, reinterpret_cast<LPARAM>(&notice));
    }

    void select(int row) const { set_row_state(list, row, LVIS_SELECTED, LVIS_SELECTED); }
    void focus(int row) const {
        set_row_state(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    }

    bool is_pressed(int control) const {
        return ::IsDlgButtonChecked(dialog, control) == static_cast<UINT>(BST_CHECKED);
    }

    std::string stored_ticks() {
        std::string all;
        for (const auto& entry : scene.cameras()) {
            all += entry.second.checked ? 'x' : '-';
        }
        return all;
    }

    HWND dialog = nullptr;
    HWND list = nullptr;
};

TEST_F(MainDialog, OpensFilled) {
    open();
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(row_count(list), 3);
    EXPECT_EQ(field(dialog, IDC_MAIN_SCENE_NAME), L"shot");
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"1.8");
    EXPECT_EQ(field(dialog, IDC_MAIN_AO_RADIUS), L"1000.0");
    EXPECT_EQ(field(dialog, IDC_MAIN_AO_SUBDIVS), L"16");
    EXPECT_FALSE(has_ended(dialog));
}

TEST_F(MainDialog, TheOpeningsResultIsTheAnswer) {
    open();
    EXPECT_EQ(command(IDC_MAIN_ANALYSE), 1);
    test_host().script_result = false;
    EXPECT_EQ(command(IDC_MAIN_ANALYSE), 0);
    remove_ini();
    EXPECT_EQ(command(IDC_MAIN_ANALYSE), -1);
    let_it_open();
    HWND other = show(IDD_MAIN, InertDialogProc);
    EXPECT_EQ(MainDialogProc(other, WM_INITDIALOG, 0, 0), 1);
    test_host().script_result = false;
    EXPECT_EQ(MainDialogProc(other, WM_INITDIALOG, 0, 0), 0);
    remove_ini();
    EXPECT_EQ(MainDialogProc(other, WM_INITDIALOG, 0, 0), -1);
}

TEST_F(MainDialog, AnalyseAgainKeepsColumnsAndCameras) {
    open();
    HWND header = reinterpret_cast<HWND>(::SendMessageW(list, LVM_GETHEADER, 0, 0));
    EXPECT_EQ(command(IDC_MAIN_ANALYSE), 1);
    EXPECT_EQ(::SendMessageW(header, HDM_GETITEMCOUNT, 0, 0), 7);
    EXPECT_EQ(row_count(list), 3);
    EXPECT_EQ(test_host().scripts.size(), 2u);
}

TEST_F(MainDialog, TellsWhatItHandles) {
    open();
    const struct {
        UINT message;
        INT_PTR result;
    } cases[] = {{WM_DESTROY, 1},     {WM_MOUSEMOVE, 1}, {WM_LBUTTONDOWN, 1}, {WM_LBUTTONUP, 1},
                 {WM_USER + 1, 1},    {WM_USER, 0},      {WM_USER + 2, 0},    {WM_LBUTTONDBLCLK, 0},
                 {WM_RBUTTONDOWN, 0}, {WM_SETFONT, 0},   {WM_TIMER, 0},       {WM_NCDESTROY, 0}};
    for (const auto& one : cases) {
        EXPECT_EQ(send(one.message), one.result) << one.message;
    }
    EXPECT_FALSE(has_ended(dialog));
}

TEST_F(MainDialog, OtherCommandsAndNoticesDoNothing) {
    open();
    for (const int control :
         {IDOK, 0, 999, IDC_MAIN_SCENE_NAME, IDC_MAIN_BLOCKS_LAST, IDC_MAIN_VIRUS_CHECK}) {
        EXPECT_EQ(command(control), 1) << control;
    }
    NMHDR notice = {};
    notice.code = static_cast<UINT>(NM_CLICK);
    for (const WPARAM from : {IDC_MAIN_CAMERAS, IDC_MAIN_GAMMA_SPIN, IDC_MAIN_AO_SUBDIVS_SPIN, 7}) {
        EXPECT_EQ(send(WM_NOTIFY, from, reinterpret_cast<LPARAM>(&notice)), 1) << from;
    }
    EXPECT_EQ(scene.num_blocks, 1);
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_FALSE(has_ended(dialog));
}

TEST_F(MainDialog, ANoticeWithoutARecordIsHandled) {
    open();
    for (const WPARAM from :
         {IDC_MAIN_CAMERAS, IDC_MAIN_GAMMA_SPIN, IDC_MAIN_AO_RADIUS_SPIN, IDC_MAIN_LINK}) {
        EXPECT_EQ(send(WM_NOTIFY, from, 0), 1);
    }
}

TEST_F(MainDialog, MessagesBeforeTheOpeningDoNoHarm) {
    HWND bare = show(IDD_MAIN, InertDialogProc);
    for (const UINT message : {WM_SETFONT, WM_NOTIFY, WM_COMMAND, WM_DESTROY, WM_SIZE}) {
        MainDialogProc(bare, message, 0, 0);
    }
    dialog = bare;
    EXPECT_EQ(double_click(0), 1);
    EXPECT_EQ(command(IDC_MAIN_EDIT_CAMERAS), 1);
    EXPECT_EQ(command(IDC_MAIN_INVERT), 1);
    EXPECT_TRUE(ui.selected_cameras().empty());
}

TEST_F(MainDialog, CloseAndCancelEndIt) {
    open();
    EXPECT_EQ(send(WM_CLOSE), 1);
    EXPECT_TRUE(has_ended(dialog));
    ::ShowWindow(dialog, SW_SHOWNA);
    EXPECT_EQ(command(IDCANCEL), 1);
    EXPECT_TRUE(has_ended(dialog));
}

TEST_F(MainDialog, TheButtonsTickAllAndInvert) {
    open();
    click(IDC_MAIN_SELECT_ALL);
    EXPECT_EQ(ticks(list), "xxx");
    tick(list, 1, false);
    click(IDC_MAIN_INVERT);
    EXPECT_EQ(ticks(list), "-x-");
    EXPECT_EQ(stored_ticks(), "-x-");
    EXPECT_EQ(command(IDC_MAIN_SELECT_ALL), 1);
    EXPECT_EQ(command(IDC_MAIN_INVERT), 1);
    EXPECT_EQ(stored_ticks(), "---");
}

TEST_F(MainDialog, TheRefillMessageShowsWhatTheStoreHolds) {
    open();
    scene.cameras()[L"Cam B"].image_width = 77;
    scene.cameras()[L"Cam B"].checked = true;
    ::SendMessageW(dialog, tarvo::kRefillCameraTable, 0, 0);
    EXPECT_EQ(cell(list, 1, 1), L"77");
    EXPECT_EQ(ticks(list), "-x-");
    EXPECT_EQ(static_cast<UINT>(tarvo::kRefillCameraTable), 1025u);
}

// A block of the radio group, in a scene that may render a region or be limited by Corona.
struct BlockCase {
    const char* name;
    int control;
    const wchar_t* region;
    std::int32_t corona_limits;
    std::int32_t stored;
    int pressed;
    unsigned text_id; // 0: no box
    unsigned caption_id;
};

const BlockCase kBlockCases[] = {
    {"off", 1030, L"false", 0, 1, 1030, 0, 0},
    {"10", 1031, L"false", 0, 10, 1031, 0, 0},
    {"64", 1032, L"false", 0, 64, 1032, 86, 68},
    {"64, limited", 1032, L"false", 3, 64, 1032, 86, 68},
    {"10, only time limited", 1031, L"false", 2, 10, 1031, 87, 68},
    {"64, only time limited", 1032, L"false", 2, 64, 1032, 87, 68},
    {"off, only time limited", 1030, L"false", 2, 1, 1030, 0, 0},
    {"10, region", 1031, L"true", 0, 1, 1030, 76, 49},
    {"64, region", 1032, L"true", 2, 1, 1030, 76, 49},
    {"off, region", 1030, L"true", 2, 1, 1030, 0, 0},
    {"10, something like a region", 1031, L"True", 0, 10, 1031, 0, 0},
};

TEST_F(MainDialog, TheBlockCountFollowsItsButtons) {
    for (const BlockCase& one : kBlockCases) {
        SCOPED_TRACE(one.name);
        Analysis analysis;
        analysis.region = one.region;
        open(analysis);
        scene.corona_limits = one.corona_limits;
        scene.set_num_blocks(5);
        boxes.shown.clear();
        click(one.control);
        EXPECT_EQ(scene.num_blocks, one.stored);
        EXPECT_TRUE(is_pressed(one.pressed));
        ASSERT_EQ(boxes.shown.size(), one.text_id == 0 ? 0u : 1u);
        if (one.text_id != 0) {
            expect_box(0, dialog, one.text_id, one.caption_id, MB_OK);
        }
        EXPECT_EQ(command(one.control), 1);
    }
}

TEST_F(MainDialog, TheUpDownsStepTheirFields) {
    open();
    EXPECT_EQ(step(IDC_MAIN_GAMMA_SPIN, 1), 1);
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"1.9");
    step(IDC_MAIN_GAMMA_SPIN, 100);
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"5.0");
    step(IDC_MAIN_GAMMA_SPIN, -100);
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"0.1");
    EXPECT_EQ(step(IDC_MAIN_AO_RADIUS_SPIN, -1), 1);
    EXPECT_EQ(field(dialog, IDC_MAIN_AO_RADIUS), L"999.9");
    type(dialog, IDC_MAIN_AO_RADIUS, L"10.05");
    step(IDC_MAIN_AO_RADIUS_SPIN, -1);
    EXPECT_EQ(field(dialog, IDC_MAIN_AO_RADIUS), L"10.0");
    type(dialog, IDC_MAIN_AO_RADIUS, L"999999999.9");
    step(IDC_MAIN_AO_RADIUS_SPIN, 9);
    EXPECT_EQ(field(dialog, IDC_MAIN_AO_RADIUS), L"1000000000.0");
}

TEST_F(MainDialog, OtherNoticesOfTheUpDownsChangeNothing) {
    open();
    step(IDC_MAIN_GAMMA_SPIN, 1, static_cast<UINT>(NM_RELEASEDCAPTURE));
    step(IDC_MAIN_AO_SUBDIVS_SPIN, 1);
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"1.8");
    EXPECT_EQ(field(dialog, IDC_MAIN_AO_SUBDIVS), L"16");
}

TEST_F(MainDialog, AnArrowKeyStepsTheField) {
    open();
    ::SendDlgItemMessageW(dialog, IDC_MAIN_GAMMA_SPIN, WM_KEYDOWN, VK_UP, 0);
    ::SendDlgItemMessageW(dialog, IDC_MAIN_GAMMA_SPIN, WM_KEYUP, VK_UP, 0);
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"1.9");
}

TEST_F(MainDialog, TheLinkOpensItsTarget) {
    open();
    const std::string folder = plugin_folder();
    const std::string proof = folder + "/link_was_opened.txt";
    std::remove(proof.c_str());
    write_file(folder + "/link.bat", "@echo opened> \"%~dp0link_was_opened.txt\"\r\n");
    const std::wstring target = tarvo::Utf8ToWide(folder + "/link.bat");
    EXPECT_EQ(follow_link(target, static_cast<UINT>(NM_DBLCLK)), 1);
    ::Sleep(300);
    EXPECT_EQ(read_file(proof), "");
    EXPECT_EQ(follow_link(target), 1);
    for (int waited = 0; waited < 100 && read_file(proof).empty(); ++waited) {
        ::Sleep(100);
    }
    EXPECT_EQ(read_file(proof), "opened\r\n");
    std::remove((folder + "/link.bat").c_str());
    std::remove(proof.c_str());
}

TEST_F(MainDialog, EditWithoutASelectedRowOnlyKeepsTheTicks) {
    open();
    std::wstring stale = L"from before";
    ui.add_selected_camera(stale);
    tick(list, 2);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
    EXPECT_EQ(command(IDC_MAIN_EDIT_CAMERAS), 1);
    EXPECT_FALSE(driver.has_acted());
    EXPECT_TRUE(ui.selected_cameras().empty());
    EXPECT_EQ(stored_ticks(), "--x");
}

TEST_F(MainDialog, EditChangesTheSelectedRows) {
    open();
    select(0);
    select(2);
    tick(list, 1);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND edit) {
        EXPECT_EQ(field(edit, IDC_EDIT_NAME), L"Cam A");
        type(edit, IDC_EDIT_START_FRAME, L"42");
        ::SendDlgItemMessageW(edit, IDC_EDIT_CONFIRM, BM_CLICK, 0, 0);
    });
    click(IDC_MAIN_EDIT_CAMERAS);
    EXPECT_TRUE(driver.has_acted());
    EXPECT_EQ(scene.cameras()[L"Cam A"].start_frame, 42);
    EXPECT_EQ(scene.cameras()[L"Cam B"].start_frame, 7);
    EXPECT_EQ(scene.cameras()[L"Cam C"].start_frame, 42);
    EXPECT_EQ(cell(list, 2, 3), L"42");
    EXPECT_EQ(ticks(list), "-x-");
}

TEST_F(MainDialog, EverySelectedRowIsPickedAndASecondSelectionReplacesTheFirst) {
    open();
    for (int row = 0; row < 3; ++row) {
        select(row);
    }
    {
        const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
        command(IDC_MAIN_EDIT_CAMERAS);
    }
    EXPECT_EQ(ui.selected_cameras(), Names({L"Cam A", L"Cam B", L"Cam C"}));
    focus(1);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
    EXPECT_EQ(double_click(1), 1);
    EXPECT_TRUE(driver.has_acted());
    EXPECT_EQ(ui.selected_cameras(), Names({L"Cam B"}));
}

TEST_F(MainDialog, ADoubleClickBesideTheRowsDoesNothing) {
    open();
    focus(1);
    tick(list, 0);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
    EXPECT_EQ(double_click(-1), 1);
    EXPECT_FALSE(driver.has_acted());
    EXPECT_EQ(stored_ticks(), "---");
}

TEST_F(MainDialog, ADoubleClickWithoutAFocusedSelectedRowKeepsTheTicksAndTheOldSelection) {
    open();
    std::wstring kept = L"Cam C";
    ui.add_selected_camera(kept);
    select(0);
    set_row_state(list, 1, LVIS_FOCUSED, LVIS_FOCUSED);
    tick(list, 0);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
    EXPECT_EQ(double_click(0), 1);
    EXPECT_FALSE(driver.has_acted());
    EXPECT_EQ(stored_ticks(), "x--");
    EXPECT_EQ(ui.selected_cameras(), Names({L"Cam C"}));
}

TEST_F(MainDialog, ARowBeyondTheCameraCollectionIsNotEdited) {
    open();
    scene.cameras().erase(L"Cam C");
    focus(2);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
    double_click(2);
    command(IDC_MAIN_EDIT_CAMERAS);
    EXPECT_FALSE(driver.has_acted());
}

TEST_F(MainDialog, ARowThatNoCameraBelongsToIsAddedWhenTheTicksAreKept) {
    open();
    const tarvo::CameraRecord other = scene.cameras()[L"Cam C"];
    scene.cameras().erase(L"Cam A");
    scene.cameras()[L"Other"] = other;
    tick(list, 0);
    command(IDC_MAIN_EDIT_CAMERAS);
    EXPECT_TRUE(scene.cameras()[L"Cam A"].checked);
    EXPECT_EQ(scene.cameras().size(), 4u);
}

TEST_F(MainDialog, AnErrorInsideIsLoggedAndDoesNotLeave) {
    open();
    boxes.on_show = [](const TestBox&) { throw std::runtime_error("in a box"); };
    EXPECT_EQ(command(IDC_MAIN_BLOCKS_64), 0);
    EXPECT_EQ(new_log_lines(),
              std::vector<std::string>({"[ERROR] A dialog message was not handled to its end: in a box"}));
    boxes.on_show = [](const TestBox&) { throw 7; };
    EXPECT_EQ(command(IDC_MAIN_BLOCKS_64), 0);
    EXPECT_EQ(new_log_lines().size(), 1u);
}

TEST_F(MainDialog, SubmittingAnswersWhatTheSequenceSays) {
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

TEST_F(MainDialog, IsModalAndEndsWhenItsOpeningIsRefused) {
    tarvo::OpenMainDialog(nullptr, 0);
    ASSERT_EQ(boxes.shown.size(), 1u);
    EXPECT_EQ(boxes.shown[0].text, Text(IDS_CLIENT_NOT_SET_UP));
    let_it_open();
    bool acted = false;
    const ModalDriver driver(IDC_MAIN_CAMERAS, [&acted](HWND shown) {
        acted = true;
        EXPECT_EQ(row_count(::GetDlgItem(shown, IDC_MAIN_CAMERAS)), 3);
        ::SendDlgItemMessageW(shown, IDCANCEL, BM_CLICK, 0, 0);
    });
    tarvo::OpenMainDialog(nullptr, 0);
    EXPECT_TRUE(acted);
}

} // namespace
