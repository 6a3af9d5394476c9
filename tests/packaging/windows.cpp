// windows [ok]: prints the texts of all dialogs on the screen, one a line, in UTF-8. "ok" then presses the
// first button of each of them, unless the dialog has changed its texts.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string>

namespace {

BOOL CALLBACK add_text(HWND window, LPARAM texts) {
    constexpr int kMost = 4096;
    constexpr UINT kMilliseconds = 1000;
    wchar_t text[kMost] = {};
    char narrow[3 * kMost] = {};
    ::SendMessageTimeoutW(window, WM_GETTEXT, kMost, reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG,
                          kMilliseconds, nullptr);
    ::WideCharToMultiByte(CP_UTF8, 0, text, -1, narrow, sizeof narrow, nullptr, nullptr);
    *reinterpret_cast<std::string*>(texts) += std::string(narrow) + "\n";
    return TRUE;
}

std::string texts_of(HWND dialog) {
    std::string texts;
    add_text(dialog, reinterpret_cast<LPARAM>(&texts));
    ::EnumChildWindows(dialog, add_text, reinterpret_cast<LPARAM>(&texts));
    return texts;
}

BOOL CALLBACK visit(HWND window, LPARAM press) {
    wchar_t name[64] = {};
    ::GetClassNameW(window, name, 64);
    if (::IsWindowVisible(window) == FALSE || std::wcscmp(name, L"#32770") != 0) {
        return TRUE;
    }
    const std::string texts = texts_of(window);
    std::printf("%s", texts.c_str());
    const HWND button = ::GetDlgItem(window, IDOK);
    if (press != 0 && button != nullptr && ::IsWindowEnabled(button) != FALSE && texts_of(window) == texts) {
        ::PostMessageW(button, BM_CLICK, 0, 0);
    }
    return TRUE;
}

} // namespace

int main(int count, char** arguments) {
    ::EnumWindows(visit, count > 1 && std::strcmp(arguments[1], "ok") == 0 ? 1 : 0);
    return 0;
}
