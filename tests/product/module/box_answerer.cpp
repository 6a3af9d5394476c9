#include "tests/product/module/box_answerer.h"

#include <algorithm>

namespace {

constexpr int kCameraTable = 1006;
constexpr DWORD kPauseMs = 10;

std::wstring window_text(HWND window) {
    wchar_t text[1024] = {};
    ::GetWindowTextW(window, text, 1024);
    return text;
}

std::wstring class_of(HWND window) {
    wchar_t name[64] = {};
    ::GetClassNameW(window, name, 64);
    return name;
}

BOOL CALLBACK CollectDialog(HWND window, LPARAM dialogs) {
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    if (process == ::GetCurrentProcessId() && ::IsWindowVisible(window) && class_of(window) == L"#32770") {
        reinterpret_cast<std::vector<HWND>*>(dialogs)->push_back(window);
    }
    return TRUE;
}

BOOL CALLBACK ReadChild(HWND child, LPARAM box) {
    SeenBox& seen = *reinterpret_cast<SeenBox*>(box);
    const bool visible = (::GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) != 0;
    if (visible && class_of(child) == L"Button") {
        ++seen.buttons;
    } else if (visible && class_of(child) == L"Static") {
        seen.text += window_text(child);
    }
    return TRUE;
}

bool is_main_dialog(HWND window) {
    return ::GetDlgItem(window, kCameraTable) != nullptr;
}

} // namespace

void BoxAnswerer::stop() {
    stopping_ = true;
    if (thread_.joinable()) {
        thread_.join();
    }
}

void BoxAnswerer::watch() {
    while (!stopping_) {
        std::vector<HWND> dialogs;
        ::EnumWindows(&CollectDialog, reinterpret_cast<LPARAM>(&dialogs));
        for (HWND dialog : dialogs) {
            if (is_main_dialog(dialog)) {
                ::PostMessageW(dialog, WM_CLOSE, 0, 0);
            } else if (std::find(answered_.begin(), answered_.end(), dialog) == answered_.end()) {
                answer(dialog);
            }
        }
        ::Sleep(kPauseMs);
    }
}

void BoxAnswerer::answer(HWND box) {
    answered_.push_back(box);
    SeenBox seen = {};
    seen.caption = window_text(box);
    seen.owner = ::GetWindow(box, GW_OWNER);
    if (seen.owner != nullptr) {
        seen.owner_of_owner = ::GetWindow(seen.owner, GW_OWNER);
        seen.owner_has_cameras = is_main_dialog(seen.owner);
    }
    ::EnumChildWindows(box, &ReadChild, reinterpret_cast<LPARAM>(&seen));
    seen_.push_back(seen);
    ::PostMessageW(box, WM_COMMAND, IDOK, 0);
}
