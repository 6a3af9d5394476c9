// Plays the host's script engine for the commands that the module sends: loading a script file, and loading
// the analysis script and calling its entry point. Needs windows.h through control.h.
#pragma once

#include "standin/sdk/control.h"
#include "standin/stage/transcript.h"

#include <json/value.h>

#include <string>

namespace stage {

// What the analysis script answers.
struct AnalysisAnswer {
    bool fails = false;
    bool has_text = true;
    std::wstring text;
};

class StageScripts : public host_standin::ScriptRunner {
public:
    explicit StageScripts(Transcript& transcript) : transcript_(transcript) {}

    // On the thread of the user interface only, or before anything runs.
    void set_answer(const AnalysisAnswer& answer) { answer_ = answer; }

    // A missing script file is a failure, as it is in the host.
    bool run(const std::wstring& command, std::wstring& result, bool& is_text) override;

private:
    bool load(const std::wstring& command, std::wstring& result, std::wstring& rest) const;

    Transcript& transcript_;
    AnalysisAnswer answer_;
};

} // namespace stage
