// The camera edit dialog over one picked camera: "Cam", 1500 x 1000, frame 7, PNG, rendered as "Render".
#pragma once

#include "dialog/dialogs.h"
#include "tests/support/dialog_fixture.h"

namespace support {

// How often the owner was told to fill its camera table again.
inline int& refills() {
    static int count = 0;
    return count;
}

inline INT_PTR CALLBACK OwnerProc(HWND, UINT message, WPARAM w_param, LPARAM l_param) {
    refills() += message == tarvo::kRefillCameraTable && w_param == 0 && l_param == 0 ? 1 : 0;
    return FALSE;
}

class CameraEdit : public DialogTest {
protected:
    CameraEdit() {
        refills() = 0;
        tarvo::CameraRecord& camera = scene.cameras()[L"Cam"];
        camera.image_width = 1500;
        camera.image_height = 1000;
        camera.start_frame = 7;
        camera.image_format = L"PNG";
        camera.img_output_name = L"Render";
        pick(L"Cam");
    }

    void pick(std::wstring key) { ui.add_selected_camera(key); }

    void open() {
        owner = show(IDD_MAIN, OwnerProc);
        dialog = show(IDD_CAMERA_EDIT, tarvo::CameraEditDialogProc, owner);
        new_log_lines();
    }

    INT_PTR command(int control, int notification = 0) const {
        return tarvo::CameraEditDialogProc(dialog, WM_COMMAND, MAKEWPARAM(control, notification), 0);
    }

    TestSpinnerState& spinner() const {
        return test_host().spinners[::GetDlgItem(dialog, IDC_EDIT_RATIO_SPIN)];
    }

    bool lock_is_checked() const { return ::IsDlgButtonChecked(dialog, IDC_EDIT_RATIO_LOCK) == BST_CHECKED; }

    // As the user does it: the control changes its mark and tells the dialog.
    void click_lock() const { ::SendDlgItemMessageW(dialog, IDC_EDIT_RATIO_LOCK, BM_CLICK, 0, 0); }

    std::wstring combo_entry(int id, WPARAM index) const {
        wchar_t text[64] = {};
        ::SendDlgItemMessageW(dialog, id, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(text));
        return text;
    }

    LRESULT combo_choice(int id) const { return ::SendDlgItemMessageW(dialog, id, CB_GETCURSEL, 0, 0); }

    DWORD caret() const {
        DWORD start = 0;
        DWORD end = 0;
        ::SendDlgItemMessageW(dialog, IDC_EDIT_NAME, EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                              reinterpret_cast<LPARAM>(&end));
        EXPECT_EQ(start, end);
        return start;
    }

    HWND owner = nullptr;
    HWND dialog = nullptr;
};

} // namespace support
