#include "probe/probe_object.h"

#include "probe/actions.h"
#include "probe/questions.h"
#include "probe/report.h"

#include "host/begin_host_headers.h"

#include <max.h>

#include <notify.h>

#include "host/end_host_headers.h"

namespace tarvo_probe {

namespace {

// Documented numbers: a reset, a new scene, a file that is opened or saved, start-up that is complete.
const int kCodes[] = {5, 6, 7, 8, 9, 10, NOTIFY_FILE_PRE_SAVE, NOTIFY_FILE_POST_SAVE, 80};
constexpr int kStartupComplete = 80;

void on_notification(void* parameter, NotifyInfo* info) {
    if (parameter != nullptr && info != nullptr) {
        static_cast<ProbeObject*>(parameter)->on_event(info->intcode);
    }
}

} // namespace

DWORD ProbeObject::Start() {
    Ask("start", [this] {
        Report& report = TheReport();
        report.begin(module_);
        AskHeaders();
        for (const int code : kCodes) {
            if (::RegisterNotification(on_notification, this, code) == 0) {
                report.number("event.refused", code);
            }
        }
        events_ = "Start";
        AskObjects("start");
        AskMenus("start");
        AskActions(module_);
        report.line("start.done", "yes");
    });
    return GUPRESULT_KEEP;
}

void ProbeObject::on_event(int code) noexcept {
    Ask("event", [&] {
        events_ += " " + std::to_string(code);
        if (code == kStartupComplete && !is_complete_) {
            is_complete_ = true;
            TheReport().line("event.before_complete", events_.c_str());
            when_complete();
        }
    });
}

void ProbeObject::when_complete() noexcept {
    AskObjects("complete");
    AskMenus("complete");
    AskScripts();
    AskSpinner(module_);
    AskSaving();
    TheReport().line("complete.done", "yes");
    AskExceptions(module_);
    TheReport().line("exception.done", "yes");
}

void ProbeObject::Stop() {
    Ask("stop", [this] {
        TheReport().line("event.all", events_.c_str());
        DeactivateActions();
        int lost = 0;
        for (const int code : kCodes) {
            lost += ::UnRegisterNotification(on_notification, this, code) == 0 ? 1 : 0;
        }
        TheReport().number("event.not_unregistered", lost);
        TheReport().line("stop.done", "yes");
    });
}

void ProbeObject::DeleteThis() {
    delete this;
}

} // namespace tarvo_probe
