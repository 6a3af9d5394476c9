// Holds what a scenario expects against the transcript. Both are JSON; docs/scenario.md describes them.
#pragma once

#include <json/value.h>

#include <string>

namespace stage {

// Appends one outcome to `outcomes` for each kind of expectation that holds ({"place", "held"}), and one for
// each difference ({"place", "held", "expected", "got"}). True when everything holds.
bool evaluate_expectations(const Json::Value& expect, const Json::Value& transcript, const std::string& place,
                           Json::Value& outcomes);

// What no run may have, whether the scenario speaks of it or not: an exception that left the module, a
// question nobody had an answer for.
bool evaluate_standing_rules(const Json::Value& expect, const Json::Value& transcript, Json::Value& outcomes);

} // namespace stage
