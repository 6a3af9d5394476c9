// The global variables: what scripts made, what the host offers, and the marks of persistence.
#pragma once

#include "standin/maxscript/value.h"

#include <map>
#include <unordered_map>

namespace maxscript {

// One variable. Compiled code holds its cells, so a removed global lives on in code that was compiled before,
// as it does in the host.
struct Cell : Container {
    void surrender(std::vector<Value>& content) override;

    Text name; // as it was first written
    Value value;
    std::function<Value()> getter;            // set: the host owns the value
    std::function<void(const Value&)> setter; // with a getter only; empty: read only
    bool constant = false;
    bool from_host = false;
    bool persistent = false;
};

using CellPointer = std::shared_ptr<Cell>;

class Globals {
public:
    // Null when there is none. Names in any case.
    CellPointer find(const Text& name) const;
    CellPointer find_folded(const Text& folded_name) const;
    // The variable, made with the value undefined when it is new.
    CellPointer declare(const Text& name);

    // globalVars.*
    bool is_global(const Text& name) const { return find(name) != nullptr; }
    bool get(const Text& name, Value& value) const;         // false: no such global
    bool set(const Text& name, const Value& value);         // false: no such global, or read only
    bool remove(const Text& name);                          // false: no such global
    std::vector<Text> gather(bool with_host = false) const; // in the order of their folded names

    // persistents.*: the mark goes, the variable and its value stay.
    bool is_persistent(const Text& name) const;
    void mark_persistent(const Text& name); // declares it when needed
    bool unmark_persistent(const Text& name);
    std::vector<Text> persistent_names() const;

    // The host's side.
    void add_constant(const Text& name, const Value& value);
    void add_variable(const Text& name, std::function<Value()> getter,
                      std::function<void(const Value&)> setter = nullptr);
    void add_function(NativeFunction function);
    // The same, spelled out; keywords in any case.
    void add_function(const Text& name, int fewest, int most, const std::vector<Text>& keywords,
                      NativeCode code);

private:
    std::unordered_map<Text, CellPointer> cells_; // by folded name
};

} // namespace maxscript
