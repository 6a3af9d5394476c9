// What a scenario's literal scene has of a script virus: callbacks, persistent globals, helpers, and files in
// the start-up folders. What the scene's file keeps of it is a text behind the file's own bytes. The folders
// are the run's own, below the scene's, so nothing on this machine is touched and the transcript shows what
// became of the files. Needs windows.h.
#pragma once

#include "standin/maxscript_host/security_scene.h"

#include <json/value.h>

#include <string>

namespace stage {

// Writes `files` ("user/a.ms" → content) below `folder`. False when one of them cannot be written.
bool write_files(const Json::Value& files, const std::wstring& folder);

// What the scene's file keeps of a virus, as its bytes say; empty: nothing.
std::string infection_in(const std::string& bytes);

class Infection {
public:
    // For a host that has just started; this object outlives the interpreter.
    void install(maxscript::Interpreter& interpreter);

    // A scene is opened: what the one before it brought along goes, what `wanted` (the scenario's
    // "infection"; null: nothing) says comes, and goes into the scene's file. `startup` holds the start-up
    // folders; empty: there are none.
    void open(maxscript::Interpreter& interpreter, const Json::Value& wanted, const std::wstring& startup,
              const std::wstring& scene);

private:
    bool save(maxscript::Interpreter& interpreter, const std::wstring& path) const;

    maxscript_host::SecurityScene scene_;
};

} // namespace stage
