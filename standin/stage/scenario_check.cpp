#include "standin/stage/scenario_check.h"

#include "standin/stage/scenario_rules.h"

#include <vector>

namespace stage {

namespace {

// Parts `types` at the commas that stand in no bracket.
std::vector<std::string> alternatives(const std::string& types) {
    std::vector<std::string> parts(1);
    int depth = 0;
    for (char character : types) {
        depth += character == '[' || character == '<' || character == '{' ? 1 : 0;
        depth -= character == ']' || character == '>' || character == '}' ? 1 : 0;
        if (character == ',' && depth == 0) {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    return parts;
}

std::string inside(const std::string& type) {
    return type.substr(1, type.size() - 2);
}

struct SimpleType {
    const char* name;
    const char* words;
    bool (*fits)(const Json::Value& value);
};

const SimpleType kSimpleTypes[] = {
    {"text", "a text", [](const Json::Value& value) { return value.isString(); }},
    {"whole", "a whole number",
     [](const Json::Value& value) { return value.isInt64() && value.type() != Json::realValue; }},
    {"number", "a number", [](const Json::Value& value) { return value.isNumeric(); }},
    {"flag", "true or false", [](const Json::Value& value) { return value.isBool(); }},
    {"true", "true", [](const Json::Value& value) { return value.isBool() && value.asBool(); }},
    {"null", "null", [](const Json::Value& value) { return value.isNull(); }},
    {"any", "anything", [](const Json::Value&) { return true; }},
};

const SimpleType* simple_type(const std::string& type) {
    for (const SimpleType& simple : kSimpleTypes) {
        if (type == simple.name) {
            return &simple;
        }
    }
    return nullptr;
}

std::string words_for(const std::string& type) {
    const SimpleType* simple = simple_type(type);
    if (simple != nullptr) {
        return simple->words;
    }
    switch (type[0]) {
    case '=':
        return '"' + type.substr(1) + '"';
    case '[':
        return "a list";
    default:
        return "an object";
    }
}

// Whether the value is of this kind at all; what is inside it is looked at later.
bool kind_fits(const Json::Value& value, const std::string& type) {
    const SimpleType* simple = simple_type(type);
    if (simple != nullptr) {
        return simple->fits(value);
    }
    switch (type[0]) {
    case '=':
        return value.isString() && value.asString() == type.substr(1);
    case '[':
        return value.isArray();
    default:
        return value.isObject();
    }
}

bool is_number(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

class Check {
public:
    explicit Check(std::string& problem) : problem_(problem) {}

    bool value(const Json::Value& value, const std::string& types, const std::string& place) {
        std::string wanted;
        for (const std::string& type : alternatives(types)) {
            if (kind_fits(value, type)) {
                return content(value, type, place);
            }
            wanted += (wanted.empty() ? "" : " or ") + words_for(type);
        }
        return refuse(place, "must be " + wanted);
    }

    bool object(const Json::Value& value, const std::string& name, const std::string& place);

private:
    bool content(const Json::Value& value, const std::string& type, const std::string& place) {
        switch (type[0]) {
        case '[':
            return list(value, inside(type), place);
        case '<':
            return map(value, inside(type), place);
        case '{':
            return object(value, inside(type), place);
        default:
            return true;
        }
    }

    bool list(const Json::Value& value_list, const std::string& types, const std::string& place) {
        for (Json::ArrayIndex i = 0; i < value_list.size(); ++i) {
            if (!value(value_list[i], types, place_of(place, i))) {
                return false;
            }
        }
        return true;
    }

    bool map(const Json::Value& value_map, const std::string& types, const std::string& place) {
        const bool numbered = types[0] == '#';
        for (const std::string& key : value_map.getMemberNames()) {
            if (numbered && !is_number(key)) {
                return refuse(place_of(place, key), "the key must be a number");
            }
            if (!value(value_map[key], numbered ? types.substr(1) : types, place_of(place, key))) {
                return false;
            }
        }
        return true;
    }

    bool refuse(const std::string& place, const std::string& what) {
        problem_ = (place.empty() ? "the scenario" : place) + ": " + what;
        return false;
    }

    std::string& problem_;
};

const KeyRule* find_rule(const std::string& object, const std::string& key) {
    std::size_t count = 0;
    const KeyRule* rules = key_rules(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (object == rules[i].object && (key == rules[i].key || key + "!" == rules[i].key)) {
            return &rules[i];
        }
    }
    return nullptr;
}

// The first required key that is missing; empty when none is.
std::string missing_key(const Json::Value& value, const std::string& object) {
    std::size_t count = 0;
    const KeyRule* rules = key_rules(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::string key = rules[i].key;
        if (object == rules[i].object && key.back() == '!' &&
            !value.isMember(key.substr(0, key.size() - 1))) {
            return key.substr(0, key.size() - 1);
        }
    }
    return std::string();
}

// How many answers of the script an "analysis" gives; an edited one counts as one.
int analysis_sources(const Json::Value& analysis) {
    int given = analysis.isMember("merge") || analysis.isMember("remove") ? 1 : 0;
    for (const char* source : {"text", "document", "fails", "no_text"}) {
        given += analysis.isMember(source) ? 1 : 0;
    }
    return given;
}

bool Check::object(const Json::Value& value_object, const std::string& name, const std::string& place) {
    if (holds_exactly_one(name.c_str()) && value_object.empty()) {
        return refuse(place, "one key is missing");
    }
    for (const std::string& key : value_object.getMemberNames()) {
        const KeyRule* rule = find_rule(name, key);
        if (rule == nullptr) {
            return refuse(place_of(place, key), "unknown key");
        }
        if (!value(value_object[key], rule->type, place_of(place, key))) {
            return false;
        }
    }
    if (holds_exactly_one(name.c_str()) && value_object.size() != 1) {
        return refuse(place, "only one key may stand here");
    }
    if (name == "analysis" && analysis_sources(value_object) > 1) {
        return refuse(place, "text, document, fails, no_text and merge/remove exclude each other");
    }
    const std::string missing = missing_key(value_object, name);
    return missing.empty() || refuse(place, "the key \"" + missing + "\" is missing");
}

} // namespace

std::string place_of(const std::string& outer, const std::string& key) {
    return outer.empty() ? key : outer + "." + key;
}

std::string place_of(const std::string& outer, unsigned index) {
    return outer + "[" + std::to_string(index) + "]";
}

bool check_scenario(const Json::Value& scenario, std::string& problem) {
    if (!scenario.isObject()) {
        problem = "the scenario: must be an object";
        return false;
    }
    if (!Check(problem).object(scenario, "scenario", std::string())) {
        return false;
    }
    const Json::Value& analysis = scenario["analysis"];
    const bool needs_scene =
        analysis_sources(analysis) == 0 || analysis.isMember("merge") || analysis.isMember("remove");
    if (needs_scene && !scenario.isMember("scene")) {
        problem = "the scenario: neither \"scene\" nor an analysis of its own is given";
        return false;
    }
    return true;
}

} // namespace stage
