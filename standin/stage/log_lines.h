// Reads the plugin's log files: `2024-03-07 09:05:02:045 [INFO] message`, one event a line. A line without a
// time stamp continues the message before it.
#pragma once

#include <json/value.h>

#include <string>

namespace stage {

// Entries {"time", "level", "message"}. `text` is UTF-8.
Json::Value parse_log(const std::string& text);

// "qfx_ui" for qfx_ui.log and for its older files qfx_ui1.log, …; empty for another file.
std::string log_channel(const std::string& file_name);

} // namespace stage
