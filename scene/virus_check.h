// Runs the three scene checks in the host. Their findings are not reported back and never stop a submission.
#pragma once

// The one upward include of this layer: it only reads the record.
#include "submit/plugin_config.h"

namespace tarvo {

// Runs them in the order ADSL, ALC, CRP. Writes a WARN line on "qfx_data" after each, whatever its outcome
// (C-13), and one more when the scene's file was written meanwhile.
void check_scene_viruses(const PluginConfig& config);

} // namespace tarvo
