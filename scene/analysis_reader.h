// Reads the analysis text that the host's script returns. Nothing the text holds can make it throw.
#pragma once

#include "common/logger.h"
#include "scene/camera_record.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo {

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
};

// `text` is UTF-8. Writes to `log` what it finds, one line each.
AnalysisOutcome ReadAnalysis(const std::string& text, Logger& log);

// The scene's full path as the analysis names it, and the part after its last separator ('/' wins over '\').
struct SceneName {
    bool found = false; // there is a separator; without one the path stands alone
    std::string name;   // UTF-8
    std::string path;   // UTF-8
};

// Writes to `log` why nothing was found.
SceneName ReadSceneName(const std::string& text, Logger& log);

} // namespace tarvo
