// Feeds any text to the script language: reads it, checks it, runs it with few steps and no files. Run by
// ./test over small scripts and for a bounded number of further inputs, and by tools/fuzz.sh for as long as
// wanted.
#include "standin/maxscript/interpreter.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

struct Counting : maxscript::Listener {
    void write(const maxscript::Text& text) override { units += text.size(); }
    std::size_t units = 0;
};

void run(const std::string& bytes, bool strict) {
    const maxscript::Text source = maxscript::text_from_utf8(bytes);
    Counting listener;
    maxscript::Environment environment;
    environment.listener = &listener;
    environment.settings.step_limit = 20000;
    environment.settings.strict = strict;
    maxscript::Interpreter interpreter(environment);
    interpreter.check(bytes, u"fuzz");
    try {
        const maxscript::Value value = interpreter.run(source, u"fuzz");
        interpreter.printed(value);
    } catch (const maxscript::ScriptError& error) {
        // Every error has a place inside the text.
        if (error.line() < 1 || error.column() < 1) {
            std::abort();
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    // Both ways of reading, without making every input run twice.
    run(bytes, size % 2 == 0);
    return 0;
}
