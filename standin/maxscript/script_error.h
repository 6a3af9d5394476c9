// What stops a script, and where.
#pragma once

#include "standin/maxscript/value.h"

#include <stdexcept>

namespace maxscript {

struct Spot {
    const Text* file = nullptr; // kept by the interpreter; null: a text without a name
    int line = 0;               // from 1; 0: unknown
    int column = 0;             // from 1, in UTF-16 units
};

enum class ErrorKind : std::uint8_t {
    syntax,  // the text is no program
    check,   // the program is refused: an unknown name, something newer than the host
    runtime, // stopped while running; try … catch catches these only
    limit    // too many steps or too deep
};

// what() is "file(line,column): message" in UTF-8.
class ScriptError : public std::runtime_error {
public:
    ScriptError(ErrorKind kind, const Spot& spot, const Text& message)
        : std::runtime_error(utf8_from_text((spot.file != nullptr ? *spot.file : Text()) + u"(" +
                                            text_from_number(spot.line) + u"," +
                                            text_from_number(spot.column) + u"): " + message)),
          kind_(kind), line_(spot.line), column_(spot.column), message_(message) {}

    ErrorKind kind() const { return kind_; }
    int line() const { return line_; }
    int column() const { return column_; }
    const Text& message() const { return message_; }

private:
    ErrorKind kind_;
    int line_;
    int column_;
    Text message_;
};

} // namespace maxscript
