// The host's script engine: runs what the module sends, in one session from the host's start to its end.
// Needs windows.h through control.h.
#pragma once

#include "standin/host_sdk/control.h"
#include "standin/maxscript/interpreter.h"
#include "standin/maxscript_host/scene_library.h"
#include "standin/stage/infection.h"
#include "standin/stage/scene_source.h"
#include "standin/stage/script_files.h"
#include "standin/stage/transcript.h"

#include <json/value.h>

#include <memory>
#include <string>

namespace stage {

// Everything on the thread of the user interface, or before anything runs.
class StageScripts : public host_sdk::ScriptRunner, private maxscript::Listener {
public:
    explicit StageScripts(Transcript& transcript);
    ~StageScripts() override;

    // A host that has just started: nothing is left of what ran before. Runs the start-up script of the
    // plugin, which makes the encrypted form of the analysis script, when it lies in `folder`: the plugin's
    // script folder, or with an installed plugin the module's own. `program_data` is the machine-wide
    // application-data folder.
    void start_host(const std::wstring& folder, const std::wstring& program_data);

    // The open scene, and what the scenario's "analysis" (null: nothing) makes of the script's answer.
    void set_scene(const StageScene& scene, const Json::Value& analysis);
    // Only the answer.
    void set_analysis(const Json::Value& analysis) { analysis_ = analysis; }

    bool run(const std::wstring& command, std::wstring& result, bool& is_text) override;

private:
    void write(const maxscript::Text& text) override { printed_ += text; }
    bool run_script(const std::wstring& command, std::wstring& result, bool& is_text);
    Json::Value entry(const std::wstring& command, bool succeeded, const std::wstring& result) const;
    bool answer_analysis(std::wstring& result, bool& is_text) const;

    Transcript& transcript_;
    ScriptFiles files_;
    maxscript_host::SceneHost host_;
    Infection infection_;
    std::unique_ptr<maxscript::Interpreter> interpreter_;
    Json::Value analysis_;
    maxscript::Text printed_; // by the running script, in the listener
};

} // namespace stage
