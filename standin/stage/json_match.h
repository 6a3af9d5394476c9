// Compares what a scenario expects with what happened. Objects match when every expected member matches,
// lists when they have the same length and match one by one. A value can be a matcher: {"$text": 84} (that
// text of the module),
// {"$pattern": "*.7z"} (* and ?), {"$contains": "x"}, {"$at_least": 1}, {"$language": {"en": 1033, "zh": 1}}
// (the run's language decides), {"$any": true}, {"$absent": true}.
#pragma once

#include <json/value.h>

#include <string>
#include <vector>

namespace stage {

struct Mismatch {
    std::string place;
    std::string expected;
    std::string got;
};

class Matcher {
public:
    // `texts`: the module's texts by number; `language`: "en" or "zh".
    explicit Matcher(const Json::Value& texts, const std::string& language = std::string())
        : texts_(texts), language_(language) {}

    // Appends each difference. True when there is none. `present` false: the member is missing, and `got`
    // null.
    bool match(const Json::Value& expected, const Json::Value& got, const std::string& place,
               std::vector<Mismatch>& mismatches, bool present = true) const;
    bool matches(const Json::Value& expected, const Json::Value& got) const;

    // Replaces the numbers in `{31} > {6}` by the module's texts.
    std::string fill_in(const std::string& text) const;

    std::string text(unsigned number) const;

private:
    bool special(const Json::Value& expected, const Json::Value& got, bool present) const;

    const Json::Value& texts_;
    std::string language_;
};

// A place inside another one: place_of("steps[3]", "click") is "steps[3].click".
std::string place_of(const std::string& outer, const std::string& key);
std::string place_of(const std::string& outer, unsigned index);

// The one key of an object that holds exactly one ("click" for a step).
std::string only_key(const Json::Value& object);

// One line for messages.
std::string compact(const Json::Value& value);

} // namespace stage
