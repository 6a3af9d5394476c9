// What stops a script.
#pragma once

#include "standin/maxscript/value.h"

#include <stdexcept>

namespace maxscript {

struct Place {
    std::shared_ptr<const Text> file; // null: a text without a name
    int line = 0;                     // from 1; 0: unknown
    int column = 0;                   // from 1, in UTF-16 units
};

enum class ErrorKind : std::uint8_t {
    syntax,  // the text is no program
    check,   // it is one, but is refused: an unknown name, something newer than the host
    runtime, // stopped while running; try … catch sees these only
    limit    // too many steps or too deep; try … catch does not see it
};

// what() is "file(line,column): message" in UTF-8.
class ScriptError : public std::runtime_error {
public:
    ScriptError(ErrorKind kind, const Place& place, const Text& message);

    ErrorKind kind() const { return kind_; }
    const Place& place() const { return place_; }
    Text file() const { return place_.file ? *place_.file : Text(); }
    int line() const { return place_.line; }
    int column() const { return place_.column; }
    const Text& message() const { return message_; }

private:
    ErrorKind kind_;
    Place place_;
    Text message_;
};

} // namespace maxscript
