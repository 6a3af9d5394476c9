// A scene that a scenario describes: its "literal", as the model of a scene.
#pragma once

#include "standin/max_file/scene_model.h"

#include <json/value.h>

namespace stage {

max_file::SceneModel literal_model(const Json::Value& wanted);

} // namespace stage
