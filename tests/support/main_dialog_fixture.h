// The main dialog with its own procedure, over the cameras "Cam A", "Cam B" and "Cam C", and what a user does
// with it.
#pragma once

#include "dialog/dialogs.h"
#include "tests/support/dialog_fixture.h"

namespace support {

class MainDialog : public DialogTest {
protected:
    // The dialog over "Cam A", "Cam B" and "Cam C".
    void open(const Analysis& analysis = Analysis()) {
        let_it_open(analysis);
        dialog = show(IDD_MAIN, tarvo::MainDialogProc);
        list = ::GetDlgItem(dialog, IDC_MAIN_CAMERAS);
        new_log_lines();
    }

    INT_PTR send(UINT message, WPARAM w_param = 0, LPARAM l_param = 0) const {
        return tarvo::MainDialogProc(dialog, message, w_param, l_param);
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

} // namespace support
