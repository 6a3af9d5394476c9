// The plugin's log files, read back: `2024-03-07 09:05:02:045 [INFO] message`, one event a line. A line
// without time stamp continues the message before it.
#pragma once

#include <json/value.h>

#include <string>

namespace stage {

// Entries {"time", "level", "message"}. Text that is not UTF-8 is expected to have been converted.
Json::Value parse_log(const std::string& text);

// "qfx_ui" for qfx_ui.log and for its older files qfx_ui1.log, …; empty for another file.
std::string log_channel(const std::string& file_name);

} // namespace stage
