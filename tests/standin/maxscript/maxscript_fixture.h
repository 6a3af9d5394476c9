// Runs texts of the script language and gives their results, for tables of cases.
#pragma once

#include "standin/maxscript/interpreter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace script_fixture {

using maxscript::Environment;
using maxscript::Interpreter;
using maxscript::ScriptError;
using maxscript::Text;
using maxscript::Value;

struct Case {
    const char* source;
    // The printed result, or "line,column message" of the error.
    const char* outcome;
};

inline std::string utf8(const Text& text) {
    return maxscript::utf8_from_text(text);
}

inline Text text(const std::string& bytes) {
    return maxscript::text_from_utf8(bytes);
}

struct Listener : maxscript::Listener {
    void write(const Text& written) override { output += utf8(written); }
    std::string output;
};

inline std::string position_and(const ScriptError& error) {
    return std::to_string(error.line()) + "," + std::to_string(error.column()) + " " + utf8(error.message());
}

inline std::string outcome_of(Interpreter& interpreter, const std::string& source) {
    try {
        return utf8(interpreter.printed(interpreter.run(text(source), u"test.ms")));
    } catch (const ScriptError& error) {
        return position_and(error);
    }
}

inline void run_cases(const std::vector<Case>& cases) {
    for (const Case& one : cases) {
        Interpreter interpreter{Environment()};
        EXPECT_EQ(outcome_of(interpreter, one.source), one.outcome) << one.source;
    }
}

// The problems that show before running, one line each.
inline std::string check_outcome(const std::string& source) {
    const Interpreter interpreter{Environment()};
    std::string all;
    for (const ScriptError& error : interpreter.check(source, u"test.ms")) {
        all += (all.empty() ? "" : "\n") + position_and(error);
    }
    return all;
}

inline void check_cases(const std::vector<Case>& cases) {
    for (const Case& one : cases) {
        EXPECT_EQ(check_outcome(one.source), one.outcome) << one.source;
    }
}

} // namespace script_fixture
