#include "controls.h"

#include "call_record.h"

#include <algorithm>
#include <cmath>
#include <cwchar>

namespace host_sdk {

namespace {

int g_holders = 0;

// Three decimals without trailing zeros, but at least one decimal.
std::wstring decimal_text(float value) {
    wchar_t digits[64] = {};
    std::swprintf(digits, sizeof(digits) / sizeof(digits[0]), L"%.3f", static_cast<double>(value));
    std::wstring text = digits;
    while (text.back() == L'0' && text[text.size() - 2] != L'.') {
        text.pop_back();
    }
    return text;
}

} // namespace

void Spinner::Enable(BOOL on) {
    record("ICustomControl::Enable", on);
    enable(on != FALSE);
}

void Spinner::Disable() {
    record("ICustomControl::Disable");
    enable(false);
}

BOOL Spinner::IsEnabled() {
    if (!record("ICustomControl::IsEnabled")) {
        return FALSE;
    }
    return window_ != nullptr && ::IsWindowEnabled(window_);
}

float Spinner::GetFVal() {
    record("ISpinnerControl::GetFVal");
    return read_value();
}

void Spinner::SetValue(float value, int notify) {
    record("ISpinnerControl::SetValue", value, notify);
    change_value(value, notify != FALSE);
}

void Spinner::LinkToEdit(HWND edit, EditSpinnerType type) {
    record("ISpinnerControl::LinkToEdit", static_cast<const void*>(edit), static_cast<int>(type));
    link(edit);
}

void Spinner::set_up(HWND edit, float minimum, float maximum, float value, float scale) {
    link(edit);
    minimum_ = minimum;
    maximum_ = maximum;
    scale_ = scale;
    change_value(value, false);
}

void Spinner::hold() {
    ++holders_;
    ++g_holders;
}

void Spinner::release() {
    if (holders_ == 0) {
        return; // released once too often
    }
    --holders_;
    --g_holders;
    if (holders_ == 0 && window_ == nullptr) {
        ::delete this;
    }
}

void Spinner::lose_window() {
    window_ = nullptr;
    edit_ = nullptr;
    if (holders_ == 0) {
        ::delete this;
    }
}

void Spinner::press(bool upper) {
    pressed_ = true;
    pressed_upper_ = upper;
    ::InvalidateRect(window_, nullptr, FALSE);
    tell_dialog(CC_SPINNER_BUTTONDOWN);
    change_value(read_value() + (upper ? scale_ : -scale_), true);
}

void Spinner::release_arrow() {
    if (pressed_) {
        pressed_ = false;
        ::InvalidateRect(window_, nullptr, FALSE);
        tell_dialog(CC_SPINNER_BUTTONUP);
    }
}

// The field follows its spinner.
void Spinner::enable(bool on) {
    if (window_ != nullptr) {
        ::EnableWindow(window_, on);
    }
    if (edit_ != nullptr) {
        ::EnableWindow(edit_, on);
    }
}

void Spinner::link(HWND edit) {
    if (edit_ != edit) {
        written_.clear();
    }
    edit_ = edit;
}

// Typed text counts once it is confirmed. Text that this control wrote means the exact value, not its
// decimals.
float Spinner::read_value() {
    const std::wstring text = edit_ == nullptr ? std::wstring() : confirmed_text(edit_);
    if (text != written_) {
        wchar_t* end = nullptr;
        const float typed = std::wcstof(text.c_str(), &end);
        if (end != text.c_str() && std::isfinite(typed)) {
            value_ = limited(typed);
            written_ = text;
        }
    }
    return value_;
}

void Spinner::change_value(float value, bool notify) {
    if (!std::isnan(value)) {
        value_ = limited(value);
    }
    write_text();
    if (notify) {
        tell_dialog(CC_SPINNER_CHANGE);
    }
}

// Writing makes the field notify the dialog, which may set the value again: the same text is not written
// twice.
void Spinner::write_text() {
    if (edit_ == nullptr) {
        return;
    }
    written_ = decimal_text(value_);
    if (text_of(edit_) != written_) {
        ::SetWindowTextW(edit_, std::wstring(written_).c_str());
    }
}

float Spinner::limited(float value) const {
    return std::min(std::max(value, minimum_), maximum_);
}

void Spinner::tell_dialog(UINT message) {
    const HWND dialog = window_ == nullptr ? nullptr : ::GetParent(window_);
    if (dialog != nullptr) {
        const WPARAM id = static_cast<WPARAM>(::GetDlgCtrlID(window_));
        ::SendMessageW(dialog, message, MAKEWPARAM(id, pressed_ ? TRUE : FALSE),
                       reinterpret_cast<LPARAM>(static_cast<ISpinnerControl*>(this)));
    }
}

int live_spinner_interfaces() {
    return g_holders;
}

} // namespace host_sdk

ISpinnerControl* GetISpinner(HWND control) {
    host_sdk::record("GetISpinner", static_cast<const void*>(control));
    host_sdk::Spinner* spinner = host_sdk::spinner_of_window(control);
    if (spinner != nullptr) {
        spinner->hold();
    }
    return spinner;
}

void ReleaseISpinner(ISpinnerControl* spinner) {
    host_sdk::record("ReleaseISpinner", static_cast<const void*>(spinner));
    if (spinner != nullptr) {
        static_cast<host_sdk::Spinner*>(spinner)->release();
    }
}

ISpinnerControl* SetupFloatSpinner(HWND dialog, int spinner_id, int edit_id, float minimum, float maximum,
                                   float value, float scale) {
    host_sdk::record("SetupFloatSpinner", spinner_id, edit_id, minimum, maximum, value, scale);
    host_sdk::Spinner* spinner = host_sdk::spinner_of_window(::GetDlgItem(dialog, spinner_id));
    if (spinner == nullptr) {
        return nullptr;
    }
    spinner->hold();
    spinner->set_up(::GetDlgItem(dialog, edit_id), minimum, maximum, value, scale);
    return spinner;
}
