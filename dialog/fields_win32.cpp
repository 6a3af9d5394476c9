#include "dialog/ui_state.h"

#include "common/text.h"
#include "dialog/controls.h"
#include "dialog/number_step.h"
#include "dialog/sequences.h"
#include "resources/resource_ids.h"
#include "scene/scene_file.h"

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <algorithm>
#include <cwchar>

namespace tarvo {

namespace {

constexpr LPARAM kRadiusSpinMaximum = 707072;
constexpr const wchar_t* kInitialRadius = L"1000.0";
constexpr int kSubdivsMinimum = 1;
constexpr int kSubdivsMaximum = 1000;
constexpr int kInitialSubdivs = 16;
constexpr int kGammaSpinMaximum = 5;

class WindowContext {
public:
    explicit WindowContext(HWND window) : window_(window), context_(::GetDC(window)) {}
    ~WindowContext() { ::ReleaseDC(window_, context_); }
    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;

    // Pixels; 0 on failure.
    LONG text_width(const std::wstring& text) const {
        SIZE size = {};
        ::GetTextExtentPoint32W(context_, text.c_str(), static_cast<int>(text.size()), &size);
        return size.cx;
    }

private:
    HWND window_;
    HDC context_;
};

// Where the setup installs the package, below the machine-wide application-data folder.
constexpr const wchar_t* kPackageFolder = L"\\Autodesk\\ApplicationPlugins\\TarvoRendering\\";
// ShellExecuteW returns more than this on success.
constexpr INT_PTR kMostErrors = 32;

// A plain path and no "file:" address: no character in it needs escaping.
std::wstring installed_page(std::wstring page) {
    std::replace(page.begin(), page.end(), L'/', L'\\');
    return CommonAppDataFolder() + kPackageFolder + page;
}

void log_control(const char* line, int control, DWORD error) {
    WriteErrorLine(kUiChannel, line + std::to_string(control) + ", system error " + std::to_string(error));
}

} // namespace

WindowHandle DialogItem(WindowHandle dialog, int control) {
    const HWND window = ::GetDlgItem(dialog, control);
    if (window == nullptr) {
        log_control("The dialog has no control ", control, ::GetLastError());
    }
    return window;
}

std::wstring ControlText(HWND control) {
    wchar_t buffer[kControlTextLimit] = {};
    if (::GetWindowTextW(control, buffer, kControlTextLimit) == 0) {
        const DWORD error = ::GetLastError();
        if (::GetWindowTextLengthW(control) > 0) { // else it is empty
            log_control("What a control shows could not be read: control ", ::GetDlgCtrlID(control), error);
        }
    }
    return buffer;
}

void SetControlText(HWND dialog, int id, const std::wstring& text) {
    if (::SetDlgItemTextW(dialog, id, text.c_str()) == FALSE) {
        log_control("A control could not be set: control ", id, ::GetLastError());
    }
}

void CheckNoBlocks(HWND dialog) {
    if (::CheckRadioButton(dialog, IDC_MAIN_BLOCKS_1, IDC_MAIN_BLOCKS_LAST, IDC_MAIN_BLOCKS_1) == FALSE) {
        log_control("A control could not be set: control ", IDC_MAIN_BLOCKS_1, ::GetLastError());
    }
}

bool IsBoxChecked(WindowHandle dialog, int control) {
    return ::IsDlgButtonChecked(dialog, control) == BST_CHECKED;
}

void CloseDialog(WindowHandle dialog, int result) {
    ::EndDialog(dialog, result);
}

void UiState::InitOutputControls(HWND dialog) {
    ::SendDlgItemMessageW(dialog, IDC_MAIN_AO_RADIUS_SPIN, UDM_SETRANGE32, 0, kRadiusSpinMaximum);
    SetControlText(dialog, IDC_MAIN_AO_RADIUS, kInitialRadius);
    ::SendDlgItemMessageW(dialog, IDC_MAIN_AO_SUBDIVS_SPIN, UDM_SETRANGE, 0,
                          MAKELPARAM(kSubdivsMaximum, kSubdivsMinimum));
    ::SendDlgItemMessageW(dialog, IDC_MAIN_AO_SUBDIVS_SPIN, UDM_SETPOS, 0, MAKELPARAM(kInitialSubdivs, 0));
    ::SendDlgItemMessageW(dialog, IDC_MAIN_GAMMA_SPIN, UDM_SETRANGE, 0, MAKELPARAM(kGammaSpinMaximum, 0));
}

void UiState::ShowGamma(HWND dialog, float value) {
    SetControlText(dialog, IDC_MAIN_GAMMA, OneDecimal(value));
}

void UiState::StepFloatField(HWND dialog, int id, float delta, float step, float minimum, float maximum) {
    const double value = StepNumber(ReadFloatField(dialog, id), delta, step, minimum, maximum);
    SetControlText(dialog, id, OneDecimal(value));
}

// Anything but a number is 0 (C-64).
double UiState::ReadFloatField(HWND dialog, int id) {
    return ::_wtof(ControlText(dialog, id).c_str());
}

bool UiState::SetSceneName(HWND edit, std::string name) {
    if (name.empty()) {
        log.Write("The scene name is empty!", kWarn);
        return false;
    }
    ::SetWindowTextW(edit, Utf8ToWide(ShownSceneName(name)).c_str());
    log.Write("Set scene name successfully.", kInfo);
    return true;
}

std::string UiState::GetSceneName(HWND edit) {
    std::string name = EnteredSceneName(ControlText(edit));
    log.Write("Get scene name text down, it is : " + name + ".", kInfo);
    return name;
}

bool UiState::ShowWarnings(HWND list, const std::vector<std::wstring>& messages) {
    ::SendMessageW(list, LB_RESETCONTENT, 0, 0);
    if (messages.empty()) {
        log.Write("There is no warnning in this scene.", kInfo);
        return false;
    }
    {
        const RedrawPause pause(list);
        const WindowContext context(list);
        for (const std::wstring& message : messages) {
            const LONG width = context.text_width(message);
            if (width > ::SendMessageW(list, LB_GETHORIZONTALEXTENT, 0, 0)) {
                ::SendMessageW(list, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(width), 0);
            }
            ::SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(message.c_str()));
        }
    }
    if (::SendMessageW(list, LB_GETCOUNT, 0, 0) != static_cast<LRESULT>(messages.size())) {
        log.Write("The list of notices is not whole.", kError);
    }
    log.Write("Get warnning infomation of current scene successfully.", kInfo);
    return true;
}

