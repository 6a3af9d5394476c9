#include "common/activation_context.h"

#include "common/logger.h"
#include "common/string_table.h"
#include "common/text.h"
#include "common/win32_handles.h"
#include "resources/resource_ids.h"

#include <commctrl.h>

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

class ActivationScope {
public:
    ActivationScope() {
        static ActivationContextHandle context;
        if (!context) { // the first time, or it could not be made: without it no window opens
            context = create_context();
        }
        active_ = context && ::ActivateActCtx(context.get(), &cookie_) != FALSE;
        error_ = ::GetLastError();
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
    DWORD error_;
    ULONG_PTR cookie_ = 0;
};

// SysLink belongs to no default set of classes: without this call the main dialog may not open on Windows.
// The loader resolves the module's imports by manifest resource 2 too, so this is version 6 of the library
// (learn.microsoft.com, "Using Side-by-Side Assemblies as a Resource").
void register_control_classes() {
    INITCOMMONCONTROLSEX classes = {};
    classes.dwSize = sizeof classes;
    classes.dwICC = ICC_LINK_CLASS | ICC_LISTVIEW_CLASSES | ICC_UPDOWN_CLASS;
    ::InitCommonControlsEx(&classes);
}

// Makes `call` inside the context. On failure logs `line`, the system's error and `what`.
template <class Result, class Call>
Result isolated(Result failure, const char* line, const std::wstring& what, Call call) {
    const ActivationScope scope;
    DWORD error = scope.error();
    Result result = failure;
    if (scope.active()) {
        result = call();
        error = ::GetLastError();
    }
    if (result == failure) {
        WriteErrorLine(kUiChannel, line + std::to_string(error) + ": " + WideToLocale(what));
    }
    return result;
}

} // namespace

int IsolatedMessageBox(HWND owner, const std::wstring& text, const std::wstring& caption, UINT style,
                       WORD language) {
    const std::wstring first_line = text.substr(0, text.find(L'\n'));
    return isolated(0, "A message box could not be shown. System error ", first_line,
                    [&] { return ::MessageBoxExW(owner, text.c_str(), caption.c_str(), style, language); });
}

INT_PTR IsolatedDialogBox(int template_id, HWND owner, DLGPROC procedure, LPARAM parameter) {
    const std::wstring id = std::to_wstring(template_id);
    return isolated(INT_PTR{-1}, "A dialog could not be shown. System error ", id, [&] {
        register_control_classes();
        return ::DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(template_id), owner, procedure,
                                 parameter);
    });
}

} // namespace tarvo
