#include "dialog/dialogs.h"
#include "tests/support/camera_edit_fixture.h"

#include <stdexcept>

namespace {

using namespace support;
using tarvo::CameraEditDialogProc;
using tarvo::Text;

using Lines = std::vector<std::string>;

TEST_F(CameraEdit, ShowsTheFirstPickedCamera) {
    scene.cameras()[L"Other"].image_width = 9;
    pick(L"Other");
    scene.cameras()[L"Cam"].is_spherical = true;
    open();
    EXPECT_EQ(field(dialog, IDC_EDIT_WIDTH), L"1500");
    EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"1000");
    EXPECT_EQ(field(dialog, IDC_EDIT_RATIO), L"1.500");
    EXPECT_EQ(field(dialog, IDC_EDIT_START_FRAME), L"7");
    EXPECT_EQ(field(dialog, IDC_EDIT_NAME), L"Render");
    EXPECT_EQ(field(dialog, IDC_EDIT_FORMAT), Text(IDS_FORMAT_PNG));
    EXPECT_EQ(field(dialog, IDC_EDIT_SPHERICAL), Text(IDS_YES));
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(CameraEdit, TheRatioStartsLocked) {
    open();
    EXPECT_TRUE(lock_is_checked());
    EXPECT_EQ(test_host().spinners_set_up, 1);
    EXPECT_EQ(test_host().spinners_held, 0);
    EXPECT_FALSE(spinner().enabled);
    EXPECT_EQ(spinner().minimum, 0.001f);
    EXPECT_EQ(spinner().maximum, 2048.0f);
    EXPECT_EQ(spinner().step, 0.001f);
    EXPECT_EQ(spinner().value, 1.5f);
    EXPECT_EQ(spinner().edit, ::GetDlgItem(dialog, IDC_EDIT_RATIO));
}

TEST_F(CameraEdit, HeightZeroCreatesNoRatioSpinner) {
    scene.cameras()[L"Cam"].image_height = 0;
    open();
    EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"0");
    EXPECT_EQ(test_host().spinners_set_up, 0);
    EXPECT_FALSE(lock_is_checked());
    EXPECT_EQ(field(dialog, IDC_EDIT_START_FRAME), L"7");
}

TEST_F(CameraEdit, OffersThirteenFormatsInTheirOrder) {
    open();
    const unsigned expected[] = {9, 8, 10, 29, 20, 21, 22, 23, 24, 25, 26, 27, 28};
    ASSERT_EQ(::SendDlgItemMessageW(dialog, IDC_EDIT_FORMAT, CB_GETCOUNT, 0, 0), 13);
    for (WPARAM index = 0; index < 13; ++index) {
        EXPECT_FALSE(Text(expected[index]).empty());
        EXPECT_EQ(combo_entry(IDC_EDIT_FORMAT, index), Text(expected[index]));
    }
    ASSERT_EQ(::SendDlgItemMessageW(dialog, IDC_EDIT_SPHERICAL, CB_GETCOUNT, 0, 0), 2);
    EXPECT_EQ(combo_entry(IDC_EDIT_SPHERICAL, 0), Text(IDS_NO));
    EXPECT_EQ(combo_entry(IDC_EDIT_SPHERICAL, 1), Text(IDS_YES));
    EXPECT_EQ(combo_choice(IDC_EDIT_SPHERICAL), 0);
}

TEST_F(CameraEdit, UnknownFormatSelectsTheFirstEntry) {
    scene.cameras()[L"Cam"].image_format = L"PN";
    open();
    EXPECT_EQ(combo_choice(IDC_EDIT_FORMAT), 0);
}

TEST_F(CameraEdit, AMissingCameraIsAddedWithItsDefaults) {
    ui.clear_selected_cameras();
    pick(L"New");
    open();
    EXPECT_EQ(scene.cameras().count(L"New"), 1u);
    EXPECT_EQ(field(dialog, IDC_EDIT_WIDTH), L"0");
    EXPECT_EQ(field(dialog, IDC_EDIT_START_FRAME), L"1");
    EXPECT_EQ(combo_choice(IDC_EDIT_FORMAT), 0);
}

