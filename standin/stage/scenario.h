// Reads a scenario: JSON in UTF-8, no comments, no key twice, nothing unknown. After a successful read
// every value has the type that docs/scenario.md gives it.
#pragma once

#include <json/value.h>

#include <string>

namespace stage {

// False: `problem` says where and what.
bool read_scenario(const std::string& text, Json::Value& scenario, std::string& problem);

// "en", "zh", or "any": whichever the system has.
std::string scenario_language(const Json::Value& scenario);

// The one key of an object that holds exactly one ("click" for a step).
std::string only_key(const Json::Value& object);

} // namespace stage
