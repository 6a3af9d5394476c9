// Reads a scenario: JSON in UTF-8, no comments, no member twice. docs/scenario.schema.json says what it may
// hold, and tools/check_scenarios.py checks it; the stage itself takes that for granted.
#pragma once

#include <json/value.h>

#include <string>

namespace stage {

// Returns false and sets `problem` to an error message when the text is not a JSON object.
bool read_scenario(const std::string& text, Json::Value& scenario, std::string& problem);

// "en", "zh", or "any": whichever the system has.
std::string scenario_language(const Json::Value& scenario);

// The one key of an object that holds exactly one ("click" for a step).
std::string only_key(const Json::Value& object);

} // namespace stage