TEST_F(CameraEdit, WithoutAHostSpinnerTheOtherFieldsStillWork) {
    test_host().has_spinners = false;
    open();
    type(dialog, IDC_EDIT_WIDTH, L"40");
    type(dialog, IDC_EDIT_HEIGHT, L"-1");
    click_lock();
    EXPECT_EQ(field(dialog, IDC_EDIT_WIDTH), L"40");
    EXPECT_EQ(field(dialog, IDC_EDIT_HEIGHT), L"32768");
    EXPECT_EQ(field(dialog, IDC_EDIT_NAME), L"Render");
}

TEST_F(CameraEdit, ATooLongNameIsReportedAndKept) {
    open();
    type(dialog, IDC_EDIT_NAME, std::wstring(100, L'n'));
    EXPECT_TRUE(boxes.shown.empty());
    const std::wstring longer = std::wstring(100, L'n') + L":";
    type(dialog, IDC_EDIT_NAME, longer);
    ASSERT_EQ(boxes.shown.size(), 1u);
    expect_box(0, dialog, IDS_NAME_TOO_LONG, IDS_NAME_CAPTION, MB_OK);
    EXPECT_EQ(field(dialog, IDC_EDIT_NAME), longer);
    const char* line = "[WARN] You are setting camera name that its length longer than 100!";
    EXPECT_EQ(new_log_lines(), Lines({line}));
    type(dialog, IDC_EDIT_NAME, longer + L"n");
    ASSERT_EQ(boxes.shown.size(), 2u); // one for each change
    expect_box(1, dialog, IDS_NAME_TOO_LONG, IDS_NAME_CAPTION, MB_OK);
    EXPECT_EQ(field(dialog, IDC_EDIT_NAME), longer + L"n");
    EXPECT_EQ(new_log_lines(), Lines({line}));
}

TEST_F(CameraEdit, ForbiddenCharactersAreRemovedAtOnce) {
    open();
    type(dialog, IDC_EDIT_NAME, L"a\\/:*?\"<>|b c:");
    EXPECT_EQ(field(dialog, IDC_EDIT_NAME), L"ab c");
    ASSERT_EQ(boxes.shown.size(), 1u);
    expect_box(0, dialog, IDS_NAME_CHARACTERS_REMOVED, IDS_NAME_CAPTION, MB_OK);
    EXPECT_EQ(caret(), 4u);
    EXPECT_EQ(new_log_lines(), Lines({"[WARN] You are setting camera name that contain invalid characters.",
                                      "[INFO] Remove invalid characters successfully."}));
}

TEST_F(CameraEdit, ValidNameIsNotChanged) {
    open();
    type(dialog, IDC_EDIT_NAME, L" my. name ");
    EXPECT_EQ(field(dialog, IDC_EDIT_NAME), L" my. name ");
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(new_log_lines(), Lines());
}

