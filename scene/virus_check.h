// Runs the three scene checks in the host. What they find stays between them and the host: nothing here stops
// a submission.
#pragma once

#include "host/host.h"
#include "scene/scene_data.h"
// The one look upwards in this floor: a plain record without behaviour.
#include "submit/plugin_config.h"

namespace tarvo {

// In the order ADSL, ALC, CRP; one WARN line after each, whatever its outcome. A last one when the scene's
// file was written meanwhile.
void check_scene_viruses(Host& host, SceneData& scene, const PluginConfig& config);

} // namespace tarvo
