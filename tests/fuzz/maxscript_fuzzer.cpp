// Feeds any text to the script language: reads it, checks it, runs it with few steps and no files. Run by
// ./test over small scripts and for a bounded number of further inputs, and by tools/fuzz.sh for as long as
// wanted.
#include "standin/maxscript/interpreter.h"
#include "tests/fuzz/support/rule.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

struct Counting : maxscript::Listener {
    void write(const maxscript::Text& text) override { units += text.size(); }
    std::size_t units = 0;
};

void run(const std::string& bytes) {
    const maxscript::Text source = maxscript::text_from_utf8(bytes);
    Counting listener;
    maxscript::Environment environment;
    environment.listener = &listener;
    environment.step_limit = 20000;
    maxscript::Interpreter interpreter(environment);
    interpreter.check(bytes, u"fuzz");
    bool running = true;
    try {
        const maxscript::Value value = interpreter.run(source, u"fuzz");
        running = false;
        interpreter.printed(value);
    } catch (const maxscript::ScriptError& error) {
        // A reference is read when it is printed: no part of the text runs then.
        fuzz::rule(!running || (error.line() >= 1 && error.column() >= 1),
                   "an error has a place inside the text");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    run(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
