// The kinds of expectations that are more than a plain comparison. Used by expectations.cpp only.
#pragma once

#include "standin/stage/json_match.h"

#include <json/value.h>

#include <string>
#include <vector>

namespace stage {

// One expectation under way: what happened, where it stands, and the list that takes the differences.
struct Check {
    const Matcher& matcher;
    const Json::Value& transcript;
    std::string place;
    std::vector<Mismatch>& mismatches;

    void differ(const std::string& where, const std::string& expected, const std::string& got) const {
        mismatches.push_back({where, expected, got});
    }
    void compare(const Json::Value& expected, const Json::Value& got) const {
        matcher.match(expected, got, place, mismatches);
    }
};

void check_boxes(const Check& check, const Json::Value& wanted);
void check_commands(const Check& check, const Json::Value& wanted);
void check_files(const Check& check, const Json::Value& wanted);
void check_no_files(const Check& check, const Json::Value& wanted);
void check_log(const Check& check, const Json::Value& wanted);
void check_host_calls(const Check& check, const Json::Value& wanted);

bool holds_number(const Json::Value& numbers, const Json::Value& number);

// The member `key` of every entry.
Json::Value texts_of(const Json::Value& entries, const char* key);

} // namespace stage
