// Reads, checks and runs the part of the host's script language that the shipped scripts use, as the host of
// 2019 does. Everything else is an error with file, line and column, for example:
// - macroscripts, rollouts, utilities, plugins, menus, tools, `when`, `about`, `in`, `at`, `set`, `max`;
// - return, exit, continue, `do … while`, bit arrays, and all else that the shipped scripts do not use;
// - point, matrix, colour, quaternion, ray and box values, literals of times, and all that is drawn or
// animated;
// - object paths, and every name that the embedder has not given (the host knows thousands);
// - features newer than 2019: functions as callbacks, `asArray:`, for-loops with several variables,
//   executeScriptFile;
// - mistakes that the host accepts: undeclared names, data in a format string, bytes beyond ASCII in a file.
// Integers and floats print as the host's do, as far as its documents tell.
//
// An embedder gives the files, the listener window and the host's names:
//
//     Interpreter interpreter(environment);
//     interpreter.globals().add_constant(u"pi2", Value::real(6.28f));
//     interpreter.globals().add_function(u"isScene", 1, 2, {u"pattern"}, [](Arguments& a) {
//         return Value::boolean(a.text(0) == a.keyword_text(u"pattern", u"*"));
//     });
//     auto tracker = std::make_shared<HostInterface>(u"ATSOps");
//     tracker->add(u"GetFiles", 1, 1, {}, [&](Arguments& a) { // ATSOps.GetFiles &files
//         a.set_reference(0, Value::array(scene.files()));
//         return Value::integer(count);
//     });
//     interpreter.globals().add_constant(u"ATSOps", Value::object(tracker));
//     interpreter.run(u"fileIn @\"C:\\a.ms\"", u""); // throws ScriptError
//
// Everything happens on one thread. Never destroy an interpreter that is running.
#pragma once

#include "standin/maxscript/globals.h"
#include "standin/maxscript/script_error.h"

#include <unordered_set>

namespace maxscript {

struct FunctionCode;
struct StructLayout;

// The files that scripts see. Paths are as the script gives them. Outlives the interpreter: a stream that a
// script left open is written when it is destroyed.
class FileAccess {
public:
    virtual ~FileAccess() = default;
    virtual bool exists(const Text& path) = 0; // of a file
    virtual bool folder_exists(const Text& path) = 0;
    // In bytes; 0: there is none. May be known for a file that cannot be read.
    virtual std::int64_t size(const Text& path) = 0;
    // False: there is none, or it cannot be read.
    virtual bool read(const Text& path, std::string& bytes) = 0;
    virtual bool write(const Text& path, const std::string& bytes) = 0;
    // Full paths of the files that match; wildcards in the last part only.
    virtual std::vector<Text> list(const Text& pattern) = 0;
    virtual bool remove(const Text& path) = 0;
    virtual bool rename(const Text& from, const Text& to) = 0; // false when `to` exists
    virtual bool copy(const Text& from, const Text& to) = 0;   // false when `to` exists
    virtual bool is_read_only(const Text& path) = 0;
    virtual bool set_read_only(const Text& path, bool read_only) = 0;
};

// The listener window: print and format write into it.
class Listener {
public:
    virtual ~Listener() = default;
    virtual void write(const Text& text) = 0;
};

struct Environment {
    FileAccess* files = nullptr;  // null: no file exists; not owned
    Listener* listener = nullptr; // null: output is dropped; not owned
    // About one step for each expression, and for each 64 units or elements that an operation copies.
    std::int64_t step_limit = 200000000;
};

// The arguments of one call of native code. A wrong kind is a runtime error of the script.
class Arguments {
public:
    struct Keyword {
        Text name; // folded
        Value value;
    };
    using Keywords = std::vector<Keyword>;

    Arguments(Interpreter& interpreter, const Text& function, const Value* values, std::size_t count,
              const Keywords& keywords)
        : interpreter_(interpreter), function_(function), values_(values), count_(count),
          keywords_(keywords) {}

    Interpreter& interpreter() const { return interpreter_; }
    std::size_t count() const { return count_; }
    // The value of a by-reference argument; `unsupplied` beyond the last.
    Value operator[](std::size_t index) const;
    // `unsupplied` when it was not given. Names are folded.
    const Value& keyword(const Text& name) const;
    bool has_keyword(const Text& name) const { return !keyword(name).is(Kind::unsupplied); }
    const Keywords& keywords() const { return keywords_; }

    std::int32_t integer(std::size_t index) const; // also from a Float, truncated
    float real(std::size_t index) const;
    bool boolean(std::size_t index) const;
    const Text& text(std::size_t index) const; // of a String
    const Text& name(std::size_t index) const; // folded, of a Name
    ArrayObject& array(std::size_t index) const;
    Text keyword_text(const Text& keyword_name, const Text& fallback) const;
    bool keyword_boolean(const Text& keyword_name, bool fallback) const;
    Text keyword_name(const Text& keyword_name, const Text& fallback) const; // folded

    void set_reference(std::size_t index, const Value& value); // an error unless it was given as &variable

    [[noreturn]] void fail(const Text& message) const;
    [[noreturn]] void fail_conversion(std::size_t index, const Text& wanted) const;

private:
    const Value& raw(std::size_t index) const;
    const Value& checked(const Value& value, Kind kind, const char16_t* wanted) const;

