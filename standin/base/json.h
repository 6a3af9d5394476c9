// JSON as the stand-ins read and write it. The plugin's reader is not used, so that a bug in it shows.
#pragma once

#include <json/value.h>

#include <string>
#include <vector>

namespace base {

// Accepts standard JSON only: no comments, no member twice, nothing after the end. Skips a byte-order mark.
// Returns false and sets `problem` to an error message in one line when the text is not JSON.
bool parse_strictly(const std::string& text, Json::Value& root, std::string& problem);

// Null when the text is not JSON.
Json::Value parsed_or_null(const std::string& text);

// The members' names in the order in which the parsed text had them.
std::vector<std::string> members_as_written(const Json::Value& object);

// In one line and in ASCII.
std::string one_line(const Json::Value& value);

} // namespace base
