#include "standin/stage/analysis_answer.h"

#include "standin/base/json.h"
#include "standin/base/text.h"

#include <json/writer.h>

namespace stage {

namespace {

// "merge" sets members; inside an object they are merged one by one.
void merge_into(Json::Value& target, const Json::Value& members) {
    for (const std::string& key : members.getMemberNames()) {
        if (target[key].isObject() && members[key].isObject()) {
            merge_into(target[key], members[key]);
        } else {
            target[key] = members[key];
        }
    }
}

// In a scenario's own analysis the text {scene} stands for the path of the scene file.
void fill_in_scene(Json::Value& value, const std::string& path) {
    const std::string mark = "{scene}";
    if (value.isString()) {
        const std::string text = value.asString();
        const std::size_t at = text.find(mark);
        value = at == std::string::npos ? text : text.substr(0, at) + path + text.substr(at + mark.size());
    } else if (value.isArray() || value.isObject()) {
        for (Json::Value& member : value) {
            fill_in_scene(member, path);
        }
    }
}

std::wstring wide_json(Json::Value document, const std::wstring& scene_path) {
    fill_in_scene(document, base::to_utf8(scene_path));
    return base::to_wide(Json::writeString(Json::StreamWriterBuilder(), document));
}

std::wstring edited(const Json::Value& wanted, const std::wstring& returned, const std::wstring& scene_path) {
    if (!wanted.isMember("merge")) {
        return returned;
    }
    Json::Value document = base::parsed_or_null(base::to_utf8(returned));
    merge_into(document, wanted["merge"]);
    return wide_json(document, scene_path);
}

} // namespace

AnalysisAnswer analysis_answer(const Json::Value& wanted, const std::wstring& returned,
                               const std::wstring& scene_path) {
    AnalysisAnswer answer;
    answer.fails = wanted.get("fails", false).asBool();
    answer.has_text = !wanted.get("no_text", false).asBool();
    if (wanted.isMember("text")) {
        answer.text = base::to_wide(wanted["text"].asString());
    } else if (wanted.isMember("document")) {
        answer.text = wide_json(wanted["document"], scene_path);
    } else {
        answer.text = edited(wanted, returned, scene_path);
    }
    return answer;
}

} // namespace stage
