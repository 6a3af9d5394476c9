// The host's own controls: the spinner, its window, and the edit field "CustEdit".
#pragma once

#include "custcont.h"

#include <string>

namespace host_sdk {

// Lives as long as its window or a holder of its interface. Without a window it keeps only its value.
class Spinner : public ISpinnerControl {
public:
    explicit Spinner(HWND window) : window_(window) {}

    void Enable(BOOL on) override;
    void Disable() override;
    BOOL IsEnabled() override;
    float GetFVal() override;
    void SetValue(float value, int notify) override;
    void LinkToEdit(HWND edit, EditSpinnerType type) override;

    void set_up(HWND edit, float minimum, float maximum, float value, float scale);
    void hold();
    void release();
    void lose_window();

    void press(bool upper); // pressing an arrow: one step
    void release_arrow();
    bool is_pressed(bool upper) const { return pressed_ && pressed_upper_ == upper; }

private:
    void enable(bool on);
    void link(HWND edit);
    float read_value();
    void change_value(float value, bool notify);
    void write_text();
    float limited(float value) const;
    void tell_dialog(UINT message);

    HWND window_;
    HWND edit_ = nullptr;
    float minimum_ = -1.0e30f;
    float maximum_ = 1.0e30f;
    float scale_ = 0.1f;
    float value_ = 0.0f;
    std::wstring written_; // what this control last wrote into the field
    int holders_ = 0;
    bool pressed_ = false;
    bool pressed_upper_ = false;
};

// Null when the window is not a spinner control.
Spinner* spinner_of_window(HWND window);

// "CustEdit": typed text counts when Enter confirms it or the focus leaves the field. Only then the dialog
// gets WM_COMMAND with EN_CHANGE; Enter never reaches the dialog's buttons. The message for Enter is
// documented; the rest is how 3ds Max's own fields behave.
void register_cust_edit(HINSTANCE module);
void unregister_cust_edit(HINSTANCE module);

// The text that was confirmed last. Of any other window, its text.
std::wstring confirmed_text(HWND field);

std::wstring text_of(HWND window);

} // namespace host_sdk
