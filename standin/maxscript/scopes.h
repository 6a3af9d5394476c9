// Finds the variable of a name while a script is read. Internal to the language.
#pragma once

#include "standin/maxscript/code.h"

namespace maxscript {

// The facts about a variable's value that are known while the script is read.
struct Knowledge {
    int arguments = -1;         // of the function that it holds; below 0: unknown
    bool holds_literal = false; // only ever a string literal
    bool held_other = false;    // something else at some time
    bool is_format = false;     // used as a format string
};

struct Variable {
    enum class Kind : std::uint8_t { cell, slot, member };

    Text name; // as declared
    Kind kind = Kind::cell;
    CellPointer cell;
    std::size_t slot = 0; // or the member's index
    std::shared_ptr<const StructLayout> layout;
    std::shared_ptr<Knowledge> knowledge = std::make_shared<Knowledge>();
};

// The function that is being read; the first is a top-level expression.
struct FunctionScope {
    bool is_unit = false;
    std::size_t slots = 0;
    std::size_t most_slots = 0;
    int height = 0;
    bool in_struct = false; // a member of an instance
};

class Scopes {
public:
    explicit Scopes(Globals& globals) : globals_(globals) {}

    void begin_function(bool is_unit, bool in_struct);
    FunctionScope end_function();
    FunctionScope& function() { return functions_.back(); }
    void begin_block();
    void end_block();
    bool is_top_level() const { return functions_.empty() || scopes_.size() == functions_.size(); }
    bool in_unit() const { return functions_.size() == 1; }

    enum class Answer : std::uint8_t { found, unknown, outer_local };
    Answer find(const Text& folded_name, Variable& variable);
    Variable find_global(const CellPointer& cell);
    // In the innermost scope: a global at top level, else a local.
    Variable declare(const Text& name, const Text& folded_name);
    Variable declare_local(const Text& name, const Text& folded_name);
    Variable declare_global(const Text& name, const Text& folded_name);
    void declare_member(const Text& folded_name, const std::shared_ptr<const StructLayout>& layout,
                        std::size_t index);

private:
    struct Scope {
        std::unordered_map<Text, Variable> names;
        std::size_t function = 0; // its number
        std::size_t slots_before = 0;
    };

    Globals& globals_;
    std::vector<FunctionScope> functions_;
    std::vector<Scope> scopes_;
    std::unordered_map<const Cell*, std::shared_ptr<Knowledge>> known_globals_;
};

} // namespace maxscript
