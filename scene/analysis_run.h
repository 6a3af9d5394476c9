// Runs the analysis script in the host.
#pragma once

#include "host/host.h"

#include <string>

namespace tarvo {

// The text handed to the host: runs the script file, then calls its entry point. A double quote in the path
// is not escaped and breaks the command.
std::wstring AnalysisCommand(const std::wstring& script_path);

// True when the host reports success; `result` then holds what the script returned. Otherwise a box over
// `dialog` has told the user.
bool run_scene_analysis(WindowHandle dialog, ScriptResult& result, std::wstring script_path);

} // namespace tarvo
