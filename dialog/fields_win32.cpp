#include "dialog/ui_state.h"

#include "common/text.h"
#include "dialog/controls.h"
#include "dialog/number_step.h"
#include "resources/resource_ids.h"
#include "scene/scene_file.h"

#include <windows.h>

#include <commctrl.h>

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
    ~WindowContext() {
        if (context_ != nullptr) {
            ::ReleaseDC(window_, context_);
        }
    }
    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;

    // Pixels; 0 when it cannot be measured.
    LONG text_width(const std::wstring& text) const {
        SIZE size = {};
        ::GetTextExtentPoint32W(context_, text.c_str(), static_cast<int>(text.size()), &size);
        return size.cx;
    }

private:
    HWND window_;
    HDC context_;
};

} // namespace

void UiState::InitOutputControls(HWND dialog) {
    ::SendDlgItemMessageW(dialog, IDC_MAIN_AO_RADIUS_SPIN, UDM_SETRANGE32, 0, kRadiusSpinMaximum);
    ::SetDlgItemTextW(dialog, IDC_MAIN_AO_RADIUS, kInitialRadius);
    ::SendDlgItemMessageW(dialog, IDC_MAIN_AO_SUBDIVS_SPIN, UDM_SETRANGE, 0,
                          MAKELPARAM(kSubdivsMaximum, kSubdivsMinimum));
    ::SendDlgItemMessageW(dialog, IDC_MAIN_AO_SUBDIVS_SPIN, UDM_SETPOS, 0, MAKELPARAM(kInitialSubdivs, 0));
    ::SendDlgItemMessageW(dialog, IDC_MAIN_GAMMA_SPIN, UDM_SETRANGE, 0, MAKELPARAM(kGammaSpinMaximum, 0));
}

void UiState::ShowGamma(HWND dialog, float value) {
    ::SetDlgItemTextW(dialog, IDC_MAIN_GAMMA, OneDecimal(value).c_str());
}

void UiState::StepFloatField(HWND dialog, int id, float delta, float step, float minimum, float maximum) {
    const double value = StepNumber(ReadFloatField(dialog, id), delta, step, minimum, maximum);
    ::SetDlgItemTextW(dialog, id, OneDecimal(value).c_str());
}

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
    log.Write("Get warnning infomation of current scene successfully.", kInfo);
    return true;
}

} // namespace tarvo
