// Runs the plugin's scripts in the host: the analysis and the three virus checks.
#pragma once

#include "host/host.h"
// The one upward include of this layer: it only reads the record.
#include "submit/plugin_config.h"

#include <string>

namespace tarvo {

// The script text for the host: runs the script file, then calls its entry point. A double quote in the path
// breaks the command.
std::wstring AnalysisCommand(const std::wstring& script_path);

// True when the host reports success; `result` is then the script's. Otherwise shows a box over `dialog`.
bool run_scene_analysis(WindowHandle dialog, ScriptResult& result, std::wstring script_path);

// Runs the three checks in the order ADSL, ALC, CRP. Their findings are not reported back and never stop a
// submission. Writes a WARN line on "qfx_data" after each, whatever its outcome (C-13), and one more when
// the scene's file was written meanwhile.
void check_scene_viruses(const PluginConfig& config);

} // namespace tarvo
