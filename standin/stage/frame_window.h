// The stage's frame window: the host's main window as far as the module sees it, with the menu bar. Needs
// windows.h.
#pragma once

#include <windows.h>

#include <string>

namespace stage {

class FrameWindow {
public:
    FrameWindow() = default;
    ~FrameWindow();
    FrameWindow(const FrameWindow&) = delete;
    FrameWindow& operator=(const FrameWindow&) = delete;

    // Visible at once. False when the system refuses.
    bool create(const std::wstring& title);
    HWND window() const { return window_; }

    // Takes messages until `quit` is called or, for a person, the window was closed.
    int run();
    void quit();

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM w_param, LPARAM l_param);
    static void show_menu_bar(void* context);

    HWND window_ = nullptr;
};

} // namespace stage
