// The camera edit dialog gets the same parameter as the main dialog, and no dialog stores it in its window.
#include "dialog/dialogs.h"
#include "tests/support/main_dialog_fixture.h"
#include "tests/support/patched_import.h"

namespace {

using namespace support;

int g_calls = 0;
LPCWSTR g_template = nullptr;
HWND g_owner = nullptr;
LPARAM g_parameter = 0;

INT_PTR WINAPI note_dialog_box(HINSTANCE, LPCWSTR name, HWND owner, DLGPROC, LPARAM parameter) {
    ++g_calls;
    g_template = name;
    g_owner = owner;
    g_parameter = parameter;
    return 0;
}

class DialogParameter : public MainDialog {};

TEST_F(DialogParameter, EditDialogReceivesTheConfigManager) {
    open();
    select(1);
    const PatchedImport patch("user32.dll", "DialogBoxParamW", reinterpret_cast<void*>(&note_dialog_box));
    ASSERT_TRUE(patch.installed());
    g_calls = 0;
    EXPECT_EQ(command(IDC_MAIN_EDIT_CAMERAS), 1);
    EXPECT_EQ(g_calls, 1);
    EXPECT_EQ(g_template, MAKEINTRESOURCEW(IDD_CAMERA_EDIT));
    EXPECT_EQ(g_owner, dialog);
    EXPECT_EQ(g_parameter, reinterpret_cast<LPARAM>(&tarvo::TarvoRenderingConfigMgr::instance()));
}

TEST_F(DialogParameter, ParameterIsNotStoredInTheWindow) {
    let_it_open();
    dialog = ::CreateDialogParamW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_MAIN), nullptr,
                                  tarvo::MainDialogProc, 4711);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(::GetWindowLongPtrW(dialog, DWLP_USER), 0);
    ::DestroyWindow(dialog);
}

} // namespace
