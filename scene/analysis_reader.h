// Reads the analysis text that the host's script returns. No text makes these functions throw.
#pragma once

#include "common/logger.h"
#include "scene/camera.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo {

// The scene's name and path in the analysis.
struct SceneName {
    bool readable = false; // false: the text is not JSON, or its name is not a text
    std::string refusal;   // what the JSON library threw; empty when it threw nothing
    bool found = false;    // `path` has a separator
    std::string name;      // UTF-8, after the last separator ('/' wins over '\\')
    std::string path;      // UTF-8, the full path
};

// What one reading found. Only a usable outcome enters the store.
struct AnalysisOutcome {
    std::int32_t code = 0; // parse_analysis's result
    bool usable = false;   // false: the text is not JSON, or a value has the wrong type
    std::vector<std::wstring> messages;
    std::int32_t corona_limits = 0;
    bool has_region = false;
    std::string is_region;
    bool has_cameras = false; // `cameras` replaces the store's, also when it is empty
    CameraMap cameras;
    bool has_gamma = false;
    float gamma_out = 0.0f;
    SceneName scene_name; // also in an outcome that is not usable
};

// `text` is UTF-8. Logs its findings, one line each.
AnalysisOutcome ReadAnalysis(const std::string& text, Logger& log);

// The scene's name alone.
SceneName ReadSceneName(const std::string& text);

// True when there is a scene name; logs why there is none.
bool ReportSceneName(const SceneName& scene, Logger& log);

// One ERROR line with the JSON library's reason; no line for an empty reason: the text is not JSON.
void LogUnusableAnalysis(const std::string& reason, Logger& log);

// The error code for which the dialog shows a notice: the analysis could not read everything.
constexpr int kIncompleteAnalysis = 107;

// The log line for an error code of the analysis: the number and its meaning in words.
std::string AnalysisCodeLine(int code);

} // namespace tarvo
