// The host's answers about the open scene: cameras, render settings, renderer, files.
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
using maxscript::Value;

// The state of the host. The model may be replaced between two runs.
struct SceneHost {
    SceneModel model;
    bool tracks_references = true;             // false: the tracker lists only the scene and its output
    bool tracker_disabled = false;             // by the user
    std::int32_t tracker_providers = 0;        // of asset tracking, such as a vault
    bool has_assets = true;                    // false: the asset manager knows none
    std::map<Text, std::vector<Text>> used_by; // the files that a scene file names, by its folded name
    bool tracker_is_silent = false;            // ATSOps.Silent
    bool tracker_checks_network = true;        // ATSOps.CheckNetworkPaths
    int loud_refreshes = 0;               // how often the tracker might have asked for a login, or waited
    bool undefined_map_paths = false;     // a file in no map folder: undefined instead of ""
    std::int32_t release = 21000;         // first item of maxVersion()
    std::int32_t milliseconds = 0;        // the answer of timeStamp()
    std::int32_t milliseconds_a_time = 0; // added by each call of timeStamp()
    int map_path_queries = 0;             // calls of mapPaths.getFullFilePath
    Text project_folder = u"C:\\Project"; // relative paths begin here
    std::map<Text, Text> environment_variables; // by the name in the query
    std::set<Text> failing;                     // folded names of queries that throw
    std::vector<Text> changes;                  // what scripts set, in order

    // Makes the query throw from now on.
    void fail_query(const Text& name) { failing.insert(maxscript::folded(name)); }
};

// `host` must outlive the interpreter. Call it once for an interpreter.
void install_scene_library(Interpreter& interpreter, SceneHost& host);

// Its parts.
void install_scene_settings(Interpreter& interpreter, SceneHost& host);
void install_cameras(Interpreter& interpreter, SceneHost& host);
void install_renderers(Interpreter& interpreter, SceneHost& host);
void install_file_queries(Interpreter& interpreter, SceneHost& host);
// encryptScript, and fileIn for its files.
void install_encrypted_scripts(Interpreter& interpreter);

// Stands in for the host's encrypted scripts (.mse): a header, and the script with every byte changed. It
// protects nothing; like the host it loads only the files of encryptScript. False: `bytes` are no such file.
bool decrypted_script(const std::string& bytes, std::string& script);

// Throws a runtime error of the script when `query` is one of the failing ones.
void answer_or_fail(Interpreter& interpreter, const SceneHost& host, const Text& query);
// The same before `code` runs.
maxscript::NativeCode fallible(const SceneHost& host, const Text& query, maxscript::NativeCode code);

// A class of the host; made when it is new.
maxscript::ClassPointer host_class(Interpreter& interpreter, const Text& name,
                                   const maxscript::ClassPointer& super = nullptr);
// The first argument, which counts from 1, as an index below `count`; anything else is an error.
std::size_t index_argument(const maxscript::Arguments& arguments, std::size_t count, const Text& what);

} // namespace maxscript_host
