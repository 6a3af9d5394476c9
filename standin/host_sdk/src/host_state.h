// What the parts of the stand-in share: who listens, what is missing or fails, and the open scene.
#pragma once

#include "standin/host_sdk/control.h"

#include "strclass.h"

#include <string>

namespace host_sdk {

struct Scene {
    std::wstring path; // empty: never saved
    bool needs_save = false;
};

struct State {
    CallRecorder* recorder = nullptr;
    ScriptRunner* runner = nullptr;
    TextTag text_tag = TextTag::string;
    Faults faults;
    HWND main_window = nullptr;
    Scene scene;
    long escaped_exceptions = 0;
};

// Never destroyed: objects of the plug-in may outlive everything here.
State& state();

// Runs code that is not ours (a plug-in's handler, a test's listener); what it throws is counted and ends
// here.
template <class Function>
void run_foreign(Function function) {
    try {
        function();
    } catch (...) {
        ++state().escaped_exceptions;
    }
}

// Each part's share of control.h's reset().
void clear_actions();
void clear_menus();
void clear_notifications();
void clear_script();

// Whether the module that an object's virtual functions live in is still loaded.
bool is_module_loaded(const void* object);

} // namespace host_sdk
