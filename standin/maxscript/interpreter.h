// Reads, checks and runs the part of the host's script language that the shipped scripts use, as the host of
// 2019 does. It refuses everything else, with file, line and column; among it:
// - macroscripts, rollouts, utilities, plugins, menus, tools, `when`, `about`, `in`, `at`, `set`, `max`;
// - return, exit, continue and `do … while`; bit arrays and what else the shipped scripts do without;
// - point, matrix, colour, quaternion, ray and box values, literals of times, and what is drawn or animated;
// - object paths, and every name that the embedder has not given (the host knows thousands);
// - what is newer than 2019: functions as callbacks, `asArray:`, for-loops with several variables,
//   executeScriptFile;
// - in strict settings what the host lets pass and gets wrong: undeclared names, data in a format string,
//   bytes beyond ASCII in a file.
// Integers and floats print as the host's do, as far as its documents tell.
//
// An embedder gives the files, the listener window and the host's names:
//
//     Interpreter interpreter(environment);
//     interpreter.globals().add_constant(u"pi2", Value::real(6.28f));
//     interpreter.globals().add_variable(u"rendOutputFilename", [&] { return Value::string(scene.output); },
//                                        [&](const Value& value) { scene.output = to_text(value); });
//     NativeFunction function;
//     function.name = u"isScene";
//     function.fewest = 1;
//     function.most = 2;
//     function.keywords = {u"pattern"};
//     function.code = [](Arguments& a) { return Value::boolean(a.text(0) == a.keyword_text(u"pattern",
//     u"*")); }; interpreter.globals().add_function(function);
//
// An interface of the host is an object whose members are functions:
//
//     auto callbacks = std::make_shared<HostInterface>(u"callbacks");
//     callbacks->add(u"removeScripts", 0, 1, {u"id"}, [&](Arguments& a) {
//         scene.remove_callbacks(a.count() > 0 ? a.name(0) : Text(), a.keyword(u"id"));
//         return Value::ok();
//     });
//     interpreter.globals().add_constant(u"callbacks", Value::object(callbacks));
//
// By-reference arguments and functions of the script:
//
//     interface->add(u"GetFiles", 1, 1, {}, [&](Arguments& a) {
//         a.set_reference(0, Value::array(scene.files()));            // ATSOps.GetFiles &files
//         return Value::integer(count); });
//     [](Arguments& a) { a.interpreter().call(a[0], {Value::string(file), a[1]}); return Value::ok(); }
//
// Classes are values; an object answers host_class():
//
//     auto camera = std::make_shared<HostClass>();  camera->name = u"camera";
//     auto free_camera = std::make_shared<HostClass>();  free_camera->name = u"Freecamera";
//     free_camera->super = camera;
//     interpreter.globals().add_constant(u"camera", Value::of_class(camera));
//
// Running, with every failure a ScriptError that holds file, line and column:
//
//     Value result = interpreter.run(u"fileIn @\"C:\\a.ms\"\ngMax.analysis \"\" \"\"", u"");
//     if (result.is(Kind::string)) { use(result.as_string().text); }
//
// Everything happens on one thread. The interpreter is not to be destroyed while it runs.
#pragma once

#include "standin/maxscript/globals.h"
#include "standin/maxscript/script_error.h"

namespace maxscript {

// The files that scripts see. Paths are as the script gives them. Outlives the interpreter: a stream that a
// script left open is written when it goes.
class FileAccess {
public:
    virtual ~FileAccess() = default;
    virtual bool exists(const Text& path) = 0; // of a file
    virtual bool folder_exists(const Text& path) = 0;
    // In bytes; 0: there is none. Some know it of files that cannot be read.
    virtual std::int64_t size(const Text& path) {
        std::string bytes;
        return read(path, bytes) ? static_cast<std::int64_t>(bytes.size()) : 0;
    }
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

// The listener window: what print and format without to: write.
class Listener {
public:
    virtual ~Listener() = default;
    virtual void write(const Text& text) = 0;
};

struct Settings {
    // About one step for each expression, and for each 64 units or elements that an operation copies.
    std::int64_t step_limit = 200000000;
    int depth_limit = 200; // of nested calls
    // Refuses what the host would let pass and get wrong: names that nothing declared, data inside a format
    // string, non-ASCII bytes in a file, and what is newer than the host.
    bool strict = true;
};

struct Environment {
    FileAccess* files = nullptr;  // null: no file exists; not owned
    Listener* listener = nullptr; // null: output goes nowhere; not owned
    Settings settings;
};

class Engine;

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
    // Reads all of the text and runs nothing: every problem that shows without running, in the order of the
    // text. A syntax error ends it. `bytes` is the content of a file.
    std::vector<ScriptError> check(const std::string& bytes, const Text& file_name) const;