void SetHelpLinkTarget(HWND dialog, int link) {
    LITEM item = {};
    item.mask = LIF_ITEMINDEX | LIF_URL;
    if (::SendDlgItemMessageW(dialog, link, LM_GETITEM, 0, reinterpret_cast<LPARAM>(&item)) == FALSE) {
        return;
    }
    const std::wstring page = item.szUrl;
    const std::wstring path = installed_page(page);
    if (page.empty() || page.find(L':') != std::wstring::npos || path.size() >= L_MAX_URL_LENGTH) {
        return;
    }
    path.copy(item.szUrl, path.size());
    item.szUrl[path.size()] = L'\0';
    item.mask = LIF_ITEMINDEX | LIF_URL;
    ::SendDlgItemMessageW(dialog, link, LM_SETITEM, 0, reinterpret_cast<LPARAM>(&item));
}

void OpenLinkTarget(HWND dialog, const std::wstring& target) {
    const HINSTANCE started = ::ShellExecuteW(dialog, L"open", target.c_str(), nullptr, nullptr, SW_SHOW);
    const INT_PTR result = reinterpret_cast<INT_PTR>(started);
    if (result <= kMostErrors) {
        UiState::instance().log_channel().Write("The help could not be opened. Error " +
                                                    std::to_string(result) + ": " + WideToLocale(target),
                                                kError);
    }
}

} // namespace tarvo
