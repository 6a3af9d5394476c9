// Records the message boxes of the module. The real box is shown; the driver finds its window and answers it
// as the scenario says. Needs windows.h.
#pragma once

#include "standin/stage/transcript.h"

#include <json/value.h>

#include <windows.h>

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace stage {

class DialogWatch;
class ModuleFile;

// A box that is on the screen.
struct OpenBox {
    Json::ArrayIndex index = 0; // in the transcript's list
    int answer = 0;             // the button's id
    std::string screenshot;     // file name; empty: none wanted
    bool answered = false;
};

class BoxWatch {
public:
    BoxWatch(Transcript& transcript, const ModuleFile& module, const DialogWatch& dialogs)
        : transcript_(transcript), module_(module), dialogs_(dialogs) {}

    // Reads what the scenario says about boxes.
    void prepare(const Json::Value& scenario);

    // Replaces the module's MessageBoxExW. One watch at a time.
    void install(HMODULE module);

    // Gets the box on top, if it is not answered yet, and marks it as answered.
    bool take_unanswered(OpenBox& box);

    bool any_open() const;

    // What the replacement does.
    int show(HWND owner, const wchar_t* text, const wchar_t* caption, UINT style, WORD language);

private:
    struct Choice {
        int answer;
        bool unanswered;
    };
    Choice choose(const std::vector<unsigned>& numbers, UINT style);
    Json::Value describe(HWND owner, const wchar_t* text, const wchar_t* caption, UINT style, WORD language,
                         const std::vector<unsigned>& numbers) const;

    Transcript& transcript_;
    const ModuleFile& module_;
    const DialogWatch& dialogs_;
    Json::Value answers_;
    Json::Value screenshots_;
    bool system_buttons_ = false;
    mutable std::mutex mutex_;
    std::map<unsigned, unsigned> seen_; // text number -> how many boxes had it
    std::vector<OpenBox> open_;
};

} // namespace stage
