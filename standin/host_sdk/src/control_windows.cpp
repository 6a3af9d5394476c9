// The window classes that dialog templates name. The host has them before any plug-in is loaded, so they live
// as long as this library.
#include "controls.h"

namespace host_sdk {

namespace {

Spinner* spinner_data(HWND window) {
    return reinterpret_cast<Spinner*>(::GetWindowLongPtrW(window, 0));
}

RECT half(HWND window, bool upper) {
    RECT area = {};
    ::GetClientRect(window, &area);
    const LONG middle = (area.top + area.bottom) / 2;
    (upper ? area.bottom : area.top) = middle;
    return area;
}

void paint_arrow(HWND window, HDC target, bool upper) {
    RECT area = half(window, upper);
    const Spinner* spinner = spinner_data(window);
    UINT look = upper ? DFCS_SCROLLUP : DFCS_SCROLLDOWN;
    look |= ::IsWindowEnabled(window) ? 0u : DFCS_INACTIVE;
    look |= spinner != nullptr && spinner->is_pressed(upper) ? DFCS_PUSHED : 0u;
    ::DrawFrameControl(target, &area, DFC_SCROLL, look);
}

void paint(HWND window) {
    PAINTSTRUCT work = {};
    const HDC target = ::BeginPaint(window, &work);
    paint_arrow(window, target, true);
    paint_arrow(window, target, false);
    ::EndPaint(window, &work);
}

void button_down(HWND window, LPARAM position) {
    const RECT upper = half(window, true);
    const LONG y = static_cast<short>(HIWORD(position));
    ::SetCapture(window);
    spinner_data(window)->press(y < upper.bottom);
}

LRESULT CALLBACK spinner_procedure(HWND window, UINT message, WPARAM w_param, LPARAM l_param) {
    Spinner* spinner = spinner_data(window);
    if (message == WM_NCCREATE) {
        ::SetWindowLongPtrW(window, 0, reinterpret_cast<LONG_PTR>(::new Spinner(window)));
    } else if (spinner == nullptr) {
        return ::DefWindowProcW(window, message, w_param, l_param);
    }
    // The window owns the new object, which the analyzer cannot see; WM_NCDESTROY deletes it.
    switch (message) { // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
    case WM_PAINT:
        paint(window);
        return 0;
    case WM_ENABLE:
        ::InvalidateRect(window, nullptr, FALSE);
        return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        button_down(window, l_param);
        return 0;
    case WM_LBUTTONUP:
        ::ReleaseCapture();
        return 0;
    case WM_CAPTURECHANGED:
        spinner->release_arrow();
        return 0;
    case WM_NCDESTROY:
        ::SetWindowLongPtrW(window, 0, 0);
        spinner->lose_window();
        return 0;
    default:
        return ::DefWindowProcW(window, message, w_param, l_param);
    }
}

// CS_GLOBALCLASS: other modules have the dialogs that name these classes.
void register_spinner(HINSTANCE module) {
    WNDCLASSEXW spinner = {};
    spinner.cbSize = sizeof(spinner);
    spinner.style = CS_GLOBALCLASS | CS_DBLCLKS;
    spinner.lpfnWndProc = spinner_procedure;
    spinner.cbWndExtra = sizeof(LONG_PTR);
    spinner.hInstance = module;
    spinner.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)); // the arrow
    spinner.lpszClassName = SPINNERWINDOWCLASS;
    ::RegisterClassExW(&spinner);
}

} // namespace

Spinner* spinner_of_window(HWND window) {
    wchar_t name[64] = {};
    if (window == nullptr || ::GetClassNameW(window, name, 64) == 0 ||
        std::wstring(name) != SPINNERWINDOWCLASS) {
        return nullptr;
    }
    return spinner_data(window);
}

} // namespace host_sdk

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        host_sdk::register_spinner(instance);
        host_sdk::register_cust_edit(instance);
    } else if (reason == DLL_PROCESS_DETACH) {
        ::UnregisterClassW(SPINNERWINDOWCLASS, instance);
        host_sdk::unregister_cust_edit(instance);
    }
    return TRUE;
}
