#include "standin/base/json.h"

#include "standin/base/text.h"

#include <json/reader.h>
#include <json/writer.h>

#include <algorithm>
#include <exception>
#include <memory>

namespace base {

namespace {

bool parse(const Json::CharReaderBuilder& builder, const std::string& text, Json::Value& root,
           std::string& problem) {
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    try {
        return reader->parse(text.data(), text.data() + text.size(), &root, &problem);
    } catch (const std::exception& error) { // nested too deep for the library
        problem = error.what();
        return false;
    }
}

} // namespace

bool parse_strictly(const std::string& text, Json::Value& root, std::string& problem) {
    constexpr const char* mark = "\xEF\xBB\xBF";
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    // Any root is valid; a caller that needs an object checks for it.
    builder["strictRoot"] = false;
    if (parse(builder, text.compare(0, 3, mark) == 0 ? text.substr(3) : text, root, problem)) {
        return true;
    }
    // The library starts each message with a star and ends it with a line feed.
    std::replace(problem.begin(), problem.end(), '*', ' ');
    problem = collapsed(problem);
    return false;
}

Json::Value parsed_or_null(const std::string& text) {
    Json::Value value;
    std::string ignored;
    return parse(Json::CharReaderBuilder(), text, value, ignored) ? value : Json::Value();
}

std::vector<std::string> members_as_written(const Json::Value& object) {
    std::vector<std::string> names = object.getMemberNames();
    std::sort(names.begin(), names.end(), [&object](const std::string& left, const std::string& right) {
        return object[left].getOffsetStart() < object[right].getOffsetStart();
    });
    return names;
}

std::string one_line(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    return Json::writeString(builder, value);
}

} // namespace base
