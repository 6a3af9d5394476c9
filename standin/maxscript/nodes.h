// The expressions of a compiled script. Internal to the language.
#pragma once

#include "standin/maxscript/code.h"
#include "standin/maxscript/interpreter.h"

namespace maxscript {

struct LiteralNode : Node { // numbers, names, constants of the host
    LiteralNode(const Spot& spot, Value constant) : Node(spot), value(std::move(constant)) {}
    Value evaluate(Interpreter&) const override { return value; }
    Value value;
};

// Always the same object: a script that changes a literal sees the change the next time.
struct StringNode : LiteralNode {
    using LiteralNode::LiteralNode;
    const Text* literal_text() const override { return &value.as_string().text; }
};

struct CellNode : Node { // a global, or a local of a top-level block
    CellNode(const Spot& spot, CellPointer variable) : Node(spot), cell(std::move(variable)) {}
    Value evaluate(Interpreter& interpreter) const override;
    bool is_assignable() const override { return true; }
    void assign(Interpreter& interpreter, const Value& value) const override;
    Value refer(Interpreter& interpreter) const override;
    CellPointer cell;
};

struct SlotNode : Node { // a local or parameter of a function
    SlotNode(const Spot& spot, std::size_t place) : Node(spot), slot(place) {}
    Value evaluate(Interpreter& interpreter) const override;
    bool is_assignable() const override { return true; }
    void assign(Interpreter& interpreter, const Value& value) const override;
    Value refer(Interpreter& interpreter) const override;
    std::size_t slot;
};

struct MemberNode : Node { // a struct's member by its bare name
    MemberNode(const Spot& spot, const StructLayout* owner, std::size_t place)
        : Node(spot), layout(owner), index(place) {}
    const StructMember& member() const { return layout->members[index]; }
    Value evaluate(Interpreter& interpreter) const override;
    bool is_assignable() const override { return true; }
    void assign(Interpreter& interpreter, const Value& value) const override;
    const StructLayout* layout; // the interpreter owns it; shared ownership here would be a cycle
    std::size_t index;
};

struct PropertyNode : Node {
    PropertyNode(const Spot& spot, NodePointer owner, Text folded_name)
        : Node(spot), object(std::move(owner)), name(std::move(folded_name)) {}
    Value evaluate(Interpreter& interpreter) const override;
    bool is_assignable() const override { return true; }
    void assign(Interpreter& interpreter, const Value& value) const override;
    NodePointer object;
    Text name;
};

struct IndexNode : Node {
    IndexNode(const Spot& spot, NodePointer owner, NodePointer place)
        : Node(spot), object(std::move(owner)), index(std::move(place)) {}
    Value evaluate(Interpreter& interpreter) const override;
    bool is_assignable() const override { return true; }
    void assign(Interpreter& interpreter, const Value& value) const override;
    NodePointer object;
    NodePointer index;
};

struct ReferNode : Node { // &variable
    ReferNode(const Spot& spot, NodePointer variable) : Node(spot), target(std::move(variable)) {}
    Value evaluate(Interpreter& interpreter) const override { return target->refer(interpreter); }
    NodePointer target;
};

struct ArrayNode : Node {
    using Node::Node;
    Value evaluate(Interpreter& interpreter) const override;
    std::vector<NodePointer> items;
};

struct UnaryNode : Node { // -a, not a
    UnaryNode(const Spot& spot, bool negates, NodePointer value)
        : Node(spot), is_minus(negates), operand(std::move(value)) {}
    Value evaluate(Interpreter& interpreter) const override;
    bool is_minus;
    NodePointer operand;
};

// Operators of one rank from left to right, in one node so that a long sum is no deep tree.
struct ChainNode : Node {
    using Node::Node;
    struct Link {
        char16_t operation;
        Spot spot;
        NodePointer operand;
    };
    Value evaluate(Interpreter& interpreter) const override;
    NodePointer first;
    std::vector<Link> links;
};

struct LogicNode : Node { // a and b and c, or the same with or
    using Node::Node;
    Value evaluate(Interpreter& interpreter) const override;
    bool is_and = true;
    std::vector<NodePointer> operands;
};

struct CompareNode : Node {
    using Node::Node;
    Value evaluate(Interpreter& interpreter) const override;
    Text operation;
    NodePointer one;
    NodePointer other;
};

struct AsNode : Node {
    AsNode(const Spot& spot, NodePointer operand, NodePointer to)
        : Node(spot), value(std::move(operand)), target(std::move(to)) {}
    Value evaluate(Interpreter& interpreter) const override;
    NodePointer value;
    NodePointer target;
};

struct CallNode : Node {
    using Node::Node;
    struct Keyword {
        Text name; // folded
        NodePointer value;
    };
    Value evaluate(Interpreter& interpreter) const override;
    NodePointer callee;
    std::vector<NodePointer> arguments;
    std::vector<Keyword> keywords;

private:
    void push_arguments(Interpreter& interpreter, std::vector<Arguments::Keyword>& values) const;
    Value call_property(Interpreter& interpreter, const PropertyNode& property) const;
    Value call_member(Interpreter& interpreter, const MemberNode& node) const;
};

struct BlockNode : Node {
    using Node::Node;
    Value evaluate(Interpreter& interpreter) const override;
    std::vector<NodePointer> statements;
};

struct AssignNode : Node {
    using Node::Node;
    Value evaluate(Interpreter& interpreter) const override;
    Text operation; // "=", "+=" …
    NodePointer target;
    NodePointer value;
};

struct IfNode : Node {
    using Node::Node;
    struct Branch {
        NodePointer condition;
        NodePointer body;
    };
    Value evaluate(Interpreter& interpreter) const override;
    std::vector<Branch> branches;
    NodePointer else_body;
};

struct CaseNode : Node {
    using Node::Node;
    struct Branch {
        NodePointer label; // null: default
        NodePointer body;
    };
    Value evaluate(Interpreter& interpreter) const override;
    NodePointer subject; // null: the labels are conditions
    std::vector<Branch> branches;
};

struct WhileNode : Node {
    using Node::Node;
    Value evaluate(Interpreter& interpreter) const override;
    NodePointer condition;
    NodePointer body;
};

struct ForNode : Node {
    using Node::Node;
    Value evaluate(Interpreter& interpreter) const override;
    NodePointer variable;
    NodePointer source;
    NodePointer to; // null: source is a collection
    NodePointer by;
    NodePointer during; // while
    NodePointer where;
    NodePointer body;
    bool collects = false;

private:
    void run_range(Interpreter& interpreter, std::vector<Value>& collected) const;
    void run_items(Interpreter& interpreter, std::vector<Value>& collected) const;
    bool pass(Interpreter& interpreter, const Value& value, std::vector<Value>& collected) const;
};

struct TryNode : Node {
    using Node::Node;
    Value evaluate(Interpreter& interpreter) const override;
    NodePointer body;
    NodePointer handler;
};

struct ContextNode : Node { // undo "step" on …
    using Node::Node;
    Value evaluate(Interpreter& interpreter) const override;
    NodePointer state;
    NodePointer body;
};

struct FunctionNode : Node { // fn f a = …
    using Node::Node;
    Value evaluate(Interpreter& interpreter) const override;
    std::shared_ptr<FunctionCode> code;
    NodePointer variable;
};

struct StructNode : Node {
    using Node::Node;
    Value evaluate(Interpreter& interpreter) const override;
    std::shared_ptr<StructLayout> layout;
    NodePointer variable;
};

struct DeclareNode : Node { // local and global declarations
    using Node::Node;
    struct Item {
        NodePointer variable;
        NodePointer first_value;
        bool is_local = false;
    };
    Value evaluate(Interpreter& interpreter) const override;
    std::vector<Item> items;
};

} // namespace maxscript
