// The scene that is open in the stage: a copy of a real file, or one that the scenario describes.
#pragma once

#include "standin/max_file/scene_model.h"

#include <json/value.h>

#include <string>

namespace stage {

struct StageScene {
    max_file::SceneModel model; // without a path: never saved
    bool needs_save = false;
    std::wstring startup_folder; // holds the host's start-up folders; empty: there are none
    Json::Value literal;         // the scenario's "literal"; null for a real file
};

// For a scenario: `wanted` is its "scene", `given` the --scene option. Writes a literal scene into `folder`
// or copies the file there, so that the run changes nothing outside. Returns false and sets `problem` to an
// error message.
bool prepare_scene(const Json::Value& wanted, const std::wstring& given, const std::wstring& folder,
                   StageScene& scene, std::string& problem);

} // namespace stage
