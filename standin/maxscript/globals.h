// The global variables: those of scripts, those of the host, and the marks of persistence.
#pragma once

#include "standin/maxscript/value.h"

#include <map>
#include <unordered_map>

namespace maxscript {

// One variable. Compiled code holds its cells, so code that was compiled before still sees a removed global,
// as it does in the host.
struct Cell : Container {
    void surrender(std::vector<Value>& content) override;
    Value get() const;
    void set(const Value& new_value);
    bool is_read_only() const { return constant || (getter && !setter); }

    Text name; // as it was first written
    Value value;
    std::function<Value()> getter;            // set: the host owns the value
    std::function<void(const Value&)> setter; // with a getter only; empty: read only
    bool constant = false;
    bool from_host = false;
    bool persistent = false;
};

using CellPointer = std::shared_ptr<Cell>;

// Names in any case, unless they are called folded; get and set are quick for folded names. Lists are in the
// order of the folded names.
class Globals {
public:
    CellPointer find(const Text& folded_name) const; // null when there is none
    // The variable. A new one is undefined.
    CellPointer declare(const Text& name);

    // globalVars.*
    bool is_global(const Text& name) const { return find(folded(name)) != nullptr; }
    bool get(const Text& name, Value& value) const; // false: no such global
    bool set(const Text& name, const Value& value); // false: no such global, or read only
    bool remove(const Text& name);                  // false: no such global
    enum class Which : std::uint8_t { all, of_scripts, persistent };
    std::vector<Text> names(Which which) const;

    // persistents.*: without the mark the variable and its value stay.
    bool is_persistent(const Text& name) const;
    void set_persistent(const Text& name, bool persistent); // declares it when needed
    std::vector<Text> persistent_names() const { return names(Which::persistent); }

    // The host's side. Keywords in any case.
    void add_constant(const Text& name, const Value& value);
    void add_variable(const Text& name, std::function<Value()> getter,
                      std::function<void(const Value&)> setter = nullptr);
    void add_function(const Text& name, int fewest, int most, const std::vector<Text>& keywords,
                      NativeCode code);
    // Replaces the code of a function that is there.
    void wrap_function(const Text& name, const std::function<NativeCode(NativeCode original)>& wrap);

private:
    CellPointer find_any(const Text& name) const;

    std::map<Text, CellPointer> cells_; // by folded name
};

Value make_native(const Text& name, int fewest, int most, const std::vector<Text>& keywords, NativeCode code);

} // namespace maxscript
