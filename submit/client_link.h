// The exchange with the farm's desktop client on this machine: one POST, one read of the reply, and the
// reply's meaning. Synchronous, on the calling thread, with the HTTP library's own time-outs.
#pragma once

#include "common/logger.h"
#include "common/platform.h"
#include "submit/plugin_config.h"

#include <string>

struct _GUID;

namespace tarvo {

// 36 characters: upper-case hexadecimal digits and four hyphens.
std::string FormatGuid(const _GUID& guid);

// The id of a new submission; on failure empty, with an ERROR line on "qfx_http".
std::wstring NewTaskGuid();

// Writes one ERROR line: the name, run together with "error, code is " (C-52) and the thread's last error
// code. Takes `const char*`: building a std::string could overwrite GetLastError().
void LogLastError(const char* api_name, Logger& log);

// Posts `body` (UTF-8 JSON). Reports the outcome to the user and the log; deletes the submit document
// (config.jsonPath) when the exchange fails.
void PostToClient(PluginConfig config, const std::string& body, WindowHandle owner);

// Shows and logs the meaning of the reply's code; nothing for an unknown code. A reply that is not JSON, or
// whose code is not a whole number, gets a box of its own and a line on the standard output.
void HandleClientReply(const std::string& reply, WindowHandle owner);

// The meaning of a reply's code.
struct ReplyCode {
    int code;
    unsigned text_id;
    unsigned caption_id; // or kNoCaption
    const char* level;
    const char* log_text;
};

// Null for a code that is not in the table.
const ReplyCode* FindReplyCode(int code);

} // namespace tarvo
