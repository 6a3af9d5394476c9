// What control.h offers, and the notifications.
#include "call_record.h"

#include "notify.h"

#include <algorithm>
#include <vector>

namespace host_sdk {

namespace {

struct Registration {
    NOTIFYPROC handler;
    void* parameter;
    int code;

    bool operator==(const Registration& other) const {
        return handler == other.handler && parameter == other.parameter && code == other.code;
    }
};

std::vector<Registration>& registrations() {
    static std::vector<Registration>* list = new std::vector<Registration>;
    return *list;
}

} // namespace

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

void notify_handlers(int code, void* call_param) {
    const std::vector<Registration> now = registrations(); // handlers may register and unregister
    for (const Registration& entry : now) {
        if (entry.code == code) {
            NotifyInfo info = {code, call_param};
            run_foreign([&] { entry.handler(entry.parameter, &info); });
        }
    }
}

void clear_notifications() {
    registrations().clear();
}

void broadcast_notification(int code) {
    notify_handlers(code, nullptr);
}

int notification_handler_count(int code) {
    return static_cast<int>(std::count_if(registrations().begin(), registrations().end(),
                                          [code](const Registration& entry) { return entry.code == code; }));
}

} // namespace host_sdk

using namespace host_sdk;

int RegisterNotification(NOTIFYPROC proc, void* param, int code) {
    record("RegisterNotification", reinterpret_cast<const void*>(proc), param, code);
    registrations().push_back({proc, param, code});
    return 1;
}

int UnRegisterNotification(NOTIFYPROC proc, void* param, int code) {
    record("UnRegisterNotification", reinterpret_cast<const void*>(proc), param, code);
    std::vector<Registration>& list = registrations();
    const auto found = std::find(list.begin(), list.end(), Registration{proc, param, code});
    if (found == list.end()) {
        return 0;
    }
    list.erase(found);
    return 1;
}
