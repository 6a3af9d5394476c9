// The command line of the stage.
#pragma once

#include "standin/base/arguments.h"

#include <string>
#include <vector>

namespace stage {

constexpr int kExitPassed = 0;  // every expectation holds; for a person: the window was closed
constexpr int kExitFailed = 1;  // an expectation does not hold
constexpr int kExitRefused = 2; // bad input: no scene, a broken scenario, no module, the wrong language
constexpr int kExitTrouble = 3; // a time limit or a crash

struct Options {
    std::wstring scene;                 // a person's scene, or --scene
    std::wstring scenario;              // --scenario; empty: for a person
    std::wstring out;                   // --out
    std::wstring module;                // --module
    std::wstring seven_zip;             // --seven-zip; empty: none is copied
    std::wstring scripts;               // --scripts
    std::wstring faults;                // --faults; empty: the scenario is played once
    bool installed = false;             // --installed
    bool windows_radio_buttons = false; // --windows-radio-buttons
};

// `arguments` without the program's name; `text` is the help page or the error message. Files that are not
// named are beside the program, in `program_folder`.
base::Arguments parse_options(const std::vector<std::wstring>& arguments, const std::wstring& program_folder,
                              Options& options, std::string& text);

} // namespace stage
