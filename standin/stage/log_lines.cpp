#include "standin/stage/log_lines.h"

#include "standin/base/text.h"

#include <regex>

namespace stage {

namespace {

Json::Value entry_of(const std::string& time, const std::string& level, const std::string& message) {
    Json::Value entry(Json::objectValue);
    entry["time"] = time;
    entry["level"] = level;
    entry["message"] = message;
    return entry;
}

} // namespace

Json::Value parse_log(const std::string& text) {
    // Without the message: the library's matcher recurses for each of its characters.
    static const std::regex start(R"((\d{4}-\d\d-\d\d \d\d:\d\d:\d\d:\d{3}) \[(\w*)\] )");
    Json::Value entries(Json::arrayValue);
    for (const std::string& line : base::lines_of(text)) {
        std::smatch parts;
        if (std::regex_search(line, parts, start, std::regex_constants::match_continuous)) {
            entries.append(entry_of(parts[1], parts[2], parts.suffix()));
        } else if (entries.empty()) {
            entries.append(entry_of("", "", line));
        } else {
            Json::Value& message = entries[entries.size() - 1]["message"];
            message = message.asString() + "\n" + line;
        }
    }
    return entries;
}

std::string log_channel(const std::string& file_name) {
    static const std::regex name(R"((.*\D)\d*\.log)");
    std::smatch parts;
    return std::regex_match(file_name, parts, name) ? parts[1].str() : std::string();
}

} // namespace stage
