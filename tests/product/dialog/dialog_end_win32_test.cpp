// The results that the dialogs pass to EndDialog.
#include "dialog/dialogs.h"
#include "tests/support/main_dialog_fixture.h"
#include "tests/support/patched_import.h"

namespace {

using namespace support;

std::vector<INT_PTR> g_results;
BOOL WINAPI note_end(HWND, INT_PTR result) {
    g_results.push_back(result);
    return TRUE;
}

class DialogEnd : public MainDialog {
protected:
    DialogEnd() {
        open();
        g_results.clear();
    }

    const PatchedImport patch_{"user32.dll", "EndDialog", reinterpret_cast<void*>(&note_end)};
};

TEST_F(DialogEnd, ClosingAndCancellingGiveZero) {
    ASSERT_TRUE(patch_.installed());
    send(WM_CLOSE);
    command(IDCANCEL);
    EXPECT_EQ(g_results, (std::vector<INT_PTR>{0, 0}));
}

TEST_F(DialogEnd, RefusedOpeningGivesZero) {
    test_host().script_result = false;
    command(IDC_MAIN_ANALYSE);
    remove_ini();
    command(IDC_MAIN_ANALYSE);
    EXPECT_EQ(g_results, (std::vector<INT_PTR>{0, 0}));
}

TEST_F(DialogEnd, ClosingTheCameraEditDialogGivesZero) {
    std::wstring name = L"Cam A";
    ui.add_selected_camera(name);
    HWND edit = show(IDD_CAMERA_EDIT, tarvo::CameraEditDialogProc, dialog);
    tarvo::CameraEditDialogProc(edit, WM_CLOSE, 0, 0);
    EXPECT_EQ(g_results, std::vector<INT_PTR>{0});
}

TEST_F(DialogEnd, ConfirmingACameraEditGivesOne) {
    std::wstring name = L"Cam A";
    ui.add_selected_camera(name);
    HWND edit = show(IDD_CAMERA_EDIT, tarvo::CameraEditDialogProc, dialog);
    tarvo::CameraEditDialogProc(edit, WM_COMMAND, IDC_EDIT_CONFIRM, 0);
    EXPECT_EQ(g_results, std::vector<INT_PTR>{1});
}

} // namespace
