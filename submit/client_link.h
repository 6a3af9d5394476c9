// The conversation with the farm's desktop client on this machine: one POST, one read of the reply, and what
// the reply means. Synchronous, on the calling thread, with the HTTP library's own time-outs.
#pragma once

#include "common/logger.h"
#include "common/message_box.h"
#include "submit/plugin_config.h"

#include <string>

namespace tarvo {

// One ERROR line: the name, run together with "error, code is " and the thread's last error code. The name is
// no std::string so that nothing stands between the failed call and the reading of its code.
void LogLastError(const char* api_name, Logger& log);

// Posts `body` (UTF-8 JSON). Tells the user and the log the outcome; on a failed exchange the submit document
// (config.jsonPath) is deleted.
void PostToClient(PluginConfig config, const std::string& body, MessageBoxes& boxes, WindowHandle owner);

// Shows what the reply's code means and logs it. A code that is not known shows nothing. A reply that is not
// JSON, or whose code is no whole number, gets one box of its own and a line on the standard output.
void HandleClientReply(const std::string& reply, MessageBoxes& boxes, WindowHandle owner);

} // namespace tarvo
