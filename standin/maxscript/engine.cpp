#include "standin/maxscript/engine.h"

#include "standin/maxscript/parser.h"

namespace maxscript {

namespace {

constexpr std::size_t kStackSize = 1u << 15;
// Levels of expressions inside each other over all running calls. Each takes a few frames of the machine's
// stack, of which a Windows program has 2 MB.
constexpr int kMostHeight = 1500;
constexpr int kMostRuns = 8;

} // namespace

// Saves what a call changes and puts it back, whatever happens.
class FrameGuard {
public:
    FrameGuard(Engine& engine, const Value& self, std::size_t first, const FunctionCode& code)
        : engine_(engine), base_(engine.base_), height_(code.height), self_(engine.self_) {
        if (engine.calls_ >= engine.environment_.settings.depth_limit ||
            engine.height_ + height_ > kMostHeight) {
            engine.stop_at_limit(u"the script's calls go too deep");
        }
        if (first + code.slots > kStackSize) {
            engine.stop_at_limit(u"the script's variables take too much room");
        }
        end_ = engine.stack_.size();
        if (first + code.slots > end_) {
            engine.stack_.resize(first + code.slots);
        }
        engine.base_ = first;
        engine.self_ = self;
        ++engine.calls_;
        engine.height_ += height_;
    }
    ~FrameGuard() {
        engine_.stack_.resize(end_);
        engine_.base_ = base_;
        engine_.self_ = std::move(self_);
        --engine_.calls_;
        engine_.height_ -= height_;
    }
    FrameGuard(const FrameGuard&) = delete;
    FrameGuard& operator=(const FrameGuard&) = delete;

private:
    Engine& engine_;
    std::size_t base_;
    std::size_t end_;
    int height_;
    Value self_;
};

Engine::Engine(Interpreter& interpreter, const Environment& environment)
    : interpreter_(interpreter), environment_(environment) {
    stack_.reserve(kStackSize);
    add_classes(globals_);
    add_value_functions(globals_);
    add_program_functions(globals_);
    add_string_functions(globals_);
    add_array_functions(globals_);
    add_number_functions(globals_);
    add_file_functions(globals_);
    add_stream_functions(globals_);
    steps_left_ = environment.settings.step_limit;
}

void Engine::begin_from_outside() {
    if (calls_ == 0 && runs_ == 0) {
        steps_left_ = environment_.settings.step_limit;
        ++calls_from_outside_;
        undo = false;
    }
}

void Engine::fail(const Text& message) const {
    throw ScriptError(ErrorKind::runtime, place_of(spot_), message);
}

void Engine::stop_at_limit(const char16_t* message) const {
    throw ScriptError(ErrorKind::limit, place_of(spot_), message);
}

void Engine::push(Value value) {
    if (stack_.size() >= kStackSize) {
        stop_at_limit(u"the script's variables take too much room");
    }
    stack_.push_back(std::move(value));
}

InstanceObject& Engine::instance() const {
    if (!self_.is(Kind::instance)) {
        fail(u"Runtime error: a struct's member is used without an instance");
    }
    return self_.as_instance();
}

const ScriptError* Engine::set_current_error(const ScriptError* error) {
    const ScriptError* before = current_error_;
    current_error_ = error;
    return before;
}

Value Engine::call(const Value& callee, std::size_t count, const std::vector<Arguments::Keyword>& keywords) {
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
    fail(u"Type error: Call needs function or class, got: " + printed_text(*this, callee));
}

void Engine::bind_keywords(const FunctionCode& code, std::size_t count,
                           const std::vector<Arguments::Keyword>& keywords) {
    for (std::size_t i = 0; i < code.keywords.size(); ++i) {
        const KeywordParameter& parameter = code.keywords[i];
        bool given = false;
        for (const Arguments::Keyword& keyword : keywords) {
            if (keyword.name == parameter.name) {
                slot(count + i) = keyword.value;
                given = true;
            }
        }
        if (!given) {
            slot(count + i) =
                parameter.otherwise ? parameter.otherwise->evaluate(*this) : Value::unsupplied();
        }
    }
    for (const Arguments::Keyword& keyword : keywords) {
        bool known = false;
        for (const KeywordParameter& parameter : code.keywords) {
            known = known || parameter.name == keyword.name;
        }
        if (!known && strict()) {
            fail(u"Argument error: " + code.name + u" has no keyword parameter " + keyword.name + u":");
        }
    }
}

Value Engine::call_function(const FunctionCode& code, const Value& self, std::size_t count,
                            const std::vector<Arguments::Keyword>& keywords) {
    if (count != code.parameters) {
        fail(u"Argument count error: " + code.name + u" wanted " +
             text_from_number(static_cast<int>(code.parameters)) + u", got " +
             text_from_number(static_cast<int>(count)));
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

Value Engine::call_native(const NativeFunction& native, std::size_t count,
                          const std::vector<Arguments::Keyword>& keywords) {
    const int given = static_cast<int>(count);
    if (given < native.fewest || (native.most != kAnyCount && given > native.most)) {
        const int wanted = given < native.fewest ? native.fewest : native.most;
        fail(u"Argument count error: " + native.name + u" wanted " + text_from_number(wanted) + u", got " +
             text_from_number(given));
    }
    for (const Arguments::Keyword& keyword : keywords) {
        bool known = false;
        for (const Text& name : native.keywords) {
            known = known || name == keyword.name || name == u"*";
        }
        if (!known) {
            fail(u"Argument error: " + native.name + u" has no keyword parameter " + keyword.name + u":");
        }
    }
    charge(0);
    const Spot spot = spot_;
    const Value* values = stack_.data() + (stack_.size() - count);
    Arguments arguments(interpreter_, native.name, values, count, keywords);
    Value result = native.code(arguments);
    spot_ = spot;
    return result;
}

Value Engine::call_method(HostObject& object, const Text& name, std::size_t count,
                          const std::vector<Arguments::Keyword>& keywords) {
    charge(0);
    const Spot spot = spot_;
    Value result;
    Arguments arguments(interpreter_, name, stack_.data() + (stack_.size() - count), count, keywords);
    if (object.call_method(name, arguments, result)) {
        spot_ = spot;
        return result;
    }
    if (!object.get_property(name, result)) {
        fail(u"Unknown property: \"" + name + u"\" in " + object.text());
    }
    return call(result, count, keywords);
}

Value Engine::member_function(const StructMember& member, const Value& self) const {
    auto function = std::make_shared<FunctionObject>();
    function->code = member.code;
    function->self = self;
    return Value::shared(Kind::function, std::move(function));
}

Value Engine::construct(const Value& definition, std::size_t count,
                        const std::vector<Arguments::Keyword>& keywords) {
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
    static const std::vector<Arguments::Keyword> none;
    for (std::size_t i = 0; i < layout->data.size(); ++i) {
        const StructMember& member = layout->members[layout->data[i]];
        if (member.code) {
            const Value value = call_function(*member.code, instance, 0, none);
            // Its computation may have emptied the instance.
            if (i < object->members.size()) {
                object->members[i] = value;
            }
        }
    }
    return instance;
}

Value Engine::run_unit(const FunctionCode& code) {
    FrameGuard guard(*this, Value(), stack_.size(), code);
    return code.body->evaluate(*this);
}

Value Engine::run(const Text& source, const Text& file_name) {
    if (runs_ >= kMostRuns) {
        stop_at_limit(u"texts are executed too deep inside each other");
    }
    ++runs_;
    struct Leave {
        int& runs;
        ~Leave() { --runs; }
    } leave{runs_};
    charge(source.size() * 16);
    Parser parser(globals_, strict(), source, keep_file_name(file_name));
    Value result;
    while (const std::shared_ptr<FunctionCode> unit = parser.next_unit()) {
        result = run_unit(*unit);
    }
    return result;
}

Value Engine::run_file(const Text& path) {
    std::string bytes;
    if (environment_.files == nullptr || !environment_.files->read(path, bytes)) {
        fail(u"Runtime error: fileIn can't open file: " + path);
    }
    charge(bytes.size());
    if (strict()) {
        refuse_non_ascii(bytes, keep_file_name(path));
    }
    const Spot spot = spot_;
    Value result = run(text_from_utf8(bytes), path);
    spot_ = spot;
    return result;
}

} // namespace maxscript
