// Compares what a scenario expects with the transcript. Both are JSON; docs/scenario.md describes them.
#pragma once

#include <json/value.h>

#include <string>

namespace stage {

// Appends to `outcomes` one entry for each kind of expectation that holds ({"place", "held"}), and one for
// each difference ({"place", "held", "expected", "got"}).
void evaluate_expectations(const Json::Value& expect, const Json::Value& transcript, const std::string& place,
                           Json::Value& outcomes);

// Appends a difference for what no run may have: an exception that escaped from the module and that the
// scenario does not expect, and a question without an answer.
void evaluate_standing_rules(const Json::Value& expect, const Json::Value& transcript, Json::Value& outcomes);

} // namespace stage
