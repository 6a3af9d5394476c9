// The scene that is open in the stage: a real file, a copy of one, or one made from the scenario; and the
// answer that the analysis script gives for it. Needs windows.h.
#pragma once

#include "standin/stage/script_runner.h"

#include <json/value.h>

#include <string>

namespace stage {

struct StageScene {
    std::wstring path; // full path; empty: never saved
    bool needs_save = false;
    std::string composed; // the analysis text made from the scene, UTF-8; empty without a scene
};

// For a person: the file itself. False: `problem` is a sentence.
bool open_scene(const std::wstring& file, StageScene& scene, std::string& problem);

// For a scenario: `wanted` is its "scene" (null: none). A file is copied into `folder`, a literal scene
// written there, so that nothing outside the run changes. `base` is where relative names begin, `given` the
// --scene option.
bool prepare_scene(const Json::Value& wanted, const std::wstring& base, const std::wstring& given,
                   const std::wstring& folder, StageScene& scene, std::string& problem);

// The scenario's "analysis" (null: none) over what was composed from the scene.
AnalysisAnswer analysis_answer(const Json::Value& wanted, const StageScene& scene);

} // namespace stage
