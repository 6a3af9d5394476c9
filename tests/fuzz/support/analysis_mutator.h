// Changes an analysis as one who knows its format: members, cameras, paths, the types that they should have
// and others, nesting. What results is always JSON.
#pragma once

#include <json/value.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace fuzz {

class AnalysisMutator {
public:
    explicit AnalysisMutator(unsigned seed) : random_(seed) {}

    // A few changes. `analysis` may be anything.
    void change(Json::Value& analysis);

    // The same for the user's choices: {"scene_file", "scene_path", "num_blocks", …, "cameras": […]}.
    void change_choices(Json::Value& choices, const Json::Value& analysis);

    // A member of `other` in place of one of `analysis`, or beside them.
    void cross(Json::Value& analysis, const Json::Value& other);

    bool one_in(unsigned count) { return below(count) == 0; }

private:
    std::size_t below(std::size_t count) { return count == 0 ? 0 : random_() % count; }
    void change_once(Json::Value& analysis);
    void change_list(Json::Value& list, const char* member);
    void change_group(Json::Value& analysis);
    void nest(Json::Value& value);
    Json::Value fitting(const std::string& member);
    Json::Value odd();
    std::string name();
    std::string path();
    std::string number();
    std::string changed(std::string text);

    std::minstd_rand random_;
};

// A whole analysis as the script writes one, to begin with.
Json::Value typical_analysis();

// The text without line ends; empty when it would be longer than `limit`.
std::string compact(const Json::Value& value, std::size_t limit);

// What libFuzzer has in its buffer, as JSON; null when it is none.
Json::Value from_buffer(const std::uint8_t* data, std::size_t size);

// Into libFuzzer's buffer; 0 when it does not fit.
std::size_t to_buffer(const Json::Value& value, std::uint8_t* data, std::size_t capacity);

} // namespace fuzz
