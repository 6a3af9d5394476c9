// JSON text that may be anything.
#pragma once

#include <json/value.h>

#include <string>

namespace stage {

// Null when the text is no JSON.
Json::Value parsed_or_null(const std::string& text);

} // namespace stage
