// JSON as the client reads and writes it. It does not share the plugin's reading: it is the other side.
#pragma once

#include <json/value.h>

#include <string>
#include <vector>

namespace desktop_client {

// Takes standard JSON only: no comments, no member twice, nothing behind the end. False: `problem` says why.
bool parse_strictly(const std::string& text, Json::Value& root, std::string& problem);

// The members' names in the order in which the parsed text had them.
std::vector<std::string> members_as_written(const Json::Value& object);

// On one line and in ASCII.
std::string one_line(const Json::Value& value);

std::string joined(const std::vector<std::string>& texts);

} // namespace desktop_client