TEST_F(CameraEdit, NameIsCheckedOnlyOnEnChange) {
    open();
    ::SendDlgItemMessageW(dialog, IDC_EDIT_NAME, EM_LIMITTEXT, 0, 0);
    ui.CheckCameraNameField(dialog, IDC_EDIT_NAME, L"R"); // "Render"
    EXPECT_EQ(field(dialog, IDC_EDIT_NAME), L"ender");
    boxes.shown.clear();
    for (const int notification : {EN_UPDATE, EN_SETFOCUS, EN_KILLFOCUS}) {
        EXPECT_EQ(command(IDC_EDIT_NAME, notification), 0);
    }
    EXPECT_EQ(command(IDC_EDIT_NAME, EN_CHANGE), 1);
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(CameraEdit, ConfirmingWritesEveryFieldIntoEveryPickedCamera) {
    scene.cameras()[L"Other"].start_frame = 3;
    pick(L"Other");
    pick(L"New");
    open();
    click_lock();
    type(dialog, IDC_EDIT_WIDTH, L"640");
    type(dialog, IDC_EDIT_HEIGHT, L"480");
    type(dialog, IDC_EDIT_START_FRAME, L"12");
    type(dialog, IDC_EDIT_NAME, L"all of them");
    ::SendDlgItemMessageW(dialog, IDC_EDIT_FORMAT, CB_SETCURSEL, 5, 0);
    ::SendDlgItemMessageW(dialog, IDC_EDIT_SPHERICAL, CB_SETCURSEL, 1, 0);
    EXPECT_EQ(command(IDC_EDIT_CONFIRM), 1);
    ASSERT_EQ(scene.cameras().size(), 3u);
    for (const auto& entry : scene.cameras()) {
        EXPECT_EQ(entry.second.image_width, 640);
        EXPECT_EQ(entry.second.image_height, 480);
        EXPECT_EQ(entry.second.start_frame, 12);
        EXPECT_EQ(entry.second.image_format, Text(IDS_FORMAT_EXR));
        EXPECT_EQ(entry.second.img_output_name, L"all of them");
        EXPECT_TRUE(entry.second.is_spherical);
        EXPECT_FALSE(entry.second.checked);
    }
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(refills(), 1);
    EXPECT_TRUE(has_ended(dialog));
}

TEST_F(CameraEdit, ConfirmingTextsThatAreNoNumbersGivesZero) {
    open();
    click_lock();
    type(dialog, IDC_EDIT_WIDTH, L"wide");
    type(dialog, IDC_EDIT_HEIGHT, L"");
    type(dialog, IDC_EDIT_START_FRAME, L"first");
    command(IDC_EDIT_CONFIRM);
    EXPECT_EQ(scene.cameras()[L"Cam"].image_width, 0);
    EXPECT_EQ(scene.cameras()[L"Cam"].image_height, 0);
    EXPECT_EQ(scene.cameras()[L"Cam"].start_frame, 0);
}

// Width, height, format and name are written before the frame is checked.
TEST_F(CameraEdit, NegativeStartFrameStillWritesSizeFormatAndNameOfTheFirstCamera) {
    scene.cameras()[L"Other"] = scene.cameras()[L"Cam"];
    pick(L"Other");
    open();
    click_lock();
    type(dialog, IDC_EDIT_WIDTH, L"300");
    type(dialog, IDC_EDIT_HEIGHT, L"200");
    type(dialog, IDC_EDIT_START_FRAME, L"-1");
    type(dialog, IDC_EDIT_NAME, L"taken");
    ::SendDlgItemMessageW(dialog, IDC_EDIT_FORMAT, CB_SETCURSEL, 5, 0);
    EXPECT_EQ(command(IDC_EDIT_CONFIRM), 1);
    const tarvo::CameraRecord& first = scene.cameras()[L"Cam"];
    EXPECT_EQ(first.image_width, 300);
    EXPECT_EQ(first.image_height, 200);
    EXPECT_EQ(first.image_format, Text(IDS_FORMAT_EXR));
    EXPECT_EQ(first.img_output_name, L"taken");
    const tarvo::CameraRecord& second = scene.cameras()[L"Other"];
    EXPECT_EQ(second.image_width, 1500);
    EXPECT_EQ(second.image_height, 1000);
    EXPECT_EQ(second.image_format, L"PNG");
    EXPECT_EQ(second.img_output_name, L"Render");
}

TEST_F(CameraEdit, NegativeStartFrameStopsTheUpdateAndClosesTheDialog) {
    scene.cameras()[L"Other"].image_width = 9;
    pick(L"Other");
    open();
    type(dialog, IDC_EDIT_WIDTH, L"300");
    type(dialog, IDC_EDIT_START_FRAME, L"-1");
    ::SendDlgItemMessageW(dialog, IDC_EDIT_SPHERICAL, CB_SETCURSEL, 1, 0);
    EXPECT_EQ(command(IDC_EDIT_CONFIRM), 1);
    EXPECT_EQ(scene.cameras()[L"Cam"].image_width, 300);
    EXPECT_EQ(scene.cameras()[L"Cam"].start_frame, 7);
    EXPECT_FALSE(scene.cameras()[L"Cam"].is_spherical);
    EXPECT_EQ(scene.cameras()[L"Other"].image_width, 9);
    ASSERT_EQ(boxes.shown.size(), 1u);
    expect_box(0, dialog, IDS_FRAME_TO_RENDER_NEGATIVE, IDS_CAPTION, MB_OK);
    EXPECT_EQ(refills(), 1);
    EXPECT_TRUE(has_ended(dialog));
}

TEST_F(CameraEdit, BlanksAroundTheNameAreTrimmedOnConfirming) {
    for (const wchar_t* name : {L"  cam 01", L"cam 01 ", L"   cam 01  "}) {
        boxes.shown.clear();
        open();
        type(dialog, IDC_EDIT_NAME, name);
        EXPECT_EQ(command(IDC_EDIT_CONFIRM), 1);
        ASSERT_EQ(boxes.shown.size(), 1u);
        expect_box(0, dialog, IDS_NAME_BLANKS_TRIMMED, IDS_NAME_CAPTION, MB_OK);
        EXPECT_EQ(field(dialog, IDC_EDIT_NAME), L"cam 01");
        EXPECT_EQ(caret(), 6u);
        EXPECT_EQ(scene.cameras()[L"Cam"].img_output_name, L"cam 01");
        EXPECT_TRUE(has_ended(dialog));
    }
}

TEST_F(CameraEdit, ANameOfBlanksKeepsTheDialogOpen) {
    open();
    type(dialog, IDC_EDIT_NAME, L"   ");
    EXPECT_EQ(command(IDC_EDIT_CONFIRM), 1);
    ASSERT_EQ(boxes.shown.size(), 2u);
    expect_box(0, dialog, IDS_NAME_BLANKS_TRIMMED, IDS_NAME_CAPTION, MB_OK);
    expect_box(1, dialog, IDS_NAME_EMPTY, IDS_NAME_CAPTION, MB_OK);
    EXPECT_EQ(field(dialog, IDC_EDIT_NAME), L"");
    EXPECT_EQ(::GetFocus(), ::GetDlgItem(dialog, IDC_EDIT_NAME));
    EXPECT_EQ(scene.cameras()[L"Cam"].img_output_name, L"Render");
    EXPECT_EQ(refills(), 0);
    EXPECT_FALSE(has_ended(dialog));
}

TEST_F(CameraEdit, EmptyNameThrowsOutOfRangeFromTheProcedure) {
    open();
    type(dialog, IDC_EDIT_NAME, L"");
    try {
        command(IDC_EDIT_CONFIRM);
        FAIL() << "nothing was thrown";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "invalid string position");
    }
    EXPECT_EQ(new_log_lines(), Lines());
    EXPECT_FALSE(has_ended(dialog));
}

