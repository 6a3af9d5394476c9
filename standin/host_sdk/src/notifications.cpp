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
