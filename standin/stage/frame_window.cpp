#include "standin/stage/frame_window.h"

#include "standin/host_sdk/control.h"
#include "standin/stage/ui_thread.h"

namespace stage {

namespace {

constexpr const wchar_t* kFrameClass = L"TarvoStageFrame";
constexpr int kFrameWidth = 900;
constexpr int kFrameHeight = 640;

} // namespace

FrameWindow::~FrameWindow() {
    host_sdk::set_menu_bar_listener(nullptr, nullptr);
    if (window_ != nullptr) {
        // The host stand-in owns the menu; the window would destroy it.
        ::SetMenu(window_, nullptr);
        ::DestroyWindow(window_);
    }
}

bool FrameWindow::create(const std::wstring& title) {
    WNDCLASSEXW description = {};
    description.cbSize = sizeof description;
    description.lpfnWndProc = &FrameWindow::procedure;
    description.hInstance = ::GetModuleHandleW(nullptr);
    description.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)); // the arrow
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_APPWORKSPACE + 1);
    description.lpszClassName = kFrameClass;
    ::RegisterClassExW(&description);
    window_ = ::CreateWindowExW(0, kFrameClass, title.c_str(), WS_OVERLAPPEDWINDOW, 20, 20, kFrameWidth,
                                kFrameHeight, nullptr, nullptr, description.hInstance, nullptr);
    if (window_ == nullptr) {
        return false;
    }
    host_sdk::set_menu_bar_listener(&FrameWindow::show_menu_bar, this);
    ::ShowWindow(window_, SW_SHOW);
    ::UpdateWindow(window_);
    return true;
}

void FrameWindow::show_menu_bar(void* context) {
    const HWND window = static_cast<FrameWindow*>(context)->window_;
    ::SetMenu(window, host_sdk::menu_bar());
    ::DrawMenuBar(window);
}

LRESULT CALLBACK FrameWindow::procedure(HWND window, UINT message, WPARAM w_param, LPARAM l_param) {
    switch (message) {
    case UiThread::kRunMessage:
        UiThread::run_posted();
        return 0;
    case WM_COMMAND:
        if (HIWORD(w_param) == 0 && l_param == 0 && host_sdk::execute_menu_command(LOWORD(w_param))) {
            return 0;
        }
        break;
    case WM_CLOSE:
        ::PostQuitMessage(0);
        return 0;
    default:
        break;
    }
    return ::DefWindowProcW(window, message, w_param, l_param);
}

int FrameWindow::run() {
    MSG message = {};
    while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

void FrameWindow::quit() {
    ::PostMessageW(window_, WM_CLOSE, 0, 0);
}

} // namespace stage
