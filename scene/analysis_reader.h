// Reads the analysis text that the host's script returns. Nothing the text holds can make it throw.
#pragma once

#include "common/logger.h"
#include "scene/camera_record.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo {

// The scene as the analysis names it. Read together with the rest, reported when the dialog asks for it.
struct SceneName {
    bool readable = false; // false: the text is not JSON, or its name is not a text
    std::string refusal;   // why the JSON library gave up; empty when it only answered no
    bool found = false;    // `path` has a separator
    std::string name;      // UTF-8, after the last separator ('/' wins over '\\')
    std::string path;      // UTF-8, the full path
};

// What one reading found. Only a usable outcome is taken over into the store.
struct AnalysisOutcome {
    std::int32_t code = 0; // parse_analysis's result
    bool usable =
        false; // false: the text was no JSON, or the library could not read a value as what it is for
    std::vector<std::wstring> messages;
    std::int32_t corona_limits = 0;
    bool has_region = false;
    std::string is_region;
    bool has_cameras = false; // the reading got as far as replacing the cameras
    CameraMap cameras;
    bool has_gamma = false;
    float gamma_out = 0.0f;
    SceneName scene_name; // also of an outcome that is not usable
};

// `text` is UTF-8. Writes to `log` what it finds, one line each.
AnalysisOutcome ReadAnalysis(const std::string& text, Logger& log);

// The scene's name alone.
SceneName ReadSceneName(const std::string& text);

// Writes to `log` why there is no scene name; true when there is one.
bool ReportSceneName(const SceneName& scene, Logger& log);

} // namespace tarvo
