// Fills a configuration record from the shell's folders and the ini file.
#pragma once

#include "scene/scene_data.h"
#include "submit/plugin_config.h"

namespace tarvo {

// Always true: a missing folder or ini file leaves the address empty and the port 0, and shows when the
// client is called. One INFO line on the store's channel.
bool LoadClientConfiguration(SceneData& scene, PluginConfig& config);

} // namespace tarvo