    Interpreter& interpreter_;
    const Text& function_;
    const Value* values_;
    std::size_t count_;
    const Keywords& keywords_;
};

class Interpreter {
public:
    explicit Interpreter(const Environment& environment);
    ~Interpreter();
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    // Compiles each top-level expression in global scope and runs it before it reads the next. Gives the
    // value of the last; stops at the first error, and what ran before has taken effect. Throws ScriptError.
    // Each call from outside starts with a fresh count of steps.
    Value run(const Text& source, const Text& file_name);
    // Reads all of the text without running it: every problem that shows without running, in the order of the
    // text. A syntax error ends it. `bytes` is the content of a file.
    std::vector<ScriptError> check(const std::string& bytes, const Text& file_name) const;
    // Calls a function value (or constructs from a struct definition or class). For native code and the
    // embedder.
    Value call(const Value& function, const std::vector<Value>& arguments);

    Globals& globals() { return globals_; }
    const Environment& environment() const { return environment_; }

    Text as_string(const Value& value); // `value as string`
    Text printed(const Value& value);   // as print shows it: strings in quotes

    // A runtime error at the expression that is running; scripts can catch it.
    [[noreturn]] void fail(const Text& message) const;
    [[noreturn]] void fail_conversion(const Value& value, const Text& type);
    [[noreturn]] void fail_operator(const Text& operation, const Value& value);
    [[noreturn]] void stop_at_limit(const char16_t* message) const;
    // Every loop pass, statement and call costs a step; copying costs by its size. For native code whose work
    // grows with its input.
    void charge(std::size_t units);
    // The steps that the last call from outside used: a measure of work that is the same on every machine.
    std::int64_t steps() const { return environment_.step_limit - steps_left_; }
    // How many there were; native code may cache its results while this number stays the same.
    std::uint64_t calls_from_outside() const { return calls_from_outside_; }

    // Whether the running code is inside `undo on (…)`.
    bool undo_is_on() const { return undo_; }
    void set_undo(bool on) { undo_ = on; }

    // The rest is for the language itself. Where the expression is that the next failure is about.
    void at(const Spot& spot) { spot_ = spot; }
    const Spot& spot() const { return spot_; }

    // The stack. Its values never move, so native code may hold pointers to its arguments.
    Value& slot(std::size_t index) { return stack_[base_ + index]; }
    std::size_t top() const { return stack_.size(); }
    std::size_t base() const { return base_; }
    Value& stack_at(std::size_t index) { return stack_[index]; }
    void push(Value value);
    void drop_to(std::size_t top) { stack_.resize(top); }
    const Value& self() const { return self_; }
    InstanceObject& instance() const;

    // Calls. The positional arguments are the top `count` values of the stack; the caller removes them.
    using Keywords = Arguments::Keywords;
    Value call(const Value& callee, std::size_t count, const Keywords& keywords);
    Value call_function(const FunctionCode& code, const Value& self, std::size_t count,
                        const Keywords& keywords);
    Value call_method(HostObject& object, const Text& name, std::size_t count, const Keywords& keywords);

    // Inside a running script.
    Value run_text(const Text& source, const Text& file_name);
    Value run_file(const Text& path);
    void keep(const std::shared_ptr<const StructLayout>& layout) { layouts_.insert(layout); }

    // try … catch.
    const ScriptError* current_error() const { return current_error_; }
    void set_current_error(const ScriptError* error) { current_error_ = error; }

private:
    friend class FrameGuard;

    void begin_from_outside();
    Value call_native(const NativeFunction& native, std::size_t count, const Keywords& keywords);
    Value construct(const Value& definition, std::size_t count, const Keywords& keywords);
    void bind_keywords(const FunctionCode& code, std::size_t count, const Keywords& keywords);
    Value run_unit(const FunctionCode& code);

    Environment environment_;
    Globals globals_;
    std::vector<Value> stack_;
    std::size_t base_ = 0;
    Value self_;
    Spot spot_;
    std::int64_t steps_left_ = 0;
    std::uint64_t calls_from_outside_ = 0;
    int calls_ = 0;
    int height_ = 0;
    int runs_ = 0;
    bool undo_ = false;
    const ScriptError* current_error_ = nullptr;
    std::unordered_set<Text> file_names_;
    std::unordered_set<std::shared_ptr<const StructLayout>> layouts_;
};

// Removes everything above the present top of the stack at its end.
class StackMark {
public:
    explicit StackMark(Interpreter& interpreter) : interpreter_(interpreter), top_(interpreter.top()) {}
    ~StackMark() { interpreter_.drop_to(top_); }
    StackMark(const StackMark&) = delete;
    StackMark& operator=(const StackMark&) = delete;

private:
    Interpreter& interpreter_;
    std::size_t top_;
};

// A host object made of named functions and values: `callbacks`, `globalVars`, `ATSOps`.
class HostInterface : public HostObject {
public:
    explicit HostInterface(const Text& name) : class_(make_class(name)) {}

    // As Globals::add_function, add_constant and add_variable.
    void add(const Text& name, int fewest, int most, const std::vector<Text>& keywords, NativeCode code) {
        members_.add_function(name, fewest, most, keywords, std::move(code));
    }
    void add_value(const Text& name, const Value& value) { members_.add_constant(name, value); }
    void add_property(const Text& name, std::function<Value()> getter,
                      std::function<void(const Value&)> setter = nullptr) {
        members_.add_variable(name, std::move(getter), std::move(setter));
    }

    ClassPointer host_class() const override { return class_; }
    bool get_property(const Text& name, Value& value) override { return members_.get(name, value); }
    bool set_property(const Text& name, const Value& value) override { return members_.set(name, value); }
    bool has_property(const Text& name) const override { return members_.find(name) != nullptr; }

private:
    ClassPointer class_;
    Globals members_;
};

} // namespace maxscript
