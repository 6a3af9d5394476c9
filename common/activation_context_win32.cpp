#include "common/activation_context.h"

#include "common/module_instance.h"
#include "common/win32_handles.h"
#include "resources/resource_ids.h"

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
HANDLE module_context() {
    static const ActivationContextHandle context = create_context();
    return context.get();
}

class ActivationScope {
public:
    ActivationScope() {
        HANDLE context = module_context();
        active_ = context != INVALID_HANDLE_VALUE && ::ActivateActCtx(context, &cookie_) != FALSE;
    }
    ~ActivationScope() {
        if (active_) {
            ::DeactivateActCtx(0, cookie_);
        }
    }
    ActivationScope(const ActivationScope&) = delete;
    ActivationScope& operator=(const ActivationScope&) = delete;

    bool active() const { return active_; }

private:
    bool active_ = false;
    ULONG_PTR cookie_ = 0;
};

} // namespace

int IsolatedMessageBox(HWND owner, const std::wstring& text, const std::wstring& caption, UINT style,
                       WORD language) {
    const ActivationScope scope;
    return scope.active() ? ::MessageBoxExW(owner, text.c_str(), caption.c_str(), style, language) : 0;
}

INT_PTR IsolatedDialogBox(int template_id, HWND owner, DLGPROC procedure, LPARAM parameter) {
    const ActivationScope scope;
    if (!scope.active()) {
        return -1;
    }
    return ::DialogBoxParamW(ModuleInstance(), MAKEINTRESOURCEW(template_id), owner, procedure, parameter);
}

} // namespace tarvo
