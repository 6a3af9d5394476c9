// A dialog with a field (id 1), a spinner control (id 2) and a CustEdit (id 3), built from a template in
// memory. It records the spinner's messages.
#pragma once

#include <windows.h>

#include <vector>

struct SpinnerMessage {
    UINT message;
    int id;
    bool held;
    LPARAM control;
};

class SpinnerDialog {
public:
    SpinnerDialog();
    ~SpinnerDialog() { ::DestroyWindow(window); }
    SpinnerDialog(const SpinnerDialog&) = delete;
    SpinnerDialog& operator=(const SpinnerDialog&) = delete;

    HWND field() const { return ::GetDlgItem(window, 1); }
    HWND spinner() const { return ::GetDlgItem(window, 2); }

    std::wstring text() const {
        wchar_t content[64] = {};
        ::GetWindowTextW(field(), content, 64);
        return content;
    }

    void click(bool upper) {
        RECT area = {};
        ::GetClientRect(spinner(), &area);
        const LPARAM place = MAKELPARAM(2, upper ? 1 : area.bottom - 1);
        ::SendMessageW(spinner(), WM_LBUTTONDOWN, MK_LBUTTON, place);
        ::SendMessageW(spinner(), WM_LBUTTONUP, 0, place);
    }

    HWND window = nullptr;
    std::vector<SpinnerMessage> heard;
    int field_changes = 0;
};

inline INT_PTR CALLBACK SpinnerDialogProc(HWND window, UINT message, WPARAM w_param, LPARAM l_param) {
    if (message == WM_INITDIALOG) {
        ::SetWindowLongPtrW(window, DWLP_USER, l_param);
        return TRUE;
    }
    SpinnerDialog* dialog = reinterpret_cast<SpinnerDialog*>(::GetWindowLongPtrW(window, DWLP_USER));
    if (dialog == nullptr) {
        return FALSE;
    }
    if (message >= WM_USER + 600 && message <= WM_USER + 602) {
        dialog->heard.push_back({message, LOWORD(w_param), HIWORD(w_param) != 0, l_param});
    }
    if (message == WM_COMMAND && LOWORD(w_param) == 1 && HIWORD(w_param) == EN_CHANGE) {
        ++dialog->field_changes;
    }
    return FALSE;
}

inline HWND AddControl(HWND dialog, const wchar_t* kind, int id) {
    return ::CreateWindowExW(0, kind, L"", WS_CHILD | WS_VISIBLE, 10 + 40 * id, 10, 30, 20, dialog,
                             reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ::GetModuleHandleW(nullptr),
                             nullptr);
}

inline SpinnerDialog::SpinnerDialog() {
    struct {
        DLGTEMPLATE head;
        WORD menu_class_title[3];
    } description = {};
    description.head.style = WS_POPUP | DS_MODALFRAME;
    description.head.cx = 150;
    description.head.cy = 60;
    window = ::CreateDialogIndirectParamW(::GetModuleHandleW(nullptr), &description.head, nullptr,
                                          SpinnerDialogProc, reinterpret_cast<LPARAM>(this));
    AddControl(window, L"EDIT", 1);
    AddControl(window, L"SpinnerControl", 2);
    AddControl(window, L"CustEdit", 3);
}
