// The submit document (the analysis, edited with the user's choices) and the request body that names it.
#pragma once

#include "common/platform.h"
#include "scene/scene_data.h"
#include "submit/plugin_config.h"

#include <json/value.h>

#include <string>

namespace tarvo {

enum class DocumentProblem { none, unusable_analysis, start_frame_negative, end_frame_negative, not_opened };

// Edits a parsed analysis into the document, in place. `scene_file` is the UTF-8 path of the submitted scene;
// the cameras and the options come from `scene`, which is only read. Returns none or one of the frame
// problems; throws Json::Exception on values of the wrong type.
DocumentProblem BuildSubmitDocument(Json::Value& analysis, SceneData& scene, const std::string& scene_file);

// The request's JSON object. `app_version` comes from the analysis; all texts are UTF-8.
Json::Value BuildRequestBody(const std::string& scene_file, const std::string& document_file,
                             const std::string& app_version, const std::string& archive_path);

// Writes the document into the folder config.jsonPath and builds the request body. On true, config.jsonPath
// is the document's full path and `body` the request; a document that was cut short stays, and an ERROR line
// gives the reason. On false neither has changed, no file is left, the user has seen a box and the log has an
// ERROR line. The scene store is only read (and logged to).
bool WriteSubmitDocument(SceneData& scene, WindowHandle owner, PluginConfig& config, const std::wstring& guid,
                         std::string& body);

} // namespace tarvo
