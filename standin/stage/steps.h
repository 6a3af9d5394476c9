// The steps of a scenario. A step drives the real windows with messages. It ends when the user-interface
// thread waits for messages again and no message box is open. Needs windows.h.
#pragma once

#include "standin/stage/soak.h"
#include "standin/stage/stage_run.h"

#include <json/value.h>

#include <map>
#include <string>

namespace stage {

// Thrown by a step that cannot be done: what it needed, and what it found.
struct StepFailure {
    std::string expected;
    std::string got;
};

class Steps {
public:
    explicit Steps(StageRun& run)
        : run_(run), total_(Deadline::in_seconds(0)), limit_(Deadline::in_seconds(0)) {}

    // Runs all steps on its own thread and closes the dialogs that are open afterwards.
    void run_all();

private:
    using Verb = void (Steps::*)(const Json::Value& arguments);
    struct VerbEntry {
        const char* key;
        Verb verb;
    };
    static const VerbEntry kVerbs[];

    bool run_steps(const Json::Value& steps, const std::string& place);
    bool run_step(const Json::Value& step, const std::string& place);
    void do_verb(const Json::Value& step);
    void start_clock();
    void close_everything();

    // Waiting and boxes (steps.cpp).
    void settle();
    void answer(const OpenBox& box);
    HWND wait_for_box();
    void call(const std::function<void()>& function) { run_.ui->call(function, limit_); }

    // Finding things (steps.cpp).
    HWND dialog(const Json::Value& arguments);
    HWND control(const Json::Value& arguments);
    HWND usable_control(const Json::Value& arguments);
    HWND table();
    int row_of(const Json::Value& row);
    std::vector<int> rows_of(const Json::Value& rows);

    // Mouse and keyboard (steps_input.cpp).
    void click_at(HWND window, POINT point);
    void press_key(WPARAM key, bool shift = false);
    HWND focused_in(HWND control);
    void type(const Json::Value& arguments);
    void spin(const Json::Value& arguments);
    void choose(const Json::Value& arguments);
    void click(const Json::Value& arguments);
    void key(const Json::Value& arguments);
    void switch_away(const Json::Value& arguments);
    void post(const Json::Value& arguments);
    void close(const Json::Value& arguments);

    // The camera table (steps_table.cpp).
    void set_marks(const Json::Value& arguments, bool wanted);
    void check(const Json::Value& arguments) { set_marks(arguments, true); }
    void uncheck(const Json::Value& arguments) { set_marks(arguments, false); }
    void select(const Json::Value& arguments);
    void double_click(const Json::Value& arguments);

    // Repeated and random steps (steps_repeat.cpp).
    void repeat(const Json::Value& arguments);
    void soak(const Json::Value& arguments);
    SoakView soak_view();

    // Host, scene, client and files (steps_world.cpp).
    void menu(const Json::Value& arguments);
    void shortcut(const Json::Value& arguments);
    void screenshot(const Json::Value& arguments);
    using Photograph = std::function<bool(const std::wstring& file)>;
    void picture(HWND window, const std::string& name);
    void picture(const Photograph& take, const std::string& name);
    void menu_picture(const std::string& name);
    void change_scene(const Json::Value& arguments);
    void client(const Json::Value& arguments);
    void no_client(const Json::Value& arguments);
    void write(const Json::Value& arguments);
    void remove(const Json::Value& arguments);
    void lock(const Json::Value& arguments);
    void unlock(const Json::Value& arguments);
    void plant_archives(const Json::Value& arguments);
    void restart(const Json::Value& arguments);
    void fail_next(const Json::Value& arguments);
    void run_script(const Json::Value& arguments);
    void expect(const Json::Value& arguments);
    std::wstring named_file(const Json::Value& arguments) const;

    StageRun& run_;
    Deadline total_;
    Deadline limit_; // of the step under way
    std::string place_;
    std::map<std::wstring, tarvo::FileHandle> locks_;
};

} // namespace stage
