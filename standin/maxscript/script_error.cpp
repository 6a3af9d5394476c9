#include "standin/maxscript/script_error.h"

namespace maxscript {

namespace {

std::string sentence(const Place& place, const Text& message) {
    const std::string file = place.file ? utf8_from_text(*place.file) : std::string();
    return file + "(" + std::to_string(place.line) + "," + std::to_string(place.column) +
           "): " + utf8_from_text(message);
}

} // namespace

ScriptError::ScriptError(ErrorKind kind, const Place& place, const Text& message)
    : std::runtime_error(sentence(place, message)), kind_(kind), place_(place), message_(message) {}

} // namespace maxscript
