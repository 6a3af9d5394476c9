#include "standin/stage/scenario.h"

#include "standin/base/json.h"

namespace stage {

bool read_scenario(const std::string& text, Json::Value& scenario, std::string& problem) {
    if (!base::parse_strictly(text, scenario, problem)) {
        problem = "not valid JSON: " + problem;
        return false;
    }
    problem = scenario.isObject() ? "" : "the scenario is not an object";
    return scenario.isObject();
}

std::string scenario_language(const Json::Value& scenario) {
    return scenario.get("language", "en").asString();
}

std::string only_key(const Json::Value& object) {
    return object.getMemberNames().front();
}

} // namespace stage