TEST_F(CameraEdit, OtherExceptionsAreCaughtAndLogged) {
    open();
    boxes.on_show = [](const TestBox&) { throw std::out_of_range("another one"); };
    EXPECT_EQ(CameraEditDialogProc(dialog, WM_COMMAND, MAKEWPARAM(IDC_EDIT_NAME, EN_CHANGE), 0), 1);
    ::SendDlgItemMessageW(dialog, IDC_EDIT_NAME, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"a:b"));
    EXPECT_EQ(command(IDC_EDIT_NAME, EN_CHANGE), 0);
    const Lines lines = new_log_lines();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "[ERROR] An exception was stopped in CameraEditDialogProc: another one");
}

TEST_F(CameraEdit, ReturnsOneForHandledMessagesAndZeroForOthers) {
    open();
    EXPECT_EQ(CameraEditDialogProc(dialog, WM_DESTROY, 0, 0), 1);
    EXPECT_EQ(CameraEditDialogProc(dialog, WM_MOUSEMOVE, 0, 0), 0);
    EXPECT_EQ(CameraEditDialogProc(dialog, WM_NOTIFY, IDC_EDIT_WIDTH, 0), 0);
    for (const int control :
         {IDOK, IDCANCEL, 1013, IDC_EDIT_START_FRAME, IDC_EDIT_FORMAT, IDC_EDIT_SPHERICAL, 1043}) {
        EXPECT_EQ(command(control), 0) << control;
    }
    EXPECT_FALSE(has_ended(dialog));
    EXPECT_EQ(CameraEditDialogProc(dialog, WM_CLOSE, 0, 0), 1);
    EXPECT_TRUE(has_ended(dialog));
    EXPECT_EQ(refills(), 0);
}

TEST_F(CameraEdit, IsModalAndReturnsWhetherItWasConfirmed) {
    {
        const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
        EXPECT_EQ(tarvo::OpenCameraEditDialog(nullptr, 0), 0);
        EXPECT_TRUE(driver.has_acted());
    }
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND shown) {
        type(shown, IDC_EDIT_NAME, L"confirmed");
        ::SendDlgItemMessageW(shown, IDC_EDIT_CONFIRM, BM_CLICK, 0, 0);
    });
    EXPECT_EQ(tarvo::OpenCameraEditDialog(nullptr, 0), 1);
    EXPECT_EQ(scene.cameras()[L"Cam"].img_output_name, L"confirmed");
}

} // namespace
