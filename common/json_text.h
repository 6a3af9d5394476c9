// JSON text in and out. What the library throws while it parses is contained here: it refuses nesting deeper
// than 1000 levels by an exception, and to a caller that is text that cannot be parsed, like any other.
// Reading a member as another type than it has still throws.
#pragma once

#include <json/value.h>

#include <string>

namespace tarvo {

// False when `text` (UTF-8) is not valid JSON; `root` is then not to be used. `refusal`, when given, receives
// the library's reason if it threw instead of answering, and is empty otherwise.
bool ParseJson(const std::string& text, Json::Value& root, std::string* refusal = nullptr);

// The library's styled layout: members in ascending key order, a closing line feed.
std::string StyledJson(const Json::Value& value);

} // namespace tarvo
