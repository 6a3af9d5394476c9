#include "tests/support/dialog_metrics.h"

#include "resources/resource_ids.h"
#include "tests/support/test_host.h"

#include <commctrl.h>

namespace support {

namespace {

INT_PTR CALLBACK IgnoreEverything(HWND, UINT, WPARAM, LPARAM) {
    return 0;
}

HANDLE CreateManifestContext() {
    ACTCTXW request = {};
    request.cbSize = sizeof request;
    request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.hModule = ::GetModuleHandleW(nullptr);
    request.lpResourceName = MAKEINTRESOURCEW(IDR_MANIFEST);
    return ::CreateActCtxW(&request);
}

} // namespace

ActiveManifest::ActiveManifest() : context_(CreateManifestContext()) {
    if (context_ && !::ActivateActCtx(context_.get(), &cookie_)) {
        cookie_ = 0;
    }
}

ActiveManifest::~ActiveManifest() {
    if (cookie_ != 0) {
        ::DeactivateActCtx(0, cookie_);
    }
}

LiveDialog::LiveDialog(unsigned name, LANGID language) {
    INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES |
                                                        ICC_UPDOWN_CLASS | ICC_LINK_CLASS};
    ::InitCommonControlsEx(&classes);
    register_host_controls();
    const ResourceBytes bytes = FindResourceBytes(RT_DIALOG, name, language);
    if (bytes.data != nullptr) {
        window_ = ::CreateDialogIndirectParamW(::GetModuleHandleW(nullptr),
                                               reinterpret_cast<LPCDLGTEMPLATEW>(bytes.data), nullptr,
                                               &IgnoreEverything, 0);
    }
}

LiveDialog::~LiveDialog() {
    if (window_ != nullptr) {
        ::DestroyWindow(window_);
    }
}

SIZE LiveDialog::to_pixels(int width, int height) const {
    RECT area = {0, 0, width, height};
    ::MapDialogRect(window_, &area);
    return SIZE{area.right, area.bottom};
}

int LiveDialog::text_width(const std::wstring& text) const {
    return measure(text, 0, DT_SINGLELINE).cx;
}

int LiveDialog::text_height(const std::wstring& text, int width) const {
    return measure(text, width, DT_WORDBREAK).cy;
}

int LiveDialog::line_height() const {
    return measure(L"Xy", 0, DT_SINGLELINE).cy;
}

int LiveDialog::dots_per_inch() const {
    const HDC device = ::GetDC(window_);
    const int dots = ::GetDeviceCaps(device, LOGPIXELSX);
    ::ReleaseDC(window_, device);
    return dots;
}

SIZE LiveDialog::measure(const std::wstring& text, int width, UINT flags) const {
    const std::wstring plain = PlainText(text);
    RECT area = {0, 0, width, 0};
    const HDC device = ::GetDC(window_);
    const HGDIOBJ font = reinterpret_cast<HGDIOBJ>(::SendMessageW(window_, WM_GETFONT, 0, 0));
    const HGDIOBJ previous = ::SelectObject(device, font);
    ::DrawTextW(device, plain.c_str(), static_cast<int>(plain.size()), &area,
                DT_CALCRECT | DT_NOPREFIX | flags);
    ::SelectObject(device, previous);
    ::ReleaseDC(window_, device);
    return SIZE{area.right, area.bottom};
}

} // namespace support
