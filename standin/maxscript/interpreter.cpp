#include "standin/maxscript/interpreter.h"

#include "standin/maxscript/operations.h"
#include "standin/maxscript/parser.h"

#include <algorithm>

namespace maxscript {

namespace {

constexpr std::size_t kStackSize = 1u << 15;
constexpr int kMostCalls = 200; // inside each other
// Levels of expressions inside each other over all running calls. Each takes a few frames of the machine's
// stack, of which a Windows program has 2 MB.
constexpr int kMostHeight = 1500;
constexpr int kMostRuns = 8;

thread_local int living_interpreters = 0;

} // namespace

// Saves what a call changes and restores it, after an exception too.
class FrameGuard {
public:
    FrameGuard(Interpreter& interpreter, const Value& self, std::size_t first, const FunctionCode& code)
        : interpreter_(interpreter), base_(interpreter.base_), height_(code.height),
          self_(interpreter.self_) {
        if (interpreter.calls_ >= kMostCalls || interpreter.height_ + height_ > kMostHeight) {
            interpreter.stop_at_limit(u"the script's calls go too deep");
        }
        if (first + code.slots > kStackSize) {
            interpreter.stop_at_limit(u"the script's variables take too much room");
        }
        end_ = interpreter.stack_.size();
        interpreter.stack_.resize(std::max(end_, first + code.slots));
        interpreter.base_ = first;
        interpreter.self_ = self;
        ++interpreter.calls_;
        interpreter.height_ += height_;
    }
    ~FrameGuard() {
        interpreter_.stack_.resize(end_);
        interpreter_.base_ = base_;
        interpreter_.self_ = std::move(self_);
        --interpreter_.calls_;
        interpreter_.height_ -= height_;
    }
    FrameGuard(const FrameGuard&) = delete;
    FrameGuard& operator=(const FrameGuard&) = delete;

private:
    Interpreter& interpreter_;
    std::size_t base_;
    std::size_t end_;
    int height_;
    Value self_;
};

Interpreter::Interpreter(const Environment& environment) : environment_(environment) {
    ++living_interpreters;
    stack_.reserve(kStackSize);
    add_classes(globals_);
    add_value_functions(globals_);
    add_program_functions(globals_);
    add_string_functions(globals_);
    add_array_functions(globals_);
    add_file_functions(globals_);
    steps_left_ = environment.step_limit;
}

Interpreter::~Interpreter() {
    if (--living_interpreters == 0) {
        Container::empty_all();
    }
}

Value Interpreter::run(const Text& source, const Text& file_name) {
    begin_from_outside();
    return run_text(source, file_name);
}

std::vector<ScriptError> Interpreter::check(const std::string& bytes, const Text& file_name) const {
    std::vector<ScriptError> problems;
    // A copy: the declarations of the text must not reach the real globals.
    Globals globals = globals_;
    try {
        refuse_non_ascii(bytes, &file_name);
        Parser parser(globals, text_from_utf8(bytes), &file_name);
        parser.collect_refusals(problems);
        while (parser.next_unit()) {
        }
    } catch (const ScriptError& error) {
        problems.push_back(error);
    }
    return problems;
}

Value Interpreter::call(const Value& function, const std::vector<Value>& arguments) {
    begin_from_outside();
    const StackMark mark(*this);
    for (const Value& argument : arguments) {
        push(argument);
    }
    return call(function, arguments.size(), {});
}

void Interpreter::begin_from_outside() {
    if (calls_ == 0 && runs_ == 0) {
        steps_left_ = environment_.step_limit;
        ++calls_from_outside_;
        undo_ = false;
    }
}

void Interpreter::charge(std::size_t units) {
    steps_left_ -= static_cast<std::int64_t>(1 + units / 64);
    if (steps_left_ < 0) {
        stop_at_limit(u"the script takes too many steps");
    }
}

void Interpreter::fail(const Text& message) const {
    throw ScriptError(ErrorKind::runtime, spot_, message);
}

void Interpreter::fail_conversion(const Value& value, const Text& type) {
    fail(u"Unable to convert: " + printed(value) + u" to type: " + type);
}

void Interpreter::fail_operator(const Text& operation, const Value& value) {
    fail(u"No \"\"" + operation + u"\"\" function for " + printed(value));
}

void Interpreter::stop_at_limit(const char16_t* message) const {
    throw ScriptError(ErrorKind::limit, spot_, message);
}

void Interpreter::push(Value value) {
    if (stack_.size() >= kStackSize) {
        stop_at_limit(u"the script's variables take too much room");
    }
    stack_.push_back(std::move(value));
}

InstanceObject& Interpreter::instance() const {
    if (!self_.is(Kind::instance)) {
        fail(u"Runtime error: a struct's member is used without an instance");
    }
    return self_.as_instance();
}

Value Interpreter::call(const Value& callee, std::size_t count, const Keywords& keywords) {
    switch (callee.kind()) {
    case Kind::function: {
        // The function may replace itself while it runs.
        const std::shared_ptr<const FunctionCode> code = callee.as_function().code;
        const Value self = callee.as_function().self;
        return call_function(*code, self, count, keywords);
    }
    case Kind::native:
        return call_native(callee.as_native(), count, keywords);
    case Kind::struct_definition:
        return construct(callee, count, keywords);
    case Kind::host_class:
        if (callee.as_class().constructor) {
            return call_native(*callee.as_class().constructor, count, keywords);
        }
        break;
    default:
        break;
    }
    fail(u"Type error: Call needs function or class, got: " + printed(callee));
}

void Interpreter::bind_keywords(const FunctionCode& code, std::size_t count, const Keywords& keywords) {
    for (std::size_t i = 0; i < code.keywords.size(); ++i) {
        const KeywordParameter& parameter = code.keywords[i];
        const auto given =
            std::find_if(keywords.begin(), keywords.end(),
                         [&](const Arguments::Keyword& keyword) { return keyword.name == parameter.name; });
        slot(count + i) = given != keywords.end() ? given->value
                          : parameter.fallback    ? parameter.fallback->evaluate(*this)
                                                  : Value::unsupplied();
    }
    for (const Arguments::Keyword& keyword : keywords) {
        const bool is_known =
            std::any_of(code.keywords.begin(), code.keywords.end(),
                        [&](const KeywordParameter& parameter) { return parameter.name == keyword.name; });
        if (!is_known) {
            fail(u"Argument error: " + code.name + u" has no keyword parameter " + keyword.name + u":");
        }
    }
}

Value Interpreter::call_function(const FunctionCode& code, const Value& self, std::size_t count,
                                 const Keywords& keywords) {
    if (count != code.parameters) {
        fail(wrong_count(code.name, code.parameters, count));
    }
    charge(0);
    const std::size_t first = stack_.size() - count;
    for (std::size_t i = 0; i < count; ++i) {
        Value& value = stack_[first + i];
        if (value.is(Kind::reference)) {
            value = Value(value.as_reference().get());
        }
    }
    FrameGuard guard(*this, self, first, code);
    bind_keywords(code, count, keywords);
    return code.body->evaluate(*this);
}

Value Interpreter::call_native(const NativeFunction& native, std::size_t count, const Keywords& keywords) {
    const int given = static_cast<int>(count);
    if (given < native.fewest || (native.most != kAnyCount && given > native.most)) {
        const int wanted = given < native.fewest ? native.fewest : native.most;
        fail(wrong_count(native.name, static_cast<std::size_t>(wanted), count));
    }
    for (const Arguments::Keyword& keyword : keywords) {
        const bool is_known =
            std::any_of(native.keywords.begin(), native.keywords.end(),
                        [&](const Text& name) { return name == keyword.name || name == u"*"; });
        if (!is_known) {
            fail(u"Argument error: " + native.name + u" has no keyword parameter " + keyword.name + u":");
        }
    }
    charge(0);
    const Spot spot = spot_;
    const Value* values = stack_.data() + (stack_.size() - count);
    Arguments arguments(*this, native.name, values, count, keywords);
    Value result = native.code(arguments);
    spot_ = spot;
    return result;
}

Value Interpreter::call_method(HostObject& object, const Text& name, std::size_t count,
                               const Keywords& keywords) {
    charge(0);
    const Spot spot = spot_;
    Value result;
    Arguments arguments(*this, name, stack_.data() + (stack_.size() - count), count, keywords);
    if (object.call_method(name, arguments, result)) {
        spot_ = spot;
        return result;
    }
    if (!object.get_property(name, result)) {
        fail(u"Unknown property: \"" + name + u"\" in " + object.text());
    }
    return call(result, count, keywords);
}

Value Interpreter::construct(const Value& definition, std::size_t count, const Keywords& keywords) {
    if (count > 0 || !keywords.empty()) {
        fail(u"Argument count error: " + definition.as_struct().layout->name +
             u" wanted 0: values of members are not supported here");
    }
    charge(0);
    const auto object = std::make_shared<InstanceObject>();
    object->definition = definition.pointer<StructDefinition>();
    const std::shared_ptr<const StructLayout> layout = object->definition->layout;
    object->members.resize(layout->data.size());
    Value instance = Value::shared(Kind::instance, object);
    for (std::size_t i = 0; i < layout->data.size(); ++i) {
        const StructMember& member = layout->members[layout->data[i]];
        if (member.code) {
            const Value value = call_function(*member.code, instance, 0, {});
            // Its computation may have emptied the instance.
            if (i < object->members.size()) {
                object->members[i] = value;
            }
        }
    }
    return instance;
}

Value Interpreter::run_unit(const FunctionCode& code) {
    FrameGuard guard(*this, Value(), stack_.size(), code);
    return code.body->evaluate(*this);
}

Value Interpreter::run_text(const Text& source, const Text& file_name) {
    if (runs_ >= kMostRuns) {
        stop_at_limit(u"texts are executed too deep inside each other");
    }
    ++runs_;
    struct Leave {
        int& runs;
        ~Leave() { --runs; }
    } leave{runs_};
    charge(source.size() * 16);
    Parser parser(globals_, source, &*file_names_.insert(file_name).first);
    Value result;
    while (const std::shared_ptr<FunctionCode> unit = parser.next_unit()) {
        result = run_unit(*unit);
    }
    return result;
}

Value Interpreter::run_file(const Text& path) {
    std::string bytes;
    if (environment_.files == nullptr || !environment_.files->read(path, bytes)) {
        fail(u"Runtime error: fileIn can't open file: " + path);
    }
    charge(bytes.size());
    refuse_non_ascii(bytes, &*file_names_.insert(path).first);
    const Spot spot = spot_;
    Value result = run_text(text_from_utf8(bytes), path);
    spot_ = spot;
    return result;
}

} // namespace maxscript
