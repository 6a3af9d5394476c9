// What the parser makes of a script: a tree that evaluates itself, functions and structs. Internal to the
// language.
#pragma once

#include "standin/maxscript/globals.h"
#include "standin/maxscript/token.h"

namespace maxscript {

class Engine;

class Node {
public:
    explicit Node(const Spot& spot) : spot_(spot) {}
    virtual ~Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    virtual Value evaluate(Engine& engine) const = 0;
    virtual bool is_assignable() const { return false; }
    virtual void assign(Engine&, const Value&) const {}
    // For &node, a variable; undefined: it cannot be referred to.
    virtual Value refer(Engine&) const { return Value(); }
    // The text of a string literal; null: it is none.
    virtual const Text* literal_text() const { return nullptr; }
    const Spot& spot() const { return spot_; }

private:
    Spot spot_;
};

using NodePointer = std::unique_ptr<Node>;

// A variable whose place a by-reference argument names.
struct Reference {
    virtual ~Reference() = default;
    virtual Value get() const = 0;
    virtual void set(const Value& value) = 0;
};

struct KeywordParameter {
    Text name; // folded
    NodePointer otherwise;
};

// Parameters come first in the frame: the positional ones, then those with keywords.
struct FunctionCode {
    Text name;
    std::size_t parameters = 0; // positional ones
    std::vector<KeywordParameter> keywords;
    NodePointer body;
    std::size_t slots = 0;
    int height = 1; // how deep its evaluation can go without calls
};

struct FunctionObject : Container {
    void surrender(std::vector<Value>& content) override;

    std::shared_ptr<const FunctionCode> code;
    Value self; // the instance of a member function; undefined: none
};

struct StructMember {
    Text name;
    bool is_function = false;
    std::size_t data_index = 0;
    // The function, or what computes the first value; null: undefined.
    std::shared_ptr<FunctionCode> code;
};

struct StructLayout {
    Text name;
    std::vector<StructMember> members;
    std::unordered_map<Text, std::size_t> index; // by folded name
    std::vector<std::size_t> data;               // the members that are data, in order

    const StructMember* find(const Text& folded_name) const;
};

struct StructDefinition {
    std::shared_ptr<const StructLayout> layout;
};

} // namespace maxscript
