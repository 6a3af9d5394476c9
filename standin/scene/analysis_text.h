// The analysis text of a scene, as the analysis script would return it: one JSON object whose scalars are
// texts.
#pragma once

#include "standin/scene/scene_model.h"

#include <functional>
#include <string>

namespace standin {

using FileExists = std::function<bool(const std::wstring& path)>;

// UTF-8. A referenced file counts as missing when it is neither where the scene names it, nor where it was
// found at saving, nor beside the scene. Destinations (render outputs) are no references.
std::string analysis_text(const SceneModel& model, const FileExists& exists);

} // namespace standin
