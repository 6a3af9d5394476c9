// The scene that is open in the stage: a real file, a copy of one, or one made from the scenario. Needs
// windows.h.
#pragma once

#include "standin/max_file/scene_model.h"

#include <json/value.h>

#include <string>

namespace stage {

struct StageScene {
    max_file::SceneModel model; // its path is empty for a scene that was never saved
    bool needs_save = false;
    std::wstring startup_folder; // holds the host's start-up folders; empty: there are none
    Json::Value literal;         // the scenario's "literal"; null for a real file
};

// For a person: the file itself. False: `problem` is a sentence.
bool open_scene(const std::wstring& file, StageScene& scene, std::string& problem);

// For a scenario: `wanted` is its "scene" (null: none). A file is copied into `folder`, a literal scene
// written there, so that nothing outside the run changes. `base` is where relative names begin, `given` the
// --scene option.
bool prepare_scene(const Json::Value& wanted, const std::wstring& base, const std::wstring& given,
                   const std::wstring& folder, StageScene& scene, std::string& problem);

} // namespace stage
