// The host's script engine: one session from the host's start to its end. Needs windows.h.
#pragma once

#include "standin/host_sdk/control.h"
#include "standin/maxscript/interpreter.h"
#include "standin/maxscript_host/scene_library.h"
#include "standin/stage/infection.h"
#include "standin/stage/scene_source.h"
#include "standin/stage/transcript.h"

#include <json/value.h>

#include <memory>
#include <string>

namespace stage {

// The real files, for scripts (script_files.cpp).
class ScriptFiles : public maxscript::FileAccess {
public:
    using Text = maxscript::Text;

    bool exists(const Text& path) override;
    bool folder_exists(const Text& path) override;
    std::int64_t size(const Text& path) override;
    bool read(const Text& path, std::string& bytes) override;
    bool write(const Text& path, const std::string& bytes) override;
    std::vector<Text> list(const Text& pattern) override;
    bool remove(const Text& path) override;
    bool rename(const Text& from, const Text& to) override;
    bool copy(const Text& from, const Text& to) override;
    bool is_read_only(const Text& path) override;
    bool set_read_only(const Text& path, bool read_only) override;
};

// For the user-interface thread.
class StageScripts : public host_sdk::ScriptRunner, private maxscript::Listener {
public:
    explicit StageScripts(Transcript& transcript);
    ~StageScripts() override;

    // A new session. Runs the plugin's start-up script, which makes the encrypted analysis script, if it is
    // in `folder`: the plugin's script folder, or with an installed plugin the module's own. `program_data`
    // is the machine-wide application-data folder.
    void start_host(const std::wstring& folder, const std::wstring& program_data);

    // The open scene, and the scenario's "analysis" (null: none), which changes the script's result.
    void set_scene(const StageScene& scene, const Json::Value& analysis);
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
    maxscript::Text printed_; // into the listener, by the running script
};

} // namespace stage
