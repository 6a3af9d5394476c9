// The conversation with the farm's desktop client on this machine: one POST, one read of the reply, and what
// the reply means. Synchronous, on the calling thread, with the HTTP library's own time-outs.
#pragma once

#include "common/logger.h"
#include "common/window_handle.h"
#include "submit/plugin_config.h"

#include <string>

namespace tarvo {

// One ERROR line: the name, run together with "error, code is " (C-52) and the thread's last error code.
// Takes `const char*`: building a std::string could overwrite GetLastError().
void LogLastError(const char* api_name, Logger& log);

// Posts `body` (UTF-8 JSON). Tells the user and the log the outcome; on a failed exchange the submit document
// (config.jsonPath) is deleted.
void PostToClient(PluginConfig config, const std::string& body, WindowHandle owner);

// Shows what the reply's code means and logs it. A code that is not known shows nothing. A reply that is not
// JSON, or whose code is no whole number, gets one box of its own and a line on the standard output.
void HandleClientReply(const std::string& reply, WindowHandle owner);

} // namespace tarvo
