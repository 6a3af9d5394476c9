// A host without a scene editor behind it, for test programs: it defines the functions of host/host.h,
// remembers what they were asked and answers what the test has set. Its spinners are kept by window, so that
// what one call disables the next call finds disabled. Portable; the linked fields are written on Windows
// only.
#pragma once

#include "host/host.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

// What a spinner control holds.
struct TestSpinnerState {
    bool enabled = true;
    float value = 0.0f;
    bool limited = false; // true once it was set up
    float minimum = 0.0f;
    float maximum = 0.0f;
    float step = 0.0f;
    tarvo::WindowHandle edit = nullptr; // the linked field
};

struct TestHost {
    std::wstring file_name;
    std::wstring file_path;
    int save_count = 0;
    std::vector<std::wstring> saved_as;
    bool save_as_result = true; // true: the path also becomes the current file
    std::vector<std::wstring> scripts;
    std::function<void()> on_script; // called when a script is run
    bool script_result = true;
    std::wstring script_text;
    bool has_text = true;

    std::map<tarvo::WindowHandle, TestSpinnerState> spinners;
    int spinners_set_up = 0;
    int spinners_held = 0; // handed out and not released
    bool has_spinners = true;
};

TestHost& test_host();
void reset_test_host();

#ifdef _WIN32
// The window classes of the host's spinner control and of the field beside it, so that dialog templates with
// them can be shown. This field is a plain edit control, which tells the dialog at every change.
void register_host_controls();
#endif
