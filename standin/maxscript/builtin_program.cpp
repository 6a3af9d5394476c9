// Output, errors, and running texts.
#include "standin/maxscript/engine.h"
#include "standin/maxscript/streams.h"

namespace maxscript {

namespace {

void put(Arguments& arguments, const Text& text) {
    Engine& engine = arguments.interpreter().engine();
    const Value& target = arguments.keyword(u"to");
    if (!target.is(Kind::unsupplied)) {
        write_to_stream(engine, target, text);
        return;
    }
    engine.charge(text.size());
    if (engine.environment().listener != nullptr) {
        engine.environment().listener->write(text);
    }
}

Value print(Arguments& arguments) {
    Value value = arguments[0];
    put(arguments, printed_text(arguments.interpreter().engine(), value) + u"\n");
    return value;
}

// Each % is the next value. In a literal "\\%" stands for a % of its own, which reaches here as "\%".
Value format(Arguments& arguments) {
    Engine& engine = arguments.interpreter().engine();
    const Text pattern = arguments.text(0);
    Text result;
    std::size_t next = 1;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == u'\\' && i + 1 < pattern.size() && pattern[i + 1] == u'%') {
            result += pattern[++i];
        } else if (pattern[i] != u'%') {
            result += pattern[i];
        } else {
            if (next >= arguments.count()) {
                engine.fail(u"Runtime error: format has more % than values");
            }
            result += text_of(engine, arguments[next++]);
        }
    }
    put(arguments, result);
    return Value::ok();
}

Value raise(Arguments& arguments) {
    Engine& engine = arguments.interpreter().engine();
    if (arguments.count() == 0) {
        if (engine.current_error() == nullptr) {
            engine.fail(u"Runtime error: throw() outside catch");
        }
        throw ScriptError(*engine.current_error());
    }
    Text message = u"Runtime error: " + text_of(engine, arguments[0]);
    if (arguments.count() > 1) {
        message += u": " + printed_text(engine, arguments[1]);
    }
    engine.fail(message);
}

Value current_exception(Arguments& arguments) {
    const ScriptError* error = arguments.interpreter().engine().current_error();
    return error != nullptr ? Value::string(u"-- " + error->message()) : Value();
}

Value execute(Arguments& arguments) {
    Engine& engine = arguments.interpreter().engine();
    const Value program = arguments[0];
    const Text text = program.is(Kind::string_stream) ? program.as_string_stream().text : arguments.text(0);
    return engine.run(text, u"execute");
}

Value source_file(Arguments& arguments) {
    const Spot& spot = arguments.interpreter().engine().spot();
    return spot.file != nullptr ? Value::string(*spot.file) : Value();
}

} // namespace

void add_program_functions(Globals& globals) {
    globals.add_function(u"print", 1, 1, {u"to"}, print);
    globals.add_function(u"format", 1, kAnyCount, {u"to"}, format);
    globals.add_function(u"throw", 0, 2, {u"debugBreak"}, raise);
    globals.add_function(u"getCurrentException", 0, 0, {}, current_exception);
    globals.add_function(u"execute", 1, 1, {}, execute);
    globals.add_function(u"fileIn", 1, 1, {u"quiet"},
                         [](Arguments& a) { return a.interpreter().engine().run_file(a.text(0)); });
    globals.add_function(u"getThisScriptFilename", 0, 0, {}, source_file);
}

} // namespace maxscript
