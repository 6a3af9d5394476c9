#include "standin/stage/steps.h"

#include "standin/base/text.h"
#include "standin/stage/dialog_state.h"
#include "standin/stage/json_match.h"

#include <json/value.h>

#include <algorithm>

namespace stage {

namespace {

constexpr unsigned kDefaultStepSeconds = 60;
constexpr unsigned kDefaultTotalSeconds = 600;
constexpr int kClosingAttempts = 5;
constexpr DWORD kPollMs = 2;

struct BoxSearch {
    const DialogWatch* dialogs;
    HWND found;
};

// A message box is a dialog window that is none of the module's dialogs; the enabled one is the newest.
BOOL CALLBACK look_for_box(HWND window, LPARAM parameter) {
    auto* search = reinterpret_cast<BoxSearch*>(parameter);
    const bool candidate = class_name(window) == L"#32770" && ::IsWindowVisible(window) != FALSE &&
                           ::IsWindowEnabled(window) != FALSE &&
                           search->dialogs->name_of_window(window) == "other";
    if (candidate) {
        search->found = window;
    }
    return candidate ? FALSE : TRUE;
}

} // namespace

const Steps::VerbEntry Steps::kVerbs[] = {
    {"menu", &Steps::menu},
    {"shortcut", &Steps::shortcut},
    {"check", &Steps::check},
    {"uncheck", &Steps::uncheck},
    {"select", &Steps::select},
    {"type", &Steps::type},
    {"spin", &Steps::spin},
    {"choose", &Steps::choose},
    {"click", &Steps::click},
    {"double_click", &Steps::double_click},
    {"key", &Steps::key},
    {"switch_away", &Steps::switch_away},
    {"post", &Steps::post},
    {"close", &Steps::close},
    {"screenshot", &Steps::screenshot},
    {"change_scene", &Steps::change_scene},
    {"client", &Steps::client},
    {"no_client", &Steps::no_client},
    {"write_file", &Steps::write},
    {"delete_file", &Steps::remove},
    {"lock_file", &Steps::lock},
    {"unlock_file", &Steps::unlock},
    {"plant_archives", &Steps::plant_archives},
    {"restart", &Steps::restart},
    {"run_script", &Steps::run_script},
    {"fail_next", &Steps::fail_next},
    {"repeat", &Steps::repeat},
    {"soak", &Steps::soak},
    {"expect", &Steps::expect},
};

void Steps::start_clock() {
    const Json::Value& limits = run_.scenario["limits"];
    limit_ =
        Deadline::in_seconds(limits.get("step_seconds", kDefaultStepSeconds).asUInt()).or_earlier(total_);
}

void Steps::run_all() {
    const Json::Value& limits = run_.scenario["limits"];
    total_ = Deadline::in_seconds(limits.get("total_seconds", kDefaultTotalSeconds).asUInt());
    for (const char* part : {"steps", "recovery"}) {
        run_steps(run_.scenario[part], part);
        run_.place("closing what is still open");
        start_clock();
        close_everything();
        if (std::string(part) == "steps" && !run_.fault.isNull()) {
            run_.end_of_faults();
        }
    }
    locks_.clear();
}

// False when a step could not be done; the later ones are then skipped.
bool Steps::run_steps(const Json::Value& steps, const std::string& place) {
    bool going = true;
    for (Json::ArrayIndex i = 0; i < steps.size() && going; ++i) {
        going = run_step(steps[i], place_of(place, i));
    }
    return going;
}

void Steps::do_verb(const Json::Value& step) {
    const std::string verb = only_key(step);
    const VerbEntry* const known = std::find_if(
        std::begin(kVerbs), std::end(kVerbs), [&verb](const VerbEntry& entry) { return verb == entry.key; });
    if (known == std::end(kVerbs)) {
        throw StepFailure{"a step of docs/scenario.md", verb};
    }
    (this->*known->verb)(step[verb]);
}

bool Steps::run_step(const Json::Value& step, const std::string& place) {
    const unsigned long long before = ::GetTickCount64();
    const std::string own_place = place_of(place, only_key(step));
    place_ = own_place;
    run_.place(place_);
    start_clock();
    Json::Value entry(Json::objectValue);
    entry["place"] = own_place;
    bool done = true;
    try {
        do_verb(step);
    } catch (const StepFailure& failure) {
        run_.fail(own_place, failure.expected, failure.got);
        done = false;
    } catch (const std::exception& error) { // a value of the wrong type in the scenario
        run_.fail(own_place, "a step that fits docs/scenario.schema.json", error.what());
        done = false;
    }
    entry["done"] = done;
    entry["milliseconds"] = static_cast<Json::Int64>(::GetTickCount64() - before);
    run_.transcript.append("steps", entry);
    return done;
}

// Answers message boxes while it waits. A dialog's window appears only when its loop has no more messages, so
// this waits until the dialog on top is visible.
void Steps::settle() {
    constexpr int quiet_rounds = 2; // the second round is for messages that the first one posted
    int quiet = 0;
    while (quiet < quiet_rounds) {
        run_.ui->drain(limit_);
        OpenBox box;
        if (run_.boxes->take_unanswered(box)) {
            answer(box);
        }
        const HWND top = run_.dialogs->top();
        const bool shown = top == nullptr || ::IsWindowVisible(top) != FALSE;
        quiet = shown && !run_.boxes->any_open() ? quiet + 1 : 0;
        if (quiet == 0) {
            if (limit_.left_ms() == 0) {
                run_.ui->give_up();
            }
            ::Sleep(kPollMs);
        }
    }
}

HWND Steps::wait_for_box() {
    BoxSearch search = {run_.dialogs.get(), nullptr};
    while (search.found == nullptr && run_.boxes->any_open()) { // a box that fails to appear returns at once
        call([&search] {
            ::EnumThreadWindows(::GetCurrentThreadId(), &look_for_box, reinterpret_cast<LPARAM>(&search));
        });
        if (search.found == nullptr) {
            ::Sleep(kPollMs);
        }
    }
    return search.found;
}

void Steps::answer(const OpenBox& box) {
    const HWND window = wait_for_box();
    if (window == nullptr) {
        return;
    }
    if (!box.screenshot.empty()) {
        picture(window, box.screenshot);
    }
    ::PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(box.answer), 0);
}

