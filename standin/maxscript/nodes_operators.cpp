// Operators, calls.
#include "standin/maxscript/engine.h"
#include "standin/maxscript/nodes.h"

namespace maxscript {

namespace {

// Takes the arguments of a call off the stack again.
class ArgumentsOnStack {
public:
    explicit ArgumentsOnStack(Engine& engine) : engine_(engine), top_(engine.top()) {}
    ~ArgumentsOnStack() { engine_.drop_to(top_); }
    ArgumentsOnStack(const ArgumentsOnStack&) = delete;
    ArgumentsOnStack& operator=(const ArgumentsOnStack&) = delete;

private:
    Engine& engine_;
    std::size_t top_;
};

} // namespace

Value NegateNode::evaluate(Engine& engine) const {
    const Value value = operand->evaluate(engine);
    engine.at(spot());
    return negate(engine, value);
}

Value NotNode::evaluate(Engine& engine) const {
    const Value value = operand->evaluate(engine);
    engine.at(spot());
    if (!value.is(Kind::boolean)) {
        engine.fail(u"No \"\"not\"\" function for " + printed_text(engine, value));
    }
    return Value::boolean(!value.as_boolean());
}

Value ChainNode::evaluate(Engine& engine) const {
    Value result = first->evaluate(engine);
    for (const Link& link : links) {
        const Value operand = link.operand->evaluate(engine);
        engine.at(link.spot);
        result = arithmetic(engine, link.operation, result, operand);
    }
    return result;
}

Value LogicNode::evaluate(Engine& engine) const {
    for (const NodePointer& operand : operands) {
        Value value = operand->evaluate(engine);
        engine.at(operand->spot());
        if (!value.is(Kind::boolean)) {
            engine.fail(u"Unable to convert: " + printed_text(engine, value) + u" to type: Boolean");
        }
        if (value.as_boolean() != is_and) {
            return value;
        }
    }
    return Value::boolean(is_and);
}

Value CompareNode::evaluate(Engine& engine) const {
    const Value left = one->evaluate(engine);
    const Value right = other->evaluate(engine);
    engine.at(spot());
    if (operation == u"==" || operation == u"!=") {
        return Value::boolean(equal_values(engine, left, right) == (operation == u"=="));
    }
    const int order = compare_values(engine, operation.c_str(), left, right);
    constexpr int kUnordered = 2; // a Float that is no number
    if (order == kUnordered) {
        return Value::boolean(false);
    }
    const bool with_equal = operation.size() == 2;
    const bool holds = operation[0] == u'<' ? order < 0 : order > 0;
    return Value::boolean(holds || (with_equal && order == 0));
}

Value AsNode::evaluate(Engine& engine) const {
    const Value from = value->evaluate(engine);
    const Value to = target->evaluate(engine);
    engine.at(spot());
    return convert(engine, from, to);
}

void CallNode::push_arguments(Engine& engine, std::vector<Arguments::Keyword>& values) const {
    for (const NodePointer& argument : arguments) {
        engine.push(argument->evaluate(engine));
    }
    for (const Keyword& keyword : keywords) {
        values.push_back(Arguments::Keyword{keyword.name, keyword.value->evaluate(engine)});
    }
    engine.at(spot());
}

Value CallNode::call_member(Engine& engine, const MemberNode& node) const {
    const ArgumentsOnStack on_stack(engine);
    std::vector<Arguments::Keyword> values;
    push_arguments(engine, values);
    const Value self = engine.self();
    return engine.call_function(*node.member().code, self, arguments.size(), values);
}

Value CallNode::call_property(Engine& engine, const PropertyNode& property) const {
    const Value object = property.object->evaluate(engine);
    const ArgumentsOnStack on_stack(engine);
    std::vector<Arguments::Keyword> values;
    if (object.is(Kind::host_object)) {
        push_arguments(engine, values);
        return engine.call_method(object.as_object(), property.name, arguments.size(), values);
    }
    engine.at(property.spot());
    const Value function = property_of(engine, object, property.name);
    push_arguments(engine, values);
    return engine.call(function, arguments.size(), values);
}

Value CallNode::evaluate(Engine& engine) const {
    if (const auto* property = dynamic_cast<const PropertyNode*>(callee.get())) {
        return call_property(engine, *property);
    }
    const auto* member = dynamic_cast<const MemberNode*>(callee.get());
    if (member != nullptr && member->member().is_function) {
        return call_member(engine, *member);
    }
    const Value function = callee->evaluate(engine);
    const ArgumentsOnStack on_stack(engine);
    std::vector<Arguments::Keyword> values;
    push_arguments(engine, values);
    return engine.call(function, arguments.size(), values);
}

Value AssignNode::evaluate(Engine& engine) const {
    Value result;
    if (operation.size() == 1) {
        result = value->evaluate(engine);
    } else {
        const Value before = target->evaluate(engine);
        const Value operand = value->evaluate(engine);
        engine.at(spot());
        result = arithmetic(engine, operation[0], before, operand);
    }
    target->assign(engine, result);
    return result;
}

} // namespace maxscript
