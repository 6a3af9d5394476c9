// Runs the analysis script in the host.
#pragma once

#include "host/host.h"

#include <string>

namespace tarvo {

// The script text for the host: runs the script file, then calls its entry point. A double quote in the path
// breaks the command.
std::wstring AnalysisCommand(const std::wstring& script_path);

// True when the host reports success; `result` is then the script's. Otherwise shows a box over `dialog`.
bool run_scene_analysis(WindowHandle dialog, ScriptResult& result, std::wstring script_path);

} // namespace tarvo
