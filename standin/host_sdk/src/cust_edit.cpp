#include "controls.h"

#include <memory>

namespace host_sdk {

namespace {

constexpr int kTextLimit = 260;

// The outer window is the dialog's control; the inner one gets the keys.
struct Field {
    HWND inner;
    WNDPROC inner_procedure;
    std::wstring confirmed;
};

Field* field_data(HWND window) {
    return reinterpret_cast<Field*>(::GetWindowLongPtrW(window, 0));
}

void confirm(HWND window, Field& field) {
    const std::wstring text = text_of(field.inner);
    if (text != field.confirmed) {
        field.confirmed = text;
        ::SendMessageW(::GetParent(window), WM_COMMAND, MAKEWPARAM(::GetDlgCtrlID(window), EN_CHANGE),
                       reinterpret_cast<LPARAM>(window));
    }
}

bool is_enter_key(LPARAM l_param) {
    const MSG* message = reinterpret_cast<const MSG*>(l_param);
    return message != nullptr && message->wParam == VK_RETURN;
}

LRESULT CALLBACK inner_procedure(HWND inner, UINT message, WPARAM w_param, LPARAM l_param) {
    const HWND window = ::GetParent(inner);
    Field& field = *field_data(window);
    const auto original = [&] {
        return ::CallWindowProcW(field.inner_procedure, inner, message, w_param, l_param);
    };
    if (message == WM_GETDLGCODE && is_enter_key(l_param)) {
        return original() | DLGC_WANTMESSAGE;
    }
    if (message == WM_KEYDOWN && w_param == VK_RETURN) {
        confirm(window, field);
        return 0;
    }
    return message == WM_CHAR && w_param == VK_RETURN ? 0 : original();
}

// The window owns it, which the analyzer cannot see; WM_NCDESTROY deletes it.
// NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks)
void make_field(HWND window) {
    std::unique_ptr<Field> field(new Field());
    field->inner = ::CreateWindowExW(WS_EX_CLIENTEDGE, L"EDIT", L"", WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL,
                                     0, 0, 0, 0, window, nullptr, nullptr, nullptr);
    field->inner_procedure = reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(field->inner, GWLP_WNDPROC));
    const HWND inner = field->inner;
    ::SetWindowLongPtrW(window, 0, reinterpret_cast<LONG_PTR>(field.release()));
    ::SetWindowLongPtrW(inner, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&inner_procedure));
}
// NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)

// Text that a program sets counts at once.
LRESULT set_text(HWND window, Field& field, LPARAM l_param) {
    const LRESULT result = ::SendMessageW(field.inner, WM_SETTEXT, 0, l_param);
    confirm(window, field);
    return result;
}

bool is_forwarded(UINT message) {
    return message == WM_GETTEXT || message == WM_GETTEXTLENGTH || message == WM_SETFONT ||
           message == WM_GETFONT || message == WM_GETDLGCODE ||
           (message >= EM_GETSEL && message <= EM_GETIMESTATUS);
}

LRESULT field_procedure(HWND window, Field& field, UINT message, WPARAM w_param, LPARAM l_param) {
    switch (message) {
    case WM_SETTEXT:
        return set_text(window, field, l_param);
    case WM_SETFOCUS:
        ::SetFocus(field.inner);
        return 0;
    case WM_ENABLE:
        ::EnableWindow(field.inner, w_param != FALSE);
        return 0;
    case WM_SIZE:
        ::MoveWindow(field.inner, 0, 0, LOWORD(l_param), HIWORD(l_param), TRUE);
        return 0;
    case WM_COMMAND:
        if (HIWORD(w_param) == EN_KILLFOCUS) {
            confirm(window, field);
        }
        return 0;
    default:
        return is_forwarded(message) ? ::SendMessageW(field.inner, message, w_param, l_param)
                                     : ::DefWindowProcW(window, message, w_param, l_param);
    }
}

LRESULT CALLBACK outer_procedure(HWND window, UINT message, WPARAM w_param, LPARAM l_param) {
    Field* field = field_data(window);
    if (message == WM_CREATE) {
        make_field(window);
        return 0;
    }
    if (field == nullptr) {
        return ::DefWindowProcW(window, message, w_param, l_param);
    }
    if (message == WM_NCDESTROY) {
        ::SetWindowLongPtrW(window, 0, 0);
        delete field;
        return 0;
    }
    return field_procedure(window, *field, message, w_param, l_param);
}

} // namespace

std::wstring text_of(HWND window) {
    wchar_t text[kTextLimit] = {};
    ::GetWindowTextW(window, text, kTextLimit);
    return text;
}

// CS_GLOBALCLASS: other modules have the dialogs that name the class.
void register_cust_edit(HINSTANCE module) {
    WNDCLASSEXW description = {};
    description.cbSize = sizeof(description);
    description.style = CS_GLOBALCLASS;
    description.lpfnWndProc = outer_procedure;
    description.cbWndExtra = sizeof(LONG_PTR);
    description.hInstance = module;
    description.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)); // the arrow
    description.lpszClassName = CUSTEDITWINDOWCLASS;
    ::RegisterClassExW(&description);
}

void unregister_cust_edit(HINSTANCE module) {
    ::UnregisterClassW(CUSTEDITWINDOWCLASS, module);
}

std::wstring confirmed_text(HWND field) {
    wchar_t name[64] = {};
    ::GetClassNameW(field, name, 64);
    const bool is_field = std::wstring(name) == CUSTEDITWINDOWCLASS && field_data(field) != nullptr;
    return is_field ? field_data(field)->confirmed : text_of(field);
}

} // namespace host_sdk
