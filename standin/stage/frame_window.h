// The stage's frame window: for the module the host's main window, with the menu bar. Needs windows.h.
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

    // Creates and shows the window. False on failure.
    bool create(const std::wstring& title);
    HWND window() const { return window_; }

    // Runs the message loop until `quit` is called or, for a person, the window is closed.
    int run();
    void quit();

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM w_param, LPARAM l_param);
    static void show_menu_bar(void* context);

    HWND window_ = nullptr;
};

} // namespace stage
