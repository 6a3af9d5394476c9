#include "common/platform.h"
#include "dialog/controls.h"
#include "tests/support/main_dialog_fixture.h"
#include "tests/support/patched_import.h"
#include "tests/support/patience.h"

#include <stdexcept>

namespace {

using namespace support;
using tarvo::MainDialogProc;
using tarvo::Text;

TEST_F(MainDialog, OpeningFillsTheFields) {
    open();
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(row_count(list), 3);
    EXPECT_EQ(field(dialog, IDC_MAIN_SCENE_NAME), L"shot");
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"1.8");
    EXPECT_EQ(field(dialog, IDC_MAIN_AO_RADIUS), L"1000.0");
    EXPECT_EQ(field(dialog, IDC_MAIN_AO_SUBDIVS), L"16");
    EXPECT_FALSE(has_ended(dialog));
}

TEST_F(MainDialog, ReturnsTheResultOfTheOpening) {
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

TEST_F(MainDialog, ReturnsOneForHandledMessagesAndZeroForOthers) {
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

// The group's last button only marks the end of the group.
TEST_F(MainDialog, TheLastButtonOfTheBlockGroupStoresNothing) {
    open();
    click(IDC_MAIN_BLOCKS_10);
    EXPECT_EQ(command(IDC_MAIN_BLOCKS_LAST), 1);
    EXPECT_EQ(scene.num_blocks, 10);
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(MainDialog, NotifyWithoutANmhdrIsHandled) {
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

TEST_F(MainDialog, CloseAndCancelEndTheDialog) {
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

TEST_F(MainDialog, RefillMessageShowsTheStoredCameras) {
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

TEST_F(MainDialog, RefusedBlockCountMovesTheFocusToTheOffButton) {
    Analysis analysis;
    analysis.region = L"true";
    open(analysis);
    for (const int refused : {IDC_MAIN_BLOCKS_10, IDC_MAIN_BLOCKS_64}) {
        ::SetFocus(::GetDlgItem(dialog, refused));
        click(refused);
        EXPECT_EQ(::GetFocus(), ::GetDlgItem(dialog, IDC_MAIN_BLOCKS_1));
    }
    analysis.region = L"false";
    open(analysis);
    ::SetFocus(::GetDlgItem(dialog, IDC_MAIN_BLOCKS_10));
    click(IDC_MAIN_BLOCKS_10);
    EXPECT_EQ(::GetFocus(), ::GetDlgItem(dialog, IDC_MAIN_BLOCKS_10));
}

// On Windows a radio button sends such a click when the closing box returns the focus to it.
TEST_F(MainDialog, ClickWhileABlockBoxIsOpenOpensNoSecondBox) {
    Analysis analysis;
    for (const wchar_t* region : {L"true", L"false"}) {
        analysis.region = region;
        open(analysis);
        boxes.shown.clear();
        boxes.on_show = [](const TestBox& box) {
            EXPECT_EQ(MainDialogProc(static_cast<HWND>(box.owner), WM_COMMAND, IDC_MAIN_BLOCKS_64, 0), 1);
        };
        command(IDC_MAIN_BLOCKS_64);
        EXPECT_EQ(boxes.shown.size(), 1u);
        command(IDC_MAIN_BLOCKS_64);
        EXPECT_EQ(boxes.shown.size(), 2u);
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
    write_file(folder + "/link.bat", "@echo opened>> \"%~dp0link_was_opened.txt\"\r\n");
    const std::wstring target = tarvo::Utf8ToWide(folder + "/link.bat");
    // A double click opens nothing: otherwise the file would have two lines.
    EXPECT_EQ(follow_link(target, static_cast<UINT>(NM_DBLCLK)), 1);
    EXPECT_EQ(follow_link(target), 1);
    const auto is_written = [&proof] { return read_file(proof).find('\n') != std::string::npos; };
    EXPECT_TRUE(eventually(is_written));
    EXPECT_EQ(read_file(proof), "opened\r\n");
    std::remove((folder + "/link.bat").c_str());
    std::remove(proof.c_str());
}

// The arguments of a ShellExecuteW call.
struct Opened {
    std::wstring verb;
    std::wstring file;
    bool bare; // neither parameters nor a folder
    int show;
};
std::vector<Opened> g_opened;

HINSTANCE WINAPI note_opened(HWND, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters, LPCWSTR folder, INT show) {
    constexpr INT_PTR kSuccess = 33;
    g_opened.push_back({verb, file, parameters == nullptr && folder == nullptr, show});
    return reinterpret_cast<HINSTANCE>(kSuccess);
}

TEST_F(MainDialog, TheLinkIsOpenedWithoutParametersAndWithoutAFolder) {
    g_opened.clear();
    const PatchedImport patch("shell32.dll", "ShellExecuteW", reinterpret_cast<void*>(&note_opened));
    ASSERT_TRUE(patch.installed());
    open();
    EXPECT_EQ(follow_link(L"https://farm.example/help"), 1);
    ASSERT_EQ(g_opened.size(), 1u);
    EXPECT_EQ(g_opened[0].verb, L"open");
    EXPECT_EQ(g_opened[0].file, L"https://farm.example/help");
    EXPECT_TRUE(g_opened[0].bare);
    EXPECT_EQ(g_opened[0].show, 5);
}

INT_PTR g_shell_answer = 0;
HINSTANCE WINAPI open_nothing(HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT) {
    return reinterpret_cast<HINSTANCE>(g_shell_answer);
}

TEST_F(MainDialog, LinkThatCannotBeOpenedIsLogged) {
    const PatchedImport patch("shell32.dll", "ShellExecuteW", reinterpret_cast<void*>(&open_nothing));
    ASSERT_TRUE(patch.installed());
    open();
    // Results up to 32 are errors.
    for (const int error : {3, 32}) {
        new_log_lines();
        g_shell_answer = error;
        EXPECT_EQ(follow_link(L"C:\\Guide\\index.html"), 1);
        EXPECT_EQ(new_log_lines(),
                  std::vector<std::string>({"[ERROR] The help could not be opened. Error " +
                                            std::to_string(error) + ": C:\\Guide\\index.html"}));
    }
}

std::wstring link_target(HWND dialog) {
    LITEM item = {};
    item.mask = LIF_ITEMINDEX | LIF_URL;
    ::SendDlgItemMessageW(dialog, IDC_MAIN_LINK, LM_GETITEM, 0, reinterpret_cast<LPARAM>(&item));
    return item.szUrl;
}

TEST_F(MainDialog, TheLinkLeadsToTheInstalledGuideInTheDialogsLanguage) {
    open();
    const std::wstring language = Text(IDS_LANGUAGE_SWITCH) == L"0" ? L"en" : L"zh";
    const std::wstring expected = tarvo::CommonAppDataFolder() +
                                  L"\\Autodesk\\ApplicationPlugins\\TarvoRendering\\Guide\\" + language +
                                  L"\\index.html";
    EXPECT_EQ(link_target(dialog), expected);
    command(IDC_MAIN_ANALYSE);
    EXPECT_EQ(link_target(dialog), expected);
}

TEST_F(MainDialog, AbsoluteLinkIsNotChanged) {
    open();
    LITEM item = {};
    item.mask = LIF_ITEMINDEX | LIF_URL;
    const std::wstring address = L"https://farm.example/help";
    address.copy(item.szUrl, address.size());
    ::SendDlgItemMessageW(dialog, IDC_MAIN_LINK, LM_SETITEM, 0, reinterpret_cast<LPARAM>(&item));
    tarvo::SetHelpLinkTarget(dialog, IDC_MAIN_LINK);
    EXPECT_EQ(link_target(dialog), address);
}

TEST_F(MainDialog, ExceptionInTheProcedureIsCaughtAndLogged) {
    open();
    remove_ini(); // the logger of the error line reads the folder's name from it
    boxes.on_show = [](const TestBox&) { throw std::runtime_error("in a box"); };
    EXPECT_EQ(command(IDC_MAIN_BLOCKS_64), 0);
    EXPECT_EQ(new_log_lines(),
              std::vector<std::string>({"[ERROR] An exception was stopped in MainDialogProc: in a box"}));
    boxes.on_show = [](const TestBox&) { throw 7; };
    EXPECT_EQ(command(IDC_MAIN_BLOCKS_64), 0);
    EXPECT_EQ(new_log_lines().size(), 1u);
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
