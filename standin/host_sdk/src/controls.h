// The spinner control: its value, the field that it is linked to, and its window.
#pragma once

#include "custcont.h"

#include <string>

namespace host_sdk {

// Lives as long as its window or anyone who holds its interface. Without a window it keeps its value and
// nothing else.
class Spinner : public ISpinnerControl {
public:
    explicit Spinner(HWND window) : window_(window) {}

    void Enable(BOOL on) override;
    void Disable() override;
    BOOL IsEnabled() override;
    float GetFVal() override;
    void SetValue(float value, int notify) override;
    void SetValue(int value, int notify) override;
    void LinkToEdit(HWND edit, EditSpinnerType type) override;

    void set_up(HWND edit, float minimum, float maximum, float value, float scale);
    void hold();
    void release();
    void lose_window();

    void press(bool upper); // an arrow goes down: one step
    void let_go();
    bool is_pressed(bool upper) const { return pressed_ && pressed_upper_ == upper; }

private:
    void enable(bool on);
    void link(HWND edit);
    float read_value();
    void change_value(float value, bool notify);
    void write_text();
    std::wstring edit_text() const;
    float limited(float value) const;
    void tell_dialog(UINT message);

    HWND window_;
    HWND edit_ = nullptr;
    float minimum_ = -1.0e30f;
    float maximum_ = 1.0e30f;
    float scale_ = 0.1f;
    float value_ = 0.0f;
    std::wstring written_; // what this control wrote into the field last
    int holders_ = 0;
    bool pressed_ = false;
    bool pressed_upper_ = false;
};

// Null when the window is not a spinner control.
Spinner* spinner_of_window(HWND window);

int held_spinner_interfaces();

void register_control_classes(HINSTANCE module);
void unregister_control_classes(HINSTANCE module);

} // namespace host_sdk
