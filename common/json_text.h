// JSON text in and out. The library throws on nesting deeper than 1000 levels; ParseJson reports that like
// any other text that is not JSON. Reading a member as another type than its own still throws.
#pragma once

#include <json/value.h>

#include <string>

namespace tarvo {

// False when `text` (UTF-8) is not valid JSON; do not use `root` then. `refusal` receives the exception's
// text; it stays as it is without one.
bool ParseJson(const std::string& text, Json::Value& root, std::string* refusal = nullptr);

// The library's styled layout: members in ascending key order, a closing line feed.
std::string StyledJson(const Json::Value& value);

} // namespace tarvo
