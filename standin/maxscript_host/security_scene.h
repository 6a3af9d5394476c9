// What a script virus can sit in: callbacks, persistent globals, helper nodes and the start-up folders. The
// records are plain; install_security() offers them to scripts under the host's names, with the refusals of
// the 2019 host.
#pragma once

#include "standin/maxscript/interpreter.h"

#include <map>
#include <set>

namespace maxscript_host {

using maxscript::Interpreter;
using maxscript::Text;
using maxscript::Value;

struct SceneCallback {
    Text event; // without the '#'
    Text id;    // empty: none
    Text script;
    bool persistent = false;
    bool stuck = false; // asking for its removal is a runtime error
};

// A node as far as a virus uses one.
struct SceneNode {
    Text name;
    Text type = u"Point"; // "Point", "Dummy" (helpers) or "Box" (geometry)
    bool hidden = false;
    bool frozen = false;
    bool has_script = false; // a script drives its scale
    Text script;
    bool stuck = false;   // cannot be deleted
    bool deleted = false; // what scripts still hold of it throws
};

struct SecurityScene {
    std::vector<SceneCallback> callbacks;
    std::vector<std::shared_ptr<SceneNode>> nodes;
    bool tells_of_no_callbacks = false; // a listing without any is a line that repeats the id
    bool lists_ids = true;              // false: a listing shows each callback without its id
    std::set<Text> stuck_globals;       // folded: can be neither set nor removed
    Text system_startup;                // what getDir answers; no closing separator
    Text user_startup;
    Text plugin_settings; // the folder #plugcfg
    bool save_required = false;
    // Writes the scene's file; empty: it cannot be written.
    std::function<bool(const Text& path)> save;
    std::vector<std::shared_ptr<SceneNode>> undo_list; // nodes that were deleted and would come back
    std::size_t scale_reads = 0;                       // how often a node's scale was asked for
    // What was changed, in order: "callbacks.removeScripts id", "globalVars.set name", "delete name", ….
    std::vector<Text> journal;

    // In order of the scene.
    std::vector<Text> node_names() const;
    std::vector<Text> callback_ids() const;
    // What a file of this scene keeps, a line each: "callback id", "global name", "node name".
    Text saved_content(Interpreter& interpreter) const;
    // As Ctrl+Z does, all steps.
    void undo();
};

// A global that the open scene brought along.
void restore_persistent_global(Interpreter& interpreter, const Text& name, const Value& value);

// `scene` stays the caller's and outlives the interpreter.
void install_security(Interpreter& interpreter, SecurityScene& scene);

// Its parts.
void install_callbacks(Interpreter& interpreter, SecurityScene& scene);
void install_global_pools(Interpreter& interpreter, SecurityScene& scene);
void install_nodes(Interpreter& interpreter, SecurityScene& scene);
void install_startup_folders(Interpreter& interpreter, SecurityScene& scene);
void install_binary_streams(Interpreter& interpreter);
void install_saving(Interpreter& interpreter, SecurityScene& scene);
void install_ini_settings(Interpreter& interpreter);

} // namespace maxscript_host
