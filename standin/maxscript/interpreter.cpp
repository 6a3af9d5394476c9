#include "standin/maxscript/interpreter.h"

#include "standin/maxscript/engine.h"
#include "standin/maxscript/parser.h"

namespace maxscript {

namespace {

thread_local int living_interpreters = 0;

} // namespace

Interpreter::Interpreter(const Environment& environment) : engine_(new Engine(*this, environment)) {
    ++living_interpreters;
}

Interpreter::~Interpreter() {
    engine_.reset();
    if (--living_interpreters == 0) {
        Container::empty_all();
    }
}

Value Interpreter::run(const Text& source, const Text& file_name) {
    engine_->begin_from_outside();
    return engine_->run(source, file_name);
}

std::vector<ScriptError> Interpreter::check(const std::string& bytes, const Text& file_name) const {
    std::vector<ScriptError> problems;
    // What the text declares stays out of the real globals.
    Globals globals = engine_->globals();
    try {
        if (engine_->strict()) {
            refuse_non_ascii(bytes, &file_name);
        }
        Parser parser(globals, engine_->strict(), text_from_utf8(bytes), &file_name);
        parser.collect_refusals(problems);
        while (parser.next_unit()) {
        }
    } catch (const ScriptError& error) {
        problems.push_back(error);
    }
    return problems;
}

Value Interpreter::call(const Value& function, const std::vector<Value>& arguments) {
    engine_->begin_from_outside();
    struct Leave {
        Engine& engine;
        std::size_t top;
        ~Leave() { engine.drop_to(top); }
    } leave{*engine_, engine_->top()};
    for (const Value& argument : arguments) {
        engine_->push(argument);
    }
    return engine_->call(function, arguments.size(), {});
}

Globals& Interpreter::globals() {
    return engine_->globals();
}

const Environment& Interpreter::environment() const {
    return engine_->environment();
}

Text Interpreter::as_string(const Value& value) {
    return text_of(*engine_, value);
}

Text Interpreter::printed(const Value& value) {
    return printed_text(*engine_, value);
}

void Interpreter::fail(const Text& message) const {
    engine_->fail(message);
}

bool Interpreter::undo_is_on() const {
    return engine_->undo;
}

void Interpreter::charge(std::size_t units) {
    engine_->charge(units);
}

std::int64_t Interpreter::steps() const {
    return engine_->steps();
}

std::uint64_t Interpreter::calls_from_outside() const {
    return engine_->calls_from_outside();
}

} // namespace maxscript