void Steps::close_everything() {
    settle();
    for (int attempt = 0; attempt < kClosingAttempts && run_.dialogs->top() != nullptr; ++attempt) {
        ::PostMessageW(run_.dialogs->top(), WM_CLOSE, 0, 0);
        settle();
    }
    if (run_.dialogs->top() != nullptr) {
        run_.give_up("a dialog does not close");
    }
}

// The named dialog, or the one on top.
HWND Steps::dialog(const Json::Value& arguments) {
    const HWND top = run_.dialogs->top();
    if (!arguments.isMember("dialog")) {
        if (top == nullptr) {
            throw StepFailure{"an open dialog", "none is open"};
        }
        return top;
    }
    const std::string name = arguments["dialog"].asString();
    const HWND window = run_.dialogs->window(name == "main" ? kMainTemplate : kEditTemplate);
    if (window == nullptr || window != top) {
        throw StepFailure{"the dialog '" + name + "' on top",
                          window == nullptr ? "it is not open" : "another is"};
    }
    return window;
}

HWND Steps::control(const Json::Value& arguments) {
    const int id = arguments["control"].asInt();
    const HWND window = ::GetDlgItem(dialog(arguments), id);
    if (window == nullptr) {
        throw StepFailure{"a control " + std::to_string(id), "there is none"};
    }
    return window;
}

HWND Steps::usable_control(const Json::Value& arguments) {
    const HWND window = control(arguments);
    if (::IsWindowEnabled(window) == FALSE || ::IsWindowVisible(window) == FALSE) {
        throw StepFailure{"control " + std::to_string(arguments["control"].asInt()) + " usable",
                          ::IsWindowVisible(window) == FALSE ? "it is hidden" : "it is disabled"};
    }
    return window;
}

HWND Steps::table() {
    const HWND window = camera_table(dialog(Json::Value(Json::objectValue)));
    if (window == nullptr) {
        throw StepFailure{"a camera table", "the dialog on top has none"};
    }
    return window;
}

// A row by its number, or by the text of its first column.
int Steps::row_of(const Json::Value& row) {
    const HWND list = table();
    int count = 0;
    int found = -1;
    call([&] {
        count = row_count(list);
        for (int i = 0; i < count && found < 0 && row.isString(); ++i) {
            found = base::to_utf8(cell_text(list, i, 0)) == row.asString() ? i : -1;
        }
    });
    found = row.isString() ? found : row.asInt() < count ? row.asInt() : -1;
    if (found < 0) {
        throw StepFailure{"a row " + row.asString(), std::to_string(count) + " rows without it"};
    }
    return found;
}

std::vector<int> Steps::rows_of(const Json::Value& rows) {
    std::vector<int> list;
    if (rows.isString()) { // "all"
        const HWND window = table();
        int count = 0;
        call([&] { count = row_count(window); });
        for (int i = 0; i < count; ++i) {
            list.push_back(i);
        }
        return list;
    }
    for (const Json::Value& row : rows) {
        list.push_back(row_of(row));
    }
    return list;
}

} // namespace stage
