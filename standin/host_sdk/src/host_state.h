// What the parts of the stand-in share: recorder, script runner, faults and the open scene.
#pragma once

#include "standin/host_sdk/control.h"

#include "strclass.h"

#include <string>

namespace host_sdk {

struct State {
    CallRecorder* recorder = nullptr;
    ScriptRunner* runner = nullptr;
    TextTag text_tag = TextTag::string;
    Faults faults;
    HWND main_window = nullptr;
    std::wstring scene_path; // empty: never saved
    bool scene_needs_save = false;
    long escaped_exceptions = 0;
};

// Never destroyed: objects of the plug-in may outlive everything here.
State& state();

// Runs a plug-in's handler or a test's listener. Counts an exception and stops it.
template <class Function>
void run_foreign(Function function) {
    try {
        function();
    } catch (...) {
        ++state().escaped_exceptions;
    }
}

// While one of these exists, new objects on the host's heap are the host's own and do not count.
class HostOwnScope {
public:
    HostOwnScope();
    ~HostOwnScope();
    HostOwnScope(const HostOwnScope&) = delete;
    HostOwnScope& operator=(const HostOwnScope&) = delete;
};

// Calls the handlers that are registered now, in the order of registration.
void notify_handlers(int code, void* call_param);

// The parts of control.h's reset().
void clear_actions();
void clear_menus();
void clear_notifications();
void clear_script();

} // namespace host_sdk
