#include "common/activation_context.h"

#include "common/logger.h"
#include "common/module_instance.h"
#include "common/text.h"
#include "common/win32_handles.h"
#include "resources/resource_ids.h"

#include <commctrl.h>

#include <string>

namespace tarvo {

namespace {

ActivationContextHandle create_context() {
    ACTCTXW description = {};
    description.cbSize = sizeof description;
    description.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    description.hModule = ModuleInstance();
    description.lpResourceName = MAKEINTRESOURCEW(IDR_MANIFEST);
    return ActivationContextHandle(::CreateActCtxW(&description));
}

// Made once, from the module's own manifest, and kept until the module is unloaded.
struct ModuleContext {
    ActivationContextHandle handle = create_context();
    DWORD error = ::GetLastError();
};

const ModuleContext& module_context() {
    static const ModuleContext context;
    return context;
}

class ActivationScope {
public:
    ActivationScope() {
        const ModuleContext& context = module_context();
        if (!context.handle) {
            error_ = context.error;
            return;
        }
        active_ = ::ActivateActCtx(context.handle.get(), &cookie_) != FALSE;
        error_ = active_ ? ERROR_SUCCESS : ::GetLastError();
    }
    ~ActivationScope() {
        if (active_) {
            ::DeactivateActCtx(0, cookie_);
        }
    }
    ActivationScope(const ActivationScope&) = delete;
    ActivationScope& operator=(const ActivationScope&) = delete;

    bool active() const { return active_; }
    DWORD error() const { return error_; } // why it is not active

private:
    bool active_ = false;
    DWORD error_ = ERROR_SUCCESS;
    ULONG_PTR cookie_ = 0;
};

// SysLink belongs to no default set of classes: without this the main dialog may not open on Windows. The
// manifest is resource 2, which the loader uses for the module's imports too, so this is version 6 of the
// library (learn.microsoft.com, "Using Side-by-Side Assemblies as a Resource"). Repeating it is harmless. A
// failure shows in the dialog that does not open.
void register_control_classes() {
    INITCOMMONCONTROLSEX classes = {};
    classes.dwSize = sizeof classes;
    classes.dwICC = ICC_LINK_CLASS | ICC_LISTVIEW_CLASSES | ICC_UPDOWN_CLASS;
    ::InitCommonControlsEx(&classes);
}

void log_not_shown(const char* line, DWORD error, const std::string& what) {
    WriteErrorLine(kUiChannel, line + std::to_string(error) + ": " + what);
}

std::string first_line(const std::wstring& text) {
    return WideToLocale(text.substr(0, text.find(L'\n')));
}

} // namespace

int IsolatedMessageBox(HWND owner, const std::wstring& text, const std::wstring& caption, UINT style,
                       WORD language) {
    const ActivationScope scope;
    DWORD error = scope.error();
    int answer = 0;
    if (scope.active()) {
        answer = ::MessageBoxExW(owner, text.c_str(), caption.c_str(), style, language);
        error = ::GetLastError();
    }
    if (answer == 0) {
        log_not_shown("A message box could not be shown. System error ", error, first_line(text));
    }
    return answer;
}

INT_PTR IsolatedDialogBox(int template_id, HWND owner, DLGPROC procedure, LPARAM parameter) {
    const ActivationScope scope;
    DWORD error = scope.error();
    INT_PTR result = -1;
    if (scope.active()) {
        register_control_classes();
        result =
            ::DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(template_id), owner, procedure, parameter);
        error = ::GetLastError();
    }
    if (result == -1) {
        log_not_shown("A dialog could not be shown. System error ", error, std::to_string(template_id));
    }
    return result;
}

} // namespace tarvo
