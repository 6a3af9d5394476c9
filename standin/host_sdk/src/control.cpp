#include "host_state.h"

namespace host_sdk {

State& state() {
    static State* one = new State;
    return *one;
}

void reset() {
    clear_actions();
    clear_menus();
    clear_notifications();
    clear_script();
    state().faults = Faults();
    set_scene(std::wstring(), false);
    state().escaped_exceptions = 0;
}

void set_call_recorder(CallRecorder* recorder) {
    state().recorder = recorder;
}
void set_script_runner(ScriptRunner* runner) {
    state().runner = runner;
}
void set_text_tag(TextTag tag) {
    state().text_tag = tag;
}
void set_faults(const Faults& faults) {
    state().faults = faults;
}
void set_main_window(HWND window) {
    state().main_window = window;
}

void set_scene(const std::wstring& path, bool needs_save) {
    state().scene_path = path;
    state().scene_needs_save = needs_save;
}
std::wstring scene_path() {
    return state().scene_path;
}
bool scene_needs_save() {
    return state().scene_needs_save;
}

long escaped_exceptions() {
    return state().escaped_exceptions;
}

} // namespace host_sdk
