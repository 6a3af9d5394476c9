// Checks a scenario against the table of scenario_rules. Everything unknown and every wrong type is refused
// with its place; what passes can be read without further checks.
#pragma once

#include <json/value.h>

#include <string>

namespace stage {

// False: `problem` is one sentence that begins with the place, such as `steps[3].chek: unknown key`.
bool check_scenario(const Json::Value& scenario, std::string& problem);

// A place inside another one: place_of("steps[3]", "click") is "steps[3].click".
std::string place_of(const std::string& outer, const std::string& key);
std::string place_of(const std::string& outer, unsigned index);

} // namespace stage
