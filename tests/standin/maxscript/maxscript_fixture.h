// Runs texts of the script language and says what came of them, for tables of cases.
#pragma once

#include "standin/maxscript/interpreter.h"

#include <gtest/gtest.h>

#include <map>
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
    // What print shows of the result, or "line,column message" of the error.
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

// Files in memory; paths are equal without regard to case.
struct Files : maxscript::FileAccess {
    static Text key(const Text& path) { return maxscript::folded(path); }
    bool exists(const Text& path) override { return content.count(key(path)) != 0; }
    bool folder_exists(const Text&) override { return false; }
    bool read(const Text& path, std::string& bytes) override {
        const auto found = content.find(key(path));
        if (found == content.end()) {
            return false;
        }
        bytes = found->second;
        return true;
    }
    bool write(const Text& path, const std::string& bytes) override {
        if (read_only[key(path)]) {
            return false;
        }
        content[key(path)] = bytes;
        return true;
    }
    std::vector<Text> list(const Text&) override {
        std::vector<Text> paths;
        for (const auto& file : content) {
            paths.push_back(file.first);
        }
        return paths;
    }
    bool remove(const Text& path) override { return !read_only[key(path)] && content.erase(key(path)) != 0; }
    bool rename(const Text& from, const Text& to) override { return copy(from, to) && remove(from); }
    bool copy(const Text& from, const Text& to) override {
        std::string bytes;
        return !exists(to) && read(from, bytes) && write(to, bytes);
    }
    bool is_read_only(const Text& path) override { return read_only[key(path)]; }
    bool set_read_only(const Text& path, bool on) override {
        read_only[key(path)] = on;
        return exists(path);
    }

    std::map<Text, std::string> content;
    std::map<Text, bool> read_only;
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

inline void run_cases(const std::vector<Case>& cases, bool strict = true) {
    for (const Case& one : cases) {
        Environment environment;
        environment.settings.strict = strict;
        Interpreter interpreter(environment);
        EXPECT_EQ(outcome_of(interpreter, one.source), one.outcome) << one.source;
    }
}

// What shows before running, one line each.
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
