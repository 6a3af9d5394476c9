#include "standin/client/json.h"

#include <json/reader.h>
#include <json/writer.h>

#include <algorithm>
#include <memory>

namespace desktop_client {

bool parse_strictly(const std::string& text, Json::Value& root, std::string& problem) {
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    // The root may be anything; whoever needs an object asks for it.
    builder["strictRoot"] = false;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    try {
        return reader->parse(text.data(), text.data() + text.size(), &root, &problem);
    } catch (const std::exception& error) {
        // Nesting that is too deep comes as an exception.
        problem = error.what();
        return false;
    }
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

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : ", ") + text;
    }
    return all;
}

} // namespace desktop_client
