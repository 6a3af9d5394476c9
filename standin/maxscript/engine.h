// The running part of an interpreter: the stack of variables, limits, calls, and the operations on values.
// Internal to the language.
#pragma once

#include "standin/maxscript/code.h"
#include "standin/maxscript/interpreter.h"

#include <unordered_set>

namespace maxscript {

class Engine {
public:
    Engine(Interpreter& interpreter, const Environment& environment);

    Interpreter& interpreter() { return interpreter_; }
    Globals& globals() { return globals_; }
    const Environment& environment() const { return environment_; }
    bool strict() const { return environment_.settings.strict; }

    // Limits. Every loop pass, statement and call costs a step; copying costs by its size.
    void charge(std::size_t units) {
        steps_left_ -= static_cast<std::int64_t>(1 + units / 64);
        if (steps_left_ < 0) {
            stop_at_limit(u"the script takes too many steps");
        }
    }

    // Where the expression stands that the next failure is about.
    void at(const Spot& spot) { spot_ = spot; }
    const Spot& spot() const { return spot_; }
    [[noreturn]] void fail(const Text& message) const;
    [[noreturn]] void stop_at_limit(const char16_t* message) const;

    // The stack. Its values never move, so native code may hold pointers to its arguments.
    Value& slot(std::size_t index) { return stack_[base_ + index]; }
    std::size_t top() const { return stack_.size(); }
    std::size_t base() const { return base_; }
    Value& stack_at(std::size_t index) { return stack_[index]; }
    void push(Value value);
    void drop_to(std::size_t top) { stack_.resize(top); }
    const Value& self() const { return self_; }
    InstanceObject& instance() const;

    // Calls. The positional arguments are the top `count` values of the stack; they stay there.
    Value call(const Value& callee, std::size_t count, const std::vector<Arguments::Keyword>& keywords);
    Value call_function(const FunctionCode& code, const Value& self, std::size_t count,
                        const std::vector<Arguments::Keyword>& keywords);
    Value call_native(const NativeFunction& native, std::size_t count,
                      const std::vector<Arguments::Keyword>& keywords);
    Value call_method(HostObject& object, const Text& name, std::size_t count,
                      const std::vector<Arguments::Keyword>& keywords);
    Value construct(const Value& definition, std::size_t count,
                    const std::vector<Arguments::Keyword>& keywords);
    Value member_function(const StructMember& member, const Value& self) const;

    // Texts of programs.
    Value run(const Text& source, const Text& file_name);
    Value run_file(const Text& path);
    const Text* keep_file_name(const Text& name) { return &*file_names_.insert(name).first; }
    void keep(const std::shared_ptr<const StructLayout>& layout) { layouts_.insert(layout); }
    void begin_from_outside();
    std::int64_t steps() const { return environment_.settings.step_limit - steps_left_; }
    std::uint64_t calls_from_outside() const { return calls_from_outside_; }

    // try … catch.
    const ScriptError* current_error() const { return current_error_; }
    const ScriptError* set_current_error(const ScriptError* error);

    bool undo = false;

private:
    friend class FrameGuard;

    void bind_keywords(const FunctionCode& code, std::size_t count,
                       const std::vector<Arguments::Keyword>& keywords);
    Value run_unit(const FunctionCode& code);

    Interpreter& interpreter_;
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
    const ScriptError* current_error_ = nullptr;
    std::unordered_set<Text> file_names_;
    std::unordered_set<std::shared_ptr<const StructLayout>> layouts_;
};

// Operations on values, in operators.cpp and text_form.cpp. They fail at the engine's spot.
Value add(Engine& engine, const Value& one, const Value& other);
Value arithmetic(Engine& engine, char16_t operation, const Value& one, const Value& other); // + - * / ^
Value negate(Engine& engine, const Value& value);
bool equal_values(Engine& engine, const Value& one, const Value& other);
int compare_values(Engine& engine, const char16_t* operation, const Value& one, const Value& other);
Text text_of(Engine& engine, const Value& value);      // `as string`
Text printed_text(Engine& engine, const Value& value); // with quotes and #
Text text_of_real(float value);
Value convert(Engine& engine, const Value& value, const Value& to);
Value class_of(Engine& engine, const Value& value);
Value property_of(Engine& engine, const Value& object, const Text& folded_name);
void set_property_of(Engine& engine, const Value& object, const Text& folded_name, const Value& value);
bool has_property(Engine& engine, const Value& object, const Text& folded_name);
Value element_of(Engine& engine, const Value& object, const Value& index);
void set_element_of(Engine& engine, const Value& object, const Value& index, const Value& value);
// What `for … in` and `as array` go through; false: no collection.
bool elements_of(Engine& engine, const Value& collection, std::vector<Value>& items);
// An index counted from 0; fails unless it is a number of at least 1.
std::size_t index_from(Engine& engine, const Value& index);
bool as_condition(Engine& engine, const Value& value, const char16_t* what);
bool number_to_integer(const Value& value, std::int32_t& result);
float number_to_real(const Value& value);

// Built-in classes, in classes.cpp. The class of all values for a kind that has none of its own.
std::shared_ptr<const HostClass> class_of_kind(Kind kind);
void add_classes(Globals& globals);

// The built-in functions, in builtin_*.cpp.
void add_value_functions(Globals& globals);
void add_program_functions(Globals& globals);
void add_string_functions(Globals& globals);
void add_array_functions(Globals& globals);
void add_number_functions(Globals& globals);
void add_file_functions(Globals& globals);
void add_stream_functions(Globals& globals);

constexpr std::size_t kMostElements = 16u << 20;

} // namespace maxscript
