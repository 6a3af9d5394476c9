// Variables, members, arrays, operators, calls.
#include "standin/maxscript/nodes.h"
#include "standin/maxscript/operations.h"

namespace maxscript {

namespace {

struct CellReference : Reference {
    explicit CellReference(CellPointer variable) : cell(std::move(variable)) {}
    Value get() const override { return cell->get(); }
    void set(const Value& value) override { cell->set(value); }
    CellPointer cell;
};

// Used only by calls inside the one that owns the variable.
struct SlotReference : Reference {
    SlotReference(Interpreter& owner, std::size_t place) : interpreter(owner), index(place) {}
    Value get() const override { return interpreter.stack_at(index); }
    void set(const Value& value) override { interpreter.stack_at(index) = value; }
    Interpreter& interpreter;
    std::size_t index;
};

template <class Type, class... Parts>
Value reference_value(Parts&&... parts) {
    std::shared_ptr<Reference> reference = std::make_shared<Type>(std::forward<Parts>(parts)...);
    return Value::shared(Kind::reference, std::move(reference));
}

} // namespace

Value function_value(const std::shared_ptr<const FunctionCode>& code, const Value& self) {
    auto function = std::make_shared<FunctionObject>();
    function->code = code;
    function->self = self;
    return Value::shared(Kind::function, std::move(function));
}

void FunctionObject::surrender(std::vector<Value>& content) {
    content.push_back(std::move(self));
    self = Value();
}

const StructMember* StructLayout::find(const Text& folded_name) const {
    const auto found = index.find(folded_name);
    return found == index.end() ? nullptr : &members[found->second];
}

Value CellNode::evaluate(Interpreter& interpreter) const {
    interpreter.at(spot());
    return cell->get();
}

void CellNode::assign(Interpreter& interpreter, const Value& value) const {
    interpreter.at(spot());
    if (cell->is_read_only()) {
        interpreter.fail(u"Runtime error: Cannot assign to read-only variable: " + cell->name);
    }
    cell->set(value);
}

Value CellNode::refer(Interpreter&) const {
    return reference_value<CellReference>(cell);
}

Value SlotNode::evaluate(Interpreter& interpreter) const {
    return interpreter.slot(slot);
}

void SlotNode::assign(Interpreter& interpreter, const Value& value) const {
    interpreter.slot(slot) = value;
}

Value SlotNode::refer(Interpreter& interpreter) const {
    return reference_value<SlotReference>(interpreter, interpreter.base() + slot);
}

Value MemberNode::evaluate(Interpreter& interpreter) const {
    if (member().is_function) {
        return function_value(member().code, interpreter.self());
    }
    interpreter.at(spot());
    return interpreter.instance().members[member().data_index];
}

void MemberNode::assign(Interpreter& interpreter, const Value& value) const {
    interpreter.at(spot());
    interpreter.instance().members[member().data_index] = value;
}

Value PropertyNode::evaluate(Interpreter& interpreter) const {
    const Value owner = object->evaluate(interpreter);
    interpreter.at(spot());
    return property_of(interpreter, owner, name);
}

void PropertyNode::assign(Interpreter& interpreter, const Value& value) const {
    const Value owner = object->evaluate(interpreter);
    interpreter.at(spot());
    set_property_of(interpreter, owner, name, value);
}

Value IndexNode::evaluate(Interpreter& interpreter) const {
    const Value owner = object->evaluate(interpreter);
    const Value place = index->evaluate(interpreter);
    interpreter.at(spot());
    return element_of(interpreter, owner, place);
}

void IndexNode::assign(Interpreter& interpreter, const Value& value) const {
    const Value owner = object->evaluate(interpreter);
    const Value place = index->evaluate(interpreter);
    interpreter.at(spot());
    set_element_of(interpreter, owner, place, value);
}

Value ArrayNode::evaluate(Interpreter& interpreter) const {
    interpreter.charge(items.size());
    std::vector<Value> values;
    values.reserve(items.size());
    for (const NodePointer& item : items) {
        values.push_back(item->evaluate(interpreter));
    }
    return Value::array(std::move(values));
}

Value UnaryNode::evaluate(Interpreter& interpreter) const {
    const Value value = operand->evaluate(interpreter);
    interpreter.at(spot());
    if (is_minus) {
        return negate(interpreter, value);
    }
    if (!value.is(Kind::boolean)) {
        interpreter.fail_operator(u"not", value);
    }
    return Value::boolean(!value.as_boolean());
}

Value ChainNode::evaluate(Interpreter& interpreter) const {
    Value result = first->evaluate(interpreter);
    for (const Link& link : links) {
        const Value operand = link.operand->evaluate(interpreter);
        interpreter.at(link.spot);
        result = arithmetic(interpreter, link.operation, result, operand);
    }
    return result;
}

Value LogicNode::evaluate(Interpreter& interpreter) const {
    for (const NodePointer& operand : operands) {
        Value value = operand->evaluate(interpreter);
        interpreter.at(operand->spot());
        if (!value.is(Kind::boolean)) {
            interpreter.fail_conversion(value, u"Boolean");
        }
        if (value.as_boolean() != is_and) {
            return value;
        }
    }
    return Value::boolean(is_and);
}

Value CompareNode::evaluate(Interpreter& interpreter) const {
    const Value left = one->evaluate(interpreter);
    const Value right = other->evaluate(interpreter);
    interpreter.at(spot());
    if (operation == u"==" || operation == u"!=") {
        return Value::boolean(equal_values(interpreter, left, right) == (operation == u"=="));
    }
    const int order = compare_values(interpreter, operation, left, right);
    if (order == kUnordered) {
        return Value::boolean(false);
    }
    const bool with_equal = operation.size() == 2;
    const bool holds = operation[0] == u'<' ? order < 0 : order > 0;
    return Value::boolean(holds || (with_equal && order == 0));
}

Value AsNode::evaluate(Interpreter& interpreter) const {
    const Value from = value->evaluate(interpreter);
    const Value to = target->evaluate(interpreter);
    interpreter.at(spot());
    return convert(interpreter, from, to);
}

void CallNode::push_arguments(Interpreter& interpreter, std::vector<Arguments::Keyword>& values) const {
    for (const NodePointer& argument : arguments) {
        interpreter.push(argument->evaluate(interpreter));
    }
    for (const Keyword& keyword : keywords) {
        values.push_back(Arguments::Keyword{keyword.name, keyword.value->evaluate(interpreter)});
    }
    interpreter.at(spot());
}

Value CallNode::call_member(Interpreter& interpreter, const MemberNode& node) const {
    const StackMark mark(interpreter);
    std::vector<Arguments::Keyword> values;
    push_arguments(interpreter, values);
    const Value self = interpreter.self();
    return interpreter.call_function(*node.member().code, self, arguments.size(), values);
}

Value CallNode::call_property(Interpreter& interpreter, const PropertyNode& property) const {
    const Value object = property.object->evaluate(interpreter);
    const StackMark mark(interpreter);
    std::vector<Arguments::Keyword> values;
    if (object.is(Kind::host_object)) {
        push_arguments(interpreter, values);
        return interpreter.call_method(object.as_object(), property.name, arguments.size(), values);
    }
    interpreter.at(property.spot());
    const Value function = property_of(interpreter, object, property.name);
    push_arguments(interpreter, values);
    return interpreter.call(function, arguments.size(), values);
}

Value CallNode::evaluate(Interpreter& interpreter) const {
    if (const auto* property = dynamic_cast<const PropertyNode*>(callee.get())) {
        return call_property(interpreter, *property);
    }
    const auto* member = dynamic_cast<const MemberNode*>(callee.get());
    if (member != nullptr && member->member().is_function) {
        return call_member(interpreter, *member);
    }
    const Value function = callee->evaluate(interpreter);
    const StackMark mark(interpreter);
    std::vector<Arguments::Keyword> values;
    push_arguments(interpreter, values);
    return interpreter.call(function, arguments.size(), values);
}

Value AssignNode::evaluate(Interpreter& interpreter) const {
    Value result;
    if (operation.size() == 1) {
        result = value->evaluate(interpreter);
    } else {
        const Value before = target->evaluate(interpreter);
        const Value operand = value->evaluate(interpreter);
        interpreter.at(spot());
        result = arithmetic(interpreter, operation[0], before, operand);
    }
    target->assign(interpreter, result);
    return result;
}

} // namespace maxscript
