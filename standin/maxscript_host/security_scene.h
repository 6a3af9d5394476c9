// The places where a script virus can hide: callbacks, persistent globals, helper nodes and the start-up
// folders. The records are plain; install_security() offers them to scripts under the host's names, with the
// errors of the 2019 host.
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
    bool stuck = false; // its removal is a runtime error
};

// A node with the parts that a virus uses.
struct SceneNode {
    Text name;
    Text type = u"Point"; // "Point", "Dummy" (helpers) or "Box" (geometry)
    bool hidden = false;
    bool frozen = false;
    bool has_script = false; // a script drives its scale
    Text script;
    bool stuck = false;   // cannot be deleted
    bool deleted = false; // using it throws
};

struct SecurityScene {
    std::vector<SceneCallback> callbacks;
    std::vector<std::shared_ptr<SceneNode>> nodes;
    bool tells_of_no_callbacks = false; // an empty listing is a line that repeats the id
    bool lists_ids = true;              // false: a listing shows callbacks without their ids
    std::set<Text> stuck_globals;       // folded: can be neither set nor removed
    Text system_startup;                // the answer of getDir; no closing separator
    Text user_startup;
    Text plugin_settings; // the folder #plugcfg
    bool save_required = false;
    // Writes the scene's file; empty: it cannot be written.
    std::function<bool(const Text& path)> save;
    std::vector<std::shared_ptr<SceneNode>> undo_list; // deleted nodes that Ctrl+Z would bring back
    std::size_t scale_reads = 0;                       // how often a script read a node's scale
    // The changes in order: "callbacks.removeScripts id", "globalVars.set name", "delete name", ….
    std::vector<Text> journal;

    // The lines in the scene's file: "callback id", "global name", "node name".
    Text saved_content(Interpreter& interpreter) const;
};

// A global that the open scene brought along.
void restore_persistent_global(Interpreter& interpreter, const Text& name, const Value& value);

// The caller owns `scene`, which must outlive the interpreter.
void install_security(Interpreter& interpreter, SecurityScene& scene);

// Its parts.
void install_callbacks(Interpreter& interpreter, SecurityScene& scene);
void install_global_pools(Interpreter& interpreter, SecurityScene& scene);
void install_nodes(Interpreter& interpreter, SecurityScene& scene);
void install_file_functions(Interpreter& interpreter, SecurityScene& scene);

} // namespace maxscript_host
