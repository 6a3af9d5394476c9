// A compiled script: a tree that evaluates itself, functions and structs. Internal to the language.
#pragma once

#include "standin/maxscript/globals.h"
#include "standin/maxscript/token.h"

namespace maxscript {

class Interpreter;

class Node {
public:
    explicit Node(const Spot& spot) : spot_(spot) {}
    virtual ~Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    virtual Value evaluate(Interpreter& interpreter) const = 0;
    virtual bool is_assignable() const { return false; }
    virtual void assign(Interpreter&, const Value&) const {}
    // For &node. Undefined: it is no variable.
    virtual Value refer(Interpreter&) const { return Value(); }
    // The text of a string literal; null for other nodes.
    virtual const Text* literal_text() const { return nullptr; }
    const Spot& spot() const { return spot_; }

private:
    Spot spot_;
};

using NodePointer = std::unique_ptr<Node>;

// The variable behind a by-reference argument.
struct Reference {
    virtual ~Reference() = default;
    virtual Value get() const = 0;
    virtual void set(const Value& value) = 0;
};

struct KeywordParameter {
    Text name; // folded
    NodePointer fallback;
};

// Parameters come first in the frame: the positional ones, then those with keywords.
struct FunctionCode {
    Text name;
    std::size_t parameters = 0; // positional ones
    std::vector<KeywordParameter> keywords;
    NodePointer body;
    std::size_t slots = 0;
    int height = 1; // levels of expressions inside each other, without calls
};

struct FunctionObject : Container {
    void surrender(std::vector<Value>& content) override;

    std::shared_ptr<const FunctionCode> code;
    Value self; // the instance of a member function; undefined: none
};

Value function_value(const std::shared_ptr<const FunctionCode>& code, const Value& self);

struct StructMember {
    Text name;
    bool is_function = false;
    std::size_t data_index = 0;
    // The function, or one that computes the first value; null: undefined.
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

// "Argument count error: …".
Text wrong_count(const Text& function, std::size_t wanted, std::size_t given);

} // namespace maxscript
