// windows [ok]: prints the texts of all dialogs on the screen, one a line, in UTF-8. "ok" then presses the
// first button of each of them.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <cwchar>

namespace {

BOOL CALLBACK print_text(HWND window, LPARAM) {
    constexpr int kMost = 4096;
    wchar_t text[kMost] = {};
    char printed[3 * kMost] = {};
    ::SendMessageTimeoutW(window, WM_GETTEXT, kMost, reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG, 1000,
                          nullptr);
    ::WideCharToMultiByte(CP_UTF8, 0, text, -1, printed, sizeof printed, nullptr, nullptr);
    std::printf("%s\n", printed);
    return TRUE;
}

BOOL CALLBACK visit(HWND window, LPARAM press) {
    wchar_t name[64] = {};
    ::GetClassNameW(window, name, 64);
    if (::IsWindowVisible(window) != FALSE && std::wcscmp(name, L"#32770") == 0) {
        print_text(window, 0);
        ::EnumChildWindows(window, print_text, 0);
        const HWND button = ::GetDlgItem(window, IDOK);
        if (press != 0 && button != nullptr && ::IsWindowEnabled(button) != FALSE) {
            ::PostMessageW(button, BM_CLICK, 0, 0);
        }
    }
    return TRUE;
}

} // namespace

int main(int count, char** arguments) {
    ::EnumWindows(visit, count > 1 && std::strcmp(arguments[1], "ok") == 0 ? 1 : 0);
    return 0;
}
