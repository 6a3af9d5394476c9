#include "standin/stage/dialog_state.h"
#include "standin/stage/dialog_watch.h"

#include <commctrl.h>

namespace stage {

namespace {

constexpr UINT_PTR kSubclass = 1;
// With an arrow key Wine's dialog manager sets the focus and then sends BM_CLICK with this value. Here the
// focus has already clicked.
constexpr WPARAM kWineArrowKey = 1;

HWND g_clicked = nullptr;  // the button whose own click is under way
HWND g_focusing = nullptr; // the button whose own handling of the focus is under way

// Sets a variable for its own lifetime.
class Meanwhile {
public:
    Meanwhile(HWND& variable, HWND value) : variable_(variable), before_(variable) { variable_ = value; }
    ~Meanwhile() { variable_ = before_; }
    Meanwhile(const Meanwhile&) = delete;
    Meanwhile& operator=(const Meanwhile&) = delete;

private:
    HWND& variable_;
    HWND before_;
};

bool is_automatic_radio_button(HWND control) {
    return ::lstrcmpiW(class_name(control).c_str(), WC_BUTTONW) == 0 &&
           (::GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK) == BS_AUTORADIOBUTTON;
}

void select_in_its_group(HWND button) {
    const HWND dialog = ::GetParent(button);
    for (HWND other = ::GetNextDlgGroupItem(dialog, button, FALSE); other != nullptr && other != button;
         other = ::GetNextDlgGroupItem(dialog, other, FALSE)) {
        if (is_automatic_radio_button(other)) {
            ::SendMessageW(other, BM_SETCHECK, BST_UNCHECKED, 0);
        }
    }
    ::SendMessageW(button, BM_SETCHECK, BST_CHECKED, 0);
}

LRESULT take_focus(HWND button, WPARAM w_param, LPARAM l_param) {
    LRESULT result = 0;
    {
        const Meanwhile focusing(g_focusing, button);
        result = ::DefSubclassProc(button, WM_SETFOCUS, w_param, l_param);
    }
    if (g_clicked != button) {
        select_in_its_group(button);
        ::SendMessageW(::GetParent(button), WM_COMMAND, MAKEWPARAM(::GetDlgCtrlID(button), BN_CLICKED),
                       reinterpret_cast<LPARAM>(button));
    }
    return result;
}

LRESULT CALLBACK radio_procedure(HWND button, UINT message, WPARAM w_param, LPARAM l_param, UINT_PTR,
                                 DWORD_PTR) {
    switch (message) {
    case WM_SETFOCUS:
        return take_focus(button, w_param, l_param);
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case BM_CLICK: {
        if (message == BM_CLICK && w_param == kWineArrowKey) {
            return 0;
        }
        const Meanwhile clicked(g_clicked, button);
        return ::DefSubclassProc(button, message, w_param, l_param);
    }
    default:
        return ::DefSubclassProc(button, message, w_param, l_param);
    }
}

} // namespace

void play_windows_radio_buttons(HWND dialog) {
    for (HWND control = ::GetWindow(dialog, GW_CHILD); control != nullptr;
         control = ::GetWindow(control, GW_HWNDNEXT)) {
        if (is_automatic_radio_button(control)) {
            ::SetWindowSubclass(control, radio_procedure, kSubclass, 0);
        }
    }
}

bool is_replaced_radio_click(WPARAM w_param, LPARAM l_param) {
    return g_focusing != nullptr && HIWORD(w_param) == BN_CLICKED &&
           reinterpret_cast<HWND>(l_param) == g_focusing;
}

} // namespace stage
