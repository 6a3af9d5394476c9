// The submit document (the analysis result, edited with the user's choices) and the request body that points
// at it.
#pragma once

#include "common/window_handle.h"
#include "scene/scene_data.h"
#include "submit/plugin_config.h"

#include <json/value.h>

#include <string>

namespace tarvo {

enum class DocumentProblem { none, unusable_analysis, start_frame_negative, end_frame_negative, not_opened };

// What the document takes from outside the analysis.
struct DocumentChoices {
    std::string scene_file; // UTF-8 path of the scene that is submitted
    std::string scene_path; // UTF-8 path of the scene as analysed; not listed as its own reference
    const CameraMap* cameras = nullptr; // never null when the document is built
    std::int32_t num_blocks = 1;
    bool color_channel = false;
    bool ao_channel = false;
    double ao_radius = 0.0;
    std::int32_t ao_subdivs = 0;
    float gamma_out = 0.0f;
};

// Edits a parsed analysis into the document, in place. Answers none or one of the frame problems; throws
// Json::Exception on values of the wrong type.
DocumentProblem BuildSubmitDocument(Json::Value& analysis, const DocumentChoices& choices);

// The four-member request. `app_version` comes from the analysis; all texts are UTF-8.
Json::Value BuildRequestBody(const std::string& scene_file, const std::string& document_file,
                             const std::string& app_version, const std::string& archive_path);

// Writes the document into config.jsonPath and builds the request body. On true, config.jsonPath is the
// document's full path and `body` the request; a document that could not be written to its end stays as far
// as it came, and an ERROR line says so and why. On false neither has changed, no file is left, the user has
// seen a box and the log has an ERROR line. The scene store is only read (and logged to).
bool WriteSubmitDocument(SceneData& scene, WindowHandle owner, PluginConfig& config, const std::wstring& guid,
                         std::string& body);

} // namespace tarvo
