// The shipped analysis script over a scene that a test makes up, in a host that is all in memory. Portable.
#pragma once

#include "standin/maxscript_host/scene_library.h"
#include "tests/support/memory_files.h"

#include <json/value.h>

#include <string>

namespace support {

// The script folder of a plugin that is installed in the host's memory.
constexpr const char16_t* kScriptFolder = u"C:\\ProgramData\\Tarvo Rendering\\script\\";

// A script as it is shipped, from the folder scripts/ of the project.
std::string shipped_script(const std::string& name);

class ScriptedScene : private maxscript::Listener {
public:
    // A scene without anything, never saved; both scripts of the analysis are installed.
    ScriptedScene();

    // What a test sets before it asks.
    maxscript_host::SceneHost host;
    support::MemoryFiles files;

    max_file::SceneModel& model() { return host.model; }
    max_file::RenderSettings& render() { return host.model.render; }
    Json::Value& renderer(const std::wstring& class_name);
    void add_file(const std::wstring& named, bool exists = true);

    // Loads the source of the analysis script and calls it as the module does, in a host that has just
    // started. The test fails when it throws, returns something else than a text, or sets anything.
    maxscript::Text returned();
    // What that took, in steps of the language.
    std::int64_t steps() const { return steps_; }
    Json::Value analysis();
    // What it wrote into the listener.
    std::string printed() const { return maxscript::utf8_from_text(printed_); }

    // Runs a script of the plugin as the host does at its start; gives what it wrote into the listener.
    maxscript::Text run_start_script();
    // False: the host reports failure, and `result` is the error.
    bool run(const maxscript::Text& command, std::string& result);

private:
    void write(const maxscript::Text& text) override { printed_ += text; }

    maxscript::Text printed_;
    std::int64_t steps_ = 0;
};

// A document that a test writes down.
Json::Value parsed(const std::string& text);

// The members "path", "name" or "code" of a list.
std::vector<std::string> listed(const Json::Value& list, const char* member);
// Without the 107 that stands behind all others.
std::vector<std::string> error_codes(const Json::Value& analysis);

} // namespace support
