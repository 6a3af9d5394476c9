// A dialog template brought to life in one language, without being shown, and how much room its texts need
// there. Sizes are pixels. Common controls of version 6 apply, and the host's own window classes are stood in
// for.
#pragma once

#include "common/win32_handles.h"
#include "tests/support/module_resources.h"

#include <windows.h>

#include <string>

namespace support {

// The module's activation context (manifest resource 2), active while the object lives.
class ActiveManifest {
public:
    ActiveManifest();
    ~ActiveManifest();
    ActiveManifest(const ActiveManifest&) = delete;
    ActiveManifest& operator=(const ActiveManifest&) = delete;

    bool active() const { return cookie_ != 0; }

private:
    tarvo::ActivationContextHandle context_;
    ULONG_PTR cookie_ = 0;
};

class LiveDialog {
public:
    // `window` is null when the template is missing or one of its controls cannot be made.
    LiveDialog(unsigned name, LANGID language);
    ~LiveDialog();
    LiveDialog(const LiveDialog&) = delete;
    LiveDialog& operator=(const LiveDialog&) = delete;

    HWND window() const { return window_; }
    HWND control(int id) const { return ::GetDlgItem(window_, id); }

    // The template's units in pixels, with the dialog's own font.
    SIZE to_pixels(int width, int height) const;

    // One line; no access key, no mark-up.
    int text_width(const std::wstring& text) const;
    // Broken into lines of at most `width`.
    int text_height(const std::wstring& text, int width) const;
    int line_height() const;
    int dots_per_inch() const;

private:
    SIZE measure(const std::wstring& text, int width, UINT flags) const;

    ActiveManifest manifest_;
    HWND window_ = nullptr;
};

} // namespace support
