// The parts of a script virus in a scenario's literal scene: callbacks, persistent globals, helpers, and
// files in the start-up folders. The scene's file keeps them as a text after its own bytes. The folders are
// the run's own, in the scene's folder, so the run changes nothing else on this machine and the transcript
// has the files. Needs windows.h.
#pragma once

#include "standin/maxscript_host/security_scene.h"

#include <json/value.h>

#include <string>

namespace stage {

// Writes `files` ("user/a.ms" → content) below `folder`. False when one of them cannot be written.
bool write_files(const Json::Value& files, const std::wstring& folder);

// The text of a virus in the bytes of a scene's file; empty: none.
std::string infection_in(const std::string& bytes);

class Infection {
public:
    // For a host that has just started. This object must outlive the interpreter.
    void install(maxscript::Interpreter& interpreter);

    // Opens a scene: removes what the last one added to the host, adds what `wanted` says (the scenario's
    // "infection"; null: nothing), and writes that into the scene's file. `startup` has the start-up folders;
    // empty: none.
    void open(maxscript::Interpreter& interpreter, const Json::Value& wanted, const std::wstring& startup,
              const std::wstring& scene);

private:
    bool save(maxscript::Interpreter& interpreter, const std::wstring& path) const;

    maxscript_host::SecurityScene scene_;
};

} // namespace stage
