// The part of the host that a script asks about the open scene: cameras, render settings, renderer, files.
//
//     SceneHost host;
//     host.model.cameras = {L"Camera001"};
//     install_scene_library(interpreter, host);
//     interpreter.run(u"renderWidth", u"");
//
// Files are those of the interpreter's environment. Names of queries are the host's own: "maxVersion",
// "renderers.production", "ATSOps.GetFiles", a renderer's "camera_fov", "Camera.name".
#pragma once

#include "standin/max_file/scene_model.h"
#include "standin/maxscript/interpreter.h"

#include <map>
#include <set>

namespace maxscript_host {

using max_file::SceneModel;
using maxscript::Interpreter;
using maxscript::Text;

// What the host knows. The model may be replaced between two runs.
struct SceneHost {
    SceneModel model;
    bool tracks_references = true;             // false: the tracker lists the scene and its output alone
    bool tracker_disabled = false;             // switched off by the user
    std::int32_t tracker_providers = 0;        // of asset tracking, such as a vault
    bool has_assets = true;                    // false: the asset manager knows none
    std::map<Text, std::vector<Text>> used_by; // by the folded name of a scene file: what it names
    bool tracker_is_silent = false;            // ATSOps.Silent
    bool tracker_checks_network = true;        // ATSOps.CheckNetworkPaths
    int loud_refreshes = 0;               // how often the tracker might have asked for a login, or waited
    bool undefined_map_paths = false;     // a file that is in no map folder: undefined instead of ""
    std::int32_t release = 21000;         // first item of maxVersion()
    std::int32_t milliseconds_a_time = 0; // how much later it is each time that timeStamp() is asked
    int map_path_queries = 0;             // mapPaths.getFullFilePath
    std::int32_t milliseconds = 0;        // what timeStamp() says
    Text project_folder = u"C:\\Project"; // relative paths begin here
    std::map<Text, Text> environment_variables; // by name as it is asked for
    std::set<Text> failing;                     // folded names of queries that throw
    std::vector<Text> changes; // what scripts set, in order: a script that only asks leaves none

    // Makes the query throw from now on.
    void fail_query(const Text& name) { failing.insert(maxscript::folded(name)); }
};

// `host` must outlive the interpreter. To be called once for an interpreter.
void install_scene_library(Interpreter& interpreter, SceneHost& host);

// The parts of it.
void install_scene_settings(Interpreter& interpreter, SceneHost& host);
void install_cameras(Interpreter& interpreter, SceneHost& host);
void install_renderers(Interpreter& interpreter, SceneHost& host);
void install_file_queries(Interpreter& interpreter, SceneHost& host);
void install_scene_state(Interpreter& interpreter, SceneHost& host);
// encryptScript, and fileIn for what it wrote.
void install_encrypted_scripts(Interpreter& interpreter);

// Throws a runtime error of the script when `query` is to fail.
void answer_or_fail(Interpreter& interpreter, const SceneHost& host, const Text& query);

} // namespace maxscript_host
