#include "tests/fuzz/support/analysis_mutator.h"

#include "common/json_text.h"

#include <json/writer.h>

#include <cstring>

namespace fuzz {

namespace {

constexpr const char* kMembers[] = {
    "name",        "version",        "app_version",  "missing_file", "same_file",   "reference_file",
    "errors",      "corona_setting", "is_region",    "cameras",      "image_width", "image_height",
    "start_frame", "end_frame",      "image_format", "vray_setting", "gamma_out",   "enable_blocking",
    "num_blocks",  "max_options",    "unknown",      "\xE7\x9B\xB8"};
constexpr const char* kLists[] = {"cameras", "reference_file", "missing_file", "same_file"};

struct Group {
    const char* name;
    const char* members[3];
};
constexpr Group kGroups[] = {
    {"corona_setting", {"pass_limit", "time_limit", "noise_level_limit"}},
    {"vray_setting", {"camera_override_fov", "camera_fov", "is_spherical"}},
    {"errors", {"error_code", "error_code", "other"}},
};

constexpr const char* kNumbers[] = {"0",     "1",           "-1",  "100",  "640",        "107",
                                    "359.9", "360",         "2.2", "",     "2147483647", "-2147483649",
                                    "-0",    " -12 frames", "abc", "1e10", "inf",        "nan",
                                    "360.0", "9999999999",  "-0.5"};
constexpr const char* kNames[] = {"Camera001",
                                  "",
                                  " ",
                                  ".",
                                  "Cam.",
                                  "Cam ",
                                  " Cam",
                                  "Cam:01",
                                  "\xE7\x9B\xB8\xE6\x9C\xBA",
                                  "\xF0\x9F\x98\x80",
                                  "a/b",
                                  "*?\"<>|\\",
                                  "\xD0\x96",
                                  "\xED\xA0\x80",
                                  "Cam\t"};
constexpr const char* kPaths[] = {
    "C:\\scenes\\a.max",           "C:/scenes/a.max", "C:\\x\\\xD0\x96.jpg", "a.max", "", "C:/x\\y/",
    "\\\\server\\share\\wood.jpg", "C:\\x\\\xD4\xAF", "C:\\x\\\xD4\xB0"};

template <class Array>
constexpr std::size_t count_of(const Array& array) {
    return sizeof array / sizeof array[0];
}

bool is_list(const std::string& member) {
    for (const char* list : kLists) {
        if (member == list) {
            return true;
        }
    }
    return false;
}

} // namespace

std::string AnalysisMutator::changed(std::string text) {
    static const char* const kPieces[] = {
        " ", ".", "/", "\\", ":", "\xD0\x96", "\xF0\x9F\x98\x80", "\xEF\xBF\xBD", "-", "0", "\"", "\n"};
    if (one_in(12)) {
        return text + std::string(250 + below(20), 'a') + kPieces[below(count_of(kPieces))];
    }
    if (one_in(12)) {
        return text + std::string(1, '\0') + "b";
    }
    return text.insert(below(text.size() + 1), kPieces[below(count_of(kPieces))]);
}

std::string AnalysisMutator::name() {
    const std::string text = kNames[below(count_of(kNames))];
    return one_in(4) ? changed(text) : text;
}

std::string AnalysisMutator::path() {
    const std::string text = kPaths[below(count_of(kPaths))];
    return one_in(4) ? changed(text) : text;
}

std::string AnalysisMutator::number() {
    return kNumbers[below(count_of(kNumbers))];
}

Json::Value AnalysisMutator::odd() {
    switch (below(9)) {
    case 0:
        return Json::Value();
    case 1:
        return Json::Value(one_in(2));
    case 2:
        return Json::Value(static_cast<Json::Int>(below(4)) - 2);
    case 3:
        return Json::Value(one_in(2) ? 1.5 : -1e300);
    case 4:
        return Json::Value(Json::arrayValue);
    case 5:
        return Json::Value(Json::objectValue);
    case 6:
        return Json::Value(name());
    case 7: {
        Json::Value list(Json::arrayValue);
        list.append(number());
        return list;
    }
    default:
        return Json::Value(Json::UInt64(18446744073709551615u));
    }
}

Json::Value AnalysisMutator::fitting(const std::string& member) {
    if (member == "name") {
        return path();
    }
    if (member == "is_region" || member == "is_spherical") {
        return one_in(2) ? "true" : "false";
    }
    if (member == "camera_override_fov") {
        return one_in(2);
    }
    if (is_list(member)) {
        Json::Value list(Json::arrayValue);
        for (std::size_t entry = below(4); entry > 0; --entry) {
            change_list(list, member.c_str());
        }
        return list;
    }
    return one_in(6) ? Json::Value(name()) : Json::Value(number());
}

void AnalysisMutator::change_list(Json::Value& list, const char* member) {
    if (!list.isArray()) {
        list = Json::Value(Json::arrayValue);
    }
    Json::Value removed;
    const std::string key = std::strcmp(member, "cameras") == 0 ? "name" : "path";
    const auto at = static_cast<Json::ArrayIndex>(below(list.size()));
    switch (list.empty() ? 0 : below(6)) {
    case 0:
    case 1: {
        Json::Value entry(Json::objectValue);
        entry[key] = one_in(10) ? odd() : Json::Value(key == "name" ? name() : path());
        list.append(entry);
        break;
    }
    case 2:
        list.removeIndex(at, &removed);
        break;
    case 3:
        list.append(Json::Value(list[at]));
        break;
    case 4:
        list[at] = odd();
        break;
    default:
        if (list[at].isObject()) {
            list[at][one_in(3) ? "size" : key] = one_in(2) ? odd() : Json::Value(path());
        }
        break;
    }
}

void AnalysisMutator::change_group(Json::Value& analysis) {
    const Group& group = kGroups[below(count_of(kGroups))];
    Json::Value& value = analysis[group.name];
    if (!value.isObject()) {
        value = Json::Value(Json::objectValue);
    }
    const std::string member = group.members[below(3)];
    if (member == "error_code") {
        if (!value[member].isArray()) {
            value[member] = Json::Value(Json::arrayValue);
        }
        Json::Value entry(Json::objectValue);
        entry["code"] = one_in(2) ? Json::Value("107") : fitting("code");
        value[member].append(one_in(8) ? odd() : entry);
    } else if (one_in(5)) {
        value.removeMember(member);
    } else {
        value[member] = one_in(6) ? odd() : one_in(2) ? Json::Value("0") : fitting(member);
    }
}

// Deeper than the library reads now and then.
void AnalysisMutator::nest(Json::Value& value) {
    for (std::size_t level = one_in(300) ? 1010 : 1 + below(3); level > 0; --level) {
        Json::Value outer(one_in(2) ? Json::arrayValue : Json::objectValue);
        if (outer.isArray()) {
            outer.append(Json::Value()).swap(value);
        } else {
            outer[one_in(2) ? "path" : "name"].swap(value);
        }
        value.swap(outer);
    }
}

void AnalysisMutator::change_once(Json::Value& analysis) {
    const std::string member = kMembers[below(count_of(kMembers))];
    const char* const list = kLists[below(count_of(kLists))];
    switch (below(10)) {
    case 0:
        analysis.removeMember(member);
        break;
    case 1:
        analysis[member] = odd();
        break;
    case 2:
        if (analysis[member].isString()) {
            analysis[member] = changed(analysis[member].asString());
        } else {
            nest(analysis[member]);
        }
        break;
    case 3:
        analysis[member].swap(analysis[kMembers[below(count_of(kMembers))]]);
        break;
    case 4:
    case 5:
        change_group(analysis);
        break;
    case 6:
    case 7:
        change_list(analysis[list], list);
        break;
    default:
        analysis[member] = fitting(member);
        break;
    }
}

void AnalysisMutator::change(Json::Value& analysis) {
    if (!analysis.isObject()) {
        analysis = typical_analysis();
    }
    for (std::size_t times = 1 + below(3); times > 0; --times) {
        change_once(analysis);
    }
    if (one_in(200)) {
        analysis = odd();
    }
}

void AnalysisMutator::change_choices(Json::Value& choices, const Json::Value& analysis) {
    if (!choices.isObject()) {
        choices = Json::Value(Json::objectValue);
    }
    const bool has_name = analysis.isObject() && analysis.get("name", Json::Value()).isString();
    static const char* const kFlags[] = {"color_channel", "ao_channel"};
    static const char* const kReals[] = {"ao_radius", "gamma_out"};
    static const double kValues[] = {0.0, 1.0, 2.2, 1e-7, 1e30, -1.5, 1000.0, 0.1};
    switch (below(6)) {
    case 0:
        choices["scene_path"] = has_name && one_in(2) ? analysis["name"] : Json::Value(path());
        break;
    case 1:
        choices["scene_file"] = path();
        break;
    case 2:
        choices["num_blocks"] = one_in(2) ? 1 : one_in(2) ? 10 : 64;
        break;
    case 3:
        choices[kFlags[below(2)]] = one_in(2);
        break;
    case 4:
        choices[kReals[below(2)]] = kValues[below(count_of(kValues))];
        break;
    default: {
        Json::Value camera(Json::objectValue);
        camera["name"] = name();
        camera["img_output_name"] = name();
        camera["checked"] = !one_in(3);
        camera["start_frame"] = static_cast<Json::Int>(below(200)) - 20;
        Json::Value& cameras = choices["cameras"];
        if (!cameras.isArray() || one_in(5)) {
            cameras = Json::Value(Json::arrayValue);
        }
        cameras.append(camera);
        break;
    }
    }
}

void AnalysisMutator::cross(Json::Value& analysis, const Json::Value& other) {
    if (!analysis.isObject() || !other.isObject() || other.empty()) {
        change(analysis);
        return;
    }
    const Json::Value::Members members = other.getMemberNames();
    for (std::size_t times = 1 + below(3); times > 0; --times) {
        const std::string& member = members[below(members.size())];
        analysis[member] = other[member];
    }
}

Json::Value typical_analysis() {
    Json::Value analysis;
    tarvo::ParseJson(R"({"name":"C:\\scenes\\a.max","version":"21.0","app_version":"2019","cameras":
        [{"name":"Camera001"},{"name":"Cam 2"}],"reference_file":[{"path":"C:\\scenes\\a.max"},{"path":
        "C:\\x\\wood.jpg"}],"image_width":"640","image_height":"480","image_format":"jpg","start_frame":
        "0","end_frame":"100","gamma_out":"2.2","is_region":"false"})",
                     analysis);
    return analysis;
}

std::string compact(const Json::Value& value, std::size_t limit) {
    Json::FastWriter writer;
    std::string text = writer.write(value);
    return text.size() > limit ? std::string() : text;
}

Json::Value from_buffer(const std::uint8_t* data, std::size_t size) {
    Json::Value value;
    const std::string text(reinterpret_cast<const char*>(data), size);
    return tarvo::ParseJson(text, value) ? value : Json::Value();
}

std::size_t to_buffer(const Json::Value& value, std::uint8_t* data, std::size_t capacity) {
    const std::string text = compact(value, capacity);
    std::memcpy(data, text.data(), text.size());
    return text.size();
}

} // namespace fuzz
