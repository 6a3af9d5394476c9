// Repeated and random steps.
#include "standin/base/text.h"
#include "standin/stage/dialog_state.h"
#include "standin/stage/heap_watch.h"
#include "standin/stage/json_match.h"
#include "standin/stage/resource_watch.h"
#include "standin/stage/soak.h"
#include "standin/stage/steps.h"

#include "resources/resource_ids.h"

namespace stage {

namespace {

struct Use {
    HeapUse heap;
    std::size_t leaks;
    std::size_t process_kb;
};

Use use_now() {
    return {heap_use(), open_resources().size(), process_memory_kb()};
}

Json::Int64 grown(std::size_t before, std::size_t after) {
    return static_cast<Json::Int64>(after) - static_cast<Json::Int64>(before);
}

} // namespace

// Warm-up: growth is measured over the second half. Only the last round stays in the transcript, which would
// grow itself.
void Steps::repeat(const Json::Value& arguments) {
    const std::string place = place_;
    const unsigned times = arguments["times"].asUInt();
    const unsigned long long started = ::GetTickCount64();
    const HWND top = run_.dialogs->top();
    const Transcript::Mark mark = run_.transcript.mark();
    Use half = use_now();
    unsigned undone = 0;
    for (unsigned round = 0; round < times; ++round) {
        run_.transcript.forget(mark);
        const bool done = run_steps(arguments["steps"], place_of(place + ".round", round));
        if (!done && run_.fault.isNull()) {
            throw StepFailure{"every step of every round done", "round " + std::to_string(round)};
        }
        if (!done && top == nullptr) { // a fault ended the round early
            close_everything();
        }
        undone += done ? 0 : 1;
        if (run_.dialogs->top() != top) {
            throw StepFailure{"after a round the dialogs that were open before it", "others"};
        }
        if (round == times / 2) {
            half = use_now();
        }
    }
    const Use end = use_now();
    Json::Value entry(Json::objectValue);
    entry["place"] = place;
    entry["times"] = times;
    entry["rounds_undone"] = undone;
    entry["milliseconds"] = static_cast<Json::Int64>(::GetTickCount64() - started);
    entry["heap_blocks"] = static_cast<Json::Int64>(end.heap.blocks);
    entry["heap_bytes"] = static_cast<Json::Int64>(end.heap.bytes);
    entry["heap_blocks_grown"] = grown(half.heap.blocks, end.heap.blocks);
    entry["heap_bytes_grown"] = grown(half.heap.bytes, end.heap.bytes);
    entry["open_handles_grown"] = grown(half.leaks, end.leaks);
    entry["process_kb_grown"] = grown(half.process_kb, end.process_kb);
    run_.transcript.append("repeats", entry);
}

// What the choice of a random action needs to know.
SoakView Steps::soak_view() {
    SoakView view;
    const HWND top = run_.dialogs->top();
    if (top == nullptr) {
        return view;
    }
    view.dialog = run_.dialogs->name_of_window(top);
    call([top, &view] {
        for (HWND child = ::GetWindow(top, GW_CHILD); child != nullptr;
             child = ::GetWindow(child, GW_HWNDNEXT)) {
            if (::IsWindowVisible(child) != FALSE && ::IsWindowEnabled(child) != FALSE) {
                view.controls.push_back({::GetDlgCtrlID(child), base::to_utf8(class_name(child))});
            }
        }
        const HWND list = camera_table(top);
        view.rows = list == nullptr ? 0 : row_count(list);
        const HWND name = ::GetDlgItem(top, IDC_EDIT_NAME);
        view.empty_name = view.dialog == "edit" && name != nullptr && ::GetWindowTextLengthW(name) == 0;
    });
    return view;
}

// An action that cannot be done is no failure; a crash, a hang or a broken expectation is.
void Steps::soak(const Json::Value& arguments) {
    const std::string place = place_;
    const unsigned actions = arguments["actions"].asUInt();
    Soak source(arguments["seed"].asUInt());
    unsigned done = 0;
    for (unsigned i = 0; i < actions; ++i) {
        const Json::Value step = source.next(soak_view());
        place_ = place_of(place, i) + " " + compact(step);
        run_.place(place_);
        start_clock();
        try {
            do_verb(step);
            ++done;
        } catch (const StepFailure&) {
            // A disabled control, or a row that no longer exists.
        }
    }
    Json::Value entry(Json::objectValue);
    entry["place"] = place;
    entry["actions"] = actions;
    entry["done"] = done;
    entry["seed"] = arguments["seed"];
    run_.transcript.append("soaks", entry);
}

} // namespace stage
