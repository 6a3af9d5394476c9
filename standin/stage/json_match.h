// Compares what a scenario expects with what happened. Objects match when every expected member matches,
// lists when they have the same length and match one by one. In place of a value may stand {"$text": 84}
// (that text of the module), {"$pattern": "*.7z"} (* and ?), {"$contains": "x"}, {"$at_least": 1},
// {"$at_most": 1}, {"$language": {"en": 1033, "zh": 1}} (the run's language decides), {"$any": true},
// {"$absent": true}.
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

    // Appends what differs; true when nothing does. `got` null with `present` false: there is no such member.
    bool match(const Json::Value& expected, const Json::Value& got, const std::string& place,
               std::vector<Mismatch>& mismatches, bool present = true) const;
    bool matches(const Json::Value& expected, const Json::Value& got) const;

    // `{31} > {6}` with the module's texts in place of the numbers.
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

// One line for messages.
std::string compact(const Json::Value& value);

} // namespace stage
