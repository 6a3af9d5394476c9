#include "standin/stage/log_lines.h"

namespace stage {

namespace {

constexpr std::size_t kStampLength = 23; // 2024-03-07 09:05:02:045

bool has_stamp(const std::string& line) {
    const std::string shape = "dddd-dd-dd dd:dd:dd:ddd [";
    if (line.size() < shape.size()) {
        return false;
    }
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const bool digit = line[i] >= '0' && line[i] <= '9';
        if (shape[i] == 'd' ? !digit : line[i] != shape[i]) {
            return false;
        }
    }
    return line.find("] ", shape.size()) != std::string::npos;
}

void take_line(const std::string& line, Json::Value& entries) {
    if (has_stamp(line)) {
        const std::size_t level = kStampLength + 2;
        const std::size_t end = line.find("] ", level);
        Json::Value entry(Json::objectValue);
        entry["time"] = line.substr(0, kStampLength);
        entry["level"] = line.substr(level, end - level);
        entry["message"] = line.substr(end + 2);
        entries.append(entry);
    } else if (!entries.empty()) {
        Json::Value& message = entries[entries.size() - 1]["message"];
        message = message.asString() + "\n" + line;
    } else {
        Json::Value entry(Json::objectValue);
        entry["time"] = "";
        entry["level"] = "";
        entry["message"] = line;
        entries.append(entry);
    }
}

} // namespace

Json::Value parse_log(const std::string& text) {
    Json::Value entries(Json::arrayValue);
    std::size_t from = 0;
    while (from < text.size()) {
        const std::size_t end = text.find('\n', from);
        std::string line = text.substr(from, end == std::string::npos ? end : end - from);
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        take_line(line, entries);
        from = end == std::string::npos ? text.size() : end + 1;
    }
    return entries;
}

std::string log_channel(const std::string& file_name) {
    const std::string ending = ".log";
    if (file_name.size() <= ending.size() ||
        file_name.compare(file_name.size() - ending.size(), ending.size(), ending) != 0) {
        return std::string();
    }
    std::string channel = file_name.substr(0, file_name.size() - ending.size());
    while (!channel.empty() && channel.back() >= '0' && channel.back() <= '9') {
        channel.pop_back();
    }
    return channel;
}

} // namespace stage