    // Calls a function value (or constructs from a struct definition or class). For native code and the
    // embedder.
    Value call(const Value& function, const std::vector<Value>& arguments);

    Globals& globals();
    const Environment& environment() const;

    Text as_string(const Value& value); // `value as string`
    Text printed(const Value& value);   // as print shows it: strings in quotes

    // A runtime error at the expression that is running; scripts can catch it.
    [[noreturn]] void fail(const Text& message) const;
    // For native code whose work grows with its input.
    void charge(std::size_t units);
    // What the last call from outside has used of Settings::step_limit: the work of a script in a measure
    // that is the same on every machine.
    std::int64_t steps() const;
    // How many there were; native code may keep what it has worked out for as long as this stays the same.
    std::uint64_t calls_from_outside() const;
    // Whether what runs stands inside `undo on (…)`.
    bool undo_is_on() const;

    Engine& engine() { return *engine_; }

private:
    std::unique_ptr<Engine> engine_;
};

// The arguments of one call of native code. A wrong kind is a runtime error of the script.
class Arguments {
public:
    struct Keyword {
        Text name; // folded
        Value value;
    };

    Arguments(Interpreter& interpreter, const Text& function, const Value* values, std::size_t count,
              const std::vector<Keyword>& keywords)
        : interpreter_(interpreter), function_(function), values_(values), count_(count),
          keywords_(keywords) {}

    Interpreter& interpreter() const { return interpreter_; }
    std::size_t count() const { return count_; }
    // What a by-reference argument holds; `unsupplied` beyond the last.
    Value operator[](std::size_t index) const;
    // `unsupplied` when it was not given. Names are folded.
    const Value& keyword(const Text& name) const;
    bool has_keyword(const Text& name) const { return !keyword(name).is(Kind::unsupplied); }
    const std::vector<Keyword>& keywords() const { return keywords_; }

    std::int32_t integer(std::size_t index) const; // also from a Float, cut off
    float real(std::size_t index) const;
    bool boolean(std::size_t index) const;
    const Text& text(std::size_t index) const; // of a String
    const Text& name(std::size_t index) const; // folded, of a Name
    ArrayObject& array(std::size_t index) const;
    Text keyword_text(const Text& keyword_name, const Text& otherwise) const;
    bool keyword_boolean(const Text& keyword_name, bool otherwise) const;
    Text keyword_name(const Text& keyword_name, const Text& otherwise) const; // folded

    bool is_reference(std::size_t index) const;
    void set_reference(std::size_t index, const Value& value); // an error unless it was given as &variable

    [[noreturn]] void fail(const Text& message) const { interpreter_.fail(message); }
    [[noreturn]] void fail_conversion(std::size_t index, const char16_t* wanted) const;

private:
    const Value& raw(std::size_t index) const;

    Interpreter& interpreter_;
    const Text& function_;
    const Value* values_;
    std::size_t count_;
    const std::vector<Keyword>& keywords_;
};

// A host object made of functions and values by name: `callbacks`, `globalVars`, `ATSOps`.
class HostInterface : public HostObject {
public:
    explicit HostInterface(const Text& name);

    void add(const Text& name, int fewest, int most, const std::vector<Text>& keywords, NativeCode code);
    void add_value(const Text& name, const Value& value);
    void add_property(const Text& name, std::function<Value()> getter,
                      std::function<void(const Value&)> setter = nullptr);

    std::shared_ptr<const HostClass> host_class() const override { return class_; }
    bool get_property(const Text& name, Value& value) override;
    bool set_property(const Text& name, const Value& value) override;
    bool has_property(const Text& name) const override { return members_.count(name) != 0; }
    Text text() const override { return class_->name; }

private:
    struct Member {
        Value value;
        std::function<Value()> getter;
        std::function<void(const Value&)> setter;
    };

    std::shared_ptr<HostClass> class_;
    std::map<Text, Member> members_; // by folded name
};

} // namespace maxscript
