#include "standin/stage/json_match.h"

#include "standin/base/wildcards.h"

#include <json/writer.h>

namespace stage {

namespace {

bool is_special(const Json::Value& value) {
    return value.isObject() && value.size() == 1 && only_key(value)[0] == '$';
}

bool equal_scalars(const Json::Value& expected, const Json::Value& got) {
    if (expected.isNumeric() && got.isNumeric() && !expected.isBool() && !got.isBool()) {
        return expected.isIntegral() && got.isIntegral()
                   ? expected.asLargestInt() == got.asLargestInt()
                   : !(expected.asDouble() < got.asDouble()) && !(expected.asDouble() > got.asDouble());
    }
    return expected == got;
}

} // namespace

std::string only_key(const Json::Value& object) {
    return object.getMemberNames().front();
}

std::string compact(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, value);
}

std::string Matcher::text(unsigned number) const {
    return texts_.get(std::to_string(number), "").asString();
}

std::string Matcher::fill_in(const std::string& text_with_numbers) const {
    std::string filled;
    std::size_t from = 0;
    while (from < text_with_numbers.size()) {
        const std::size_t open = text_with_numbers.find('{', from);
        const std::size_t close =
            open == std::string::npos ? open : text_with_numbers.find_first_not_of("0123456789", open + 1);
        const bool number = close != std::string::npos && close > open + 1 && text_with_numbers[close] == '}';
        if (open == std::string::npos) {
            filled += text_with_numbers.substr(from);
            break;
        }
        filled += text_with_numbers.substr(from, open - from);
        filled +=
            number ? texts_.get(text_with_numbers.substr(open + 1, close - open - 1), "").asString() : "{";
        from = number ? close + 1 : open + 1;
    }
    return filled;
}

bool Matcher::special(const Json::Value& expected, const Json::Value& got, bool present) const {
    const std::string kind = only_key(expected);
    const Json::Value& value = expected[kind];
    if (kind == "$absent" || kind == "$any") {
        return present == (kind == "$any");
    }
    if (kind == "$text") {
        return got.isString() && got.asString() == text(value.asUInt());
    }
    if (kind == "$pattern") {
        return got.isString() && base::matches_wildcards(got.asString(), fill_in(value.asString()));
    }
    if (kind == "$contains") {
        return got.isString() && got.asString().find(fill_in(value.asString())) != std::string::npos;
    }
    if (kind == "$language") {
        return equal_scalars(value[language_], got);
    }
    return kind == "$at_least" && got.isNumeric() && got.asDouble() >= value.asDouble();
}

bool Matcher::match(const Json::Value& expected, const Json::Value& got, const std::string& place,
                    std::vector<Mismatch>& mismatches, bool present) const {
    const std::size_t before = mismatches.size();
    if (is_special(expected)) {
        if (!special(expected, got, present)) {
            mismatches.push_back({place, compact(expected), present ? compact(got) : "nothing"});
        }
    } else if (expected.isObject() && got.isObject()) {
        for (const std::string& key : expected.getMemberNames()) {
            match(expected[key], got[key], place_of(place, key), mismatches, got.isMember(key));
        }
    } else if (expected.isArray() && got.isArray()) {
        if (expected.size() != got.size()) {
            mismatches.push_back({place, std::to_string(expected.size()) + " entries: " + compact(expected),
                                  std::to_string(got.size()) + " entries: " + compact(got)});
        }
        for (Json::ArrayIndex i = 0; i < expected.size() && i < got.size(); ++i) {
            match(expected[i], got[i], place_of(place, i), mismatches);
        }
    } else if (!present || !equal_scalars(expected, got)) {
        mismatches.push_back({place, compact(expected), present ? compact(got) : "nothing"});
    }
    return mismatches.size() == before;
}

bool Matcher::matches(const Json::Value& expected, const Json::Value& got) const {
    std::vector<Mismatch> mismatches;
    return match(expected, got, std::string(), mismatches);
}

std::string place_of(const std::string& outer, const std::string& key) {
    return outer.empty() ? key : outer + "." + key;
}

std::string place_of(const std::string& outer, unsigned index) {
    return outer + "[" + std::to_string(index) + "]";
}

} // namespace stage
