// Output, errors, and running texts of programs.
#include "standin/maxscript/operations.h"

namespace maxscript {

namespace {

void put(Arguments& arguments, const Text& text) {
    Interpreter& interpreter = arguments.interpreter();
    const Value& target = arguments.keyword(u"to");
    if (!target.is(Kind::unsupplied)) {
        write_to_stream(interpreter, target, text);
        return;
    }
    interpreter.charge(text.size());
    if (interpreter.environment().listener != nullptr) {
        interpreter.environment().listener->write(text);
    }
}

Value print(Arguments& arguments) {
    Value value = arguments[0];
    put(arguments, arguments.interpreter().printed(value) + u"\n");
    return value;
}

// Each % is replaced by the next value. The literal "\\%" arrives here as "\%" and prints a %.
Value format(Arguments& arguments) {
    Interpreter& interpreter = arguments.interpreter();
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
                interpreter.fail(u"Runtime error: format has more % than values");
            }
            result += interpreter.as_string(arguments[next++]);
        }
    }
    put(arguments, result);
    return Value::ok();
}

Value raise(Arguments& arguments) {
    Interpreter& interpreter = arguments.interpreter();
    if (arguments.count() > 0) {
        interpreter.fail(u"Runtime error: " + interpreter.as_string(arguments[0]));
    }
    if (interpreter.current_error() == nullptr) {
        interpreter.fail(u"Runtime error: throw() outside catch");
    }
    throw ScriptError(*interpreter.current_error());
}

Value current_exception(Arguments& arguments) {
    const ScriptError* error = arguments.interpreter().current_error();
    return error != nullptr ? Value::string(u"-- " + error->message()) : Value();
}

Value source_file(Arguments& arguments) {
    const Spot& spot = arguments.interpreter().spot();
    return spot.file != nullptr ? Value::string(*spot.file) : Value();
}

} // namespace

void add_program_functions(Globals& globals) {
    globals.add_function(u"print", 1, 1, {u"to"}, print);
    globals.add_function(u"format", 1, kAnyCount, {u"to"}, format);
    globals.add_function(u"throw", 0, 1, {}, raise);
    globals.add_function(u"getCurrentException", 0, 0, {}, current_exception);
    globals.add_function(u"execute", 1, 1, {},
                         [](Arguments& a) { return a.interpreter().run_text(a.text(0), u"execute"); });
    globals.add_function(u"fileIn", 1, 1, {},
                         [](Arguments& a) { return a.interpreter().run_file(a.text(0)); });
    globals.add_function(u"getThisScriptFilename", 0, 0, {}, source_file);
}

} // namespace maxscript
