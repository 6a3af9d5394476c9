#include "standin/stage/scenario.h"

#include "standin/stage/scenario_check.h"

#include <json/reader.h>

#include <exception>
#include <memory>

namespace stage {

namespace {

// The library joins its messages with line feeds and stars; one sentence is wanted.
std::string one_line(const std::string& text) {
    std::string line;
    for (char character : text) {
        const bool blank = character == '\n' || character == '\r' || character == ' ' || character == '*';
        if (!blank) {
            line += character;
        } else if (!line.empty() && line.back() != ' ') {
            line += ' ';
        }
    }
    while (!line.empty() && line.back() == ' ') {
        line.pop_back();
    }
    return line;
}

std::string without_byte_order_mark(const std::string& text) {
    return text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? text.substr(3) : text;
}

bool parse(const std::string& text, Json::Value& value, std::string& problem) {
    Json::CharReaderBuilder builder;
    builder["allowComments"] = false;
    builder["rejectDupKeys"] = true;
    builder["failIfExtra"] = true;
    builder["allowTrailingCommas"] = false;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    try {
        std::string errors;
        if (reader->parse(text.data(), text.data() + text.size(), &value, &errors)) {
            return true;
        }
        problem = "not valid JSON: " + one_line(errors);
    } catch (const std::exception& error) { // nesting deeper than the library takes
        problem = std::string("not valid JSON: ") + error.what();
    }
    return false;
}

} // namespace

bool read_scenario(const std::string& text, Json::Value& scenario, std::string& problem) {
    return parse(without_byte_order_mark(text), scenario, problem) && check_scenario(scenario, problem);
}

std::string scenario_language(const Json::Value& scenario) {
    return scenario.get("language", "en").asString();
}

std::string only_key(const Json::Value& object) {
    return object.getMemberNames().front();
}

} // namespace stage
