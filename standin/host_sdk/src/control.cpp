#include "host_heap.h"
#include "host_state.h"
#include "spinner.h"

namespace host_sdk {

State& state() {
    static State* one = new State;
    return *one;
}

bool is_module_loaded(const void* object) {
    const void* functions = *static_cast<const void* const*>(object);
    HMODULE module = nullptr;
    return ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                    GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                                static_cast<LPCWSTR>(functions), &module) != FALSE;
}

void reset() {
    clear_actions();
    clear_menus();
    clear_notifications();
    clear_script();
    state().faults = Faults();
    state().scene = Scene();
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
    state().scene.path = path;
    state().scene.needs_save = needs_save;
}

std::wstring scene_path() {
    return state().scene.path;
}
bool scene_needs_save() {
    return state().scene.needs_save;
}

long live_heap_objects() {
    return counted_heap_objects();
}
int live_spinner_interfaces() {
    return held_spinner_interfaces();
}
long escaped_exceptions() {
    return state().escaped_exceptions;
}

} // namespace host_sdk
