// Blocks, branches, loops, definitions.
#include "standin/maxscript/nodes.h"
#include "standin/maxscript/operations.h"

namespace maxscript {

Value BlockNode::evaluate(Interpreter& interpreter) const {
    Value result;
    for (const NodePointer& statement : statements) {
        interpreter.at(statement->spot());
        interpreter.charge(0);
        result = statement->evaluate(interpreter);
    }
    return result;
}

Value IfNode::evaluate(Interpreter& interpreter) const {
    for (const Branch& branch : branches) {
        const Value condition = branch.condition->evaluate(interpreter);
        interpreter.at(branch.condition->spot());
        if (as_condition(interpreter, condition, u"if-test")) {
            return branch.body->evaluate(interpreter);
        }
    }
    return else_body ? else_body->evaluate(interpreter) : Value();
}

Value CaseNode::evaluate(Interpreter& interpreter) const {
    const Value wanted = subject ? subject->evaluate(interpreter) : Value::boolean(true);
    const Branch* chosen = nullptr;
    for (const Branch& branch : branches) {
        if (!branch.label) {
            chosen = chosen != nullptr ? chosen : &branch;
            continue;
        }
        const Value label = branch.label->evaluate(interpreter);
        interpreter.at(branch.label->spot());
        if (equal_values(interpreter, wanted, label)) {
            chosen = &branch;
            break;
        }
    }
    return chosen != nullptr ? chosen->body->evaluate(interpreter) : Value();
}

Value WhileNode::evaluate(Interpreter& interpreter) const {
    Value result;
    while (true) {
        interpreter.at(spot());
        interpreter.charge(0);
        const Value holds = condition->evaluate(interpreter);
        interpreter.at(condition->spot());
        if (!as_condition(interpreter, holds, u"while-test")) {
            return result;
        }
        result = body->evaluate(interpreter);
    }
}

// One value of the loop. False: the loop is over.
bool ForNode::pass(Interpreter& interpreter, const Value& value, std::vector<Value>& collected) const {
    interpreter.at(spot());
    interpreter.charge(0);
    variable->assign(interpreter, value);
    for (const NodePointer* test : {&during, &where}) {
        if (!*test) {
            continue;
        }
        const Value holds = (*test)->evaluate(interpreter);
        interpreter.at((*test)->spot());
        if (!as_condition(interpreter, holds, test == &during ? u"while-test" : u"where-test")) {
            return test == &where;
        }
    }
    Value result = body->evaluate(interpreter);
    if (collects) {
        refuse_growth(interpreter, collected.size());
        collected.push_back(std::move(result));
    }
    return true;
}

void ForNode::run_range(Interpreter& interpreter, std::vector<Value>& collected) const {
    const Value limits[3] = {source->evaluate(interpreter), to->evaluate(interpreter),
                             by ? by->evaluate(interpreter) : Value::integer(1)};
    interpreter.at(spot());
    for (const Value& limit : limits) {
        if (!limit.is(Kind::integer)) {
            interpreter.fail(u"Runtime error: For loop limits must be whole numbers, got: " +
                             interpreter.printed(limit));
        }
    }
    const std::int64_t last = limits[1].as_integer();
    const std::int64_t step = limits[2].as_integer();
    if (step == 0) {
        interpreter.fail(u"Runtime error: For loop 'by' expression cannot be 0");
    }
    bool goes_on = true;
    for (std::int64_t i = limits[0].as_integer(); goes_on && (step > 0 ? i <= last : i >= last); i += step) {
        goes_on = pass(interpreter, Value::integer(static_cast<std::int32_t>(i)), collected);
    }
}

void ForNode::run_items(Interpreter& interpreter, std::vector<Value>& collected) const {
    const Value items = source->evaluate(interpreter);
    interpreter.at(source->spot());
    std::vector<Value> values;
    const bool is_array = items.is(Kind::array);
    if (!is_array && !elements_of(interpreter, items, values)) {
        interpreter.fail(u"Type error: For loop needs a collection, got: " + interpreter.printed(items));
    }
    // Not a copy: the body may change the array.
    const std::vector<Value>& all = is_array ? items.as_array().items : values;
    bool goes_on = true;
    for (std::size_t i = 0; goes_on && i < all.size(); ++i) {
        const Value item = all[i];
        goes_on = pass(interpreter, item, collected);
    }
}

Value ForNode::evaluate(Interpreter& interpreter) const {
    std::vector<Value> collected;
    if (to) {
        run_range(interpreter, collected);
    } else {
        run_items(interpreter, collected);
    }
    return collects ? Value::array(std::move(collected)) : Value::ok();
}

Value TryNode::evaluate(Interpreter& interpreter) const {
    try {
        return body->evaluate(interpreter);
    } catch (const ScriptError& error) {
        if (error.kind() == ErrorKind::limit) {
            throw;
        }
        struct Leave {
            Interpreter& interpreter;
            const ScriptError* before;
            ~Leave() { interpreter.set_current_error(before); }
        } leave{interpreter, interpreter.current_error()};
        interpreter.set_current_error(&error);
        return handler->evaluate(interpreter);
    }
}

Value ContextNode::evaluate(Interpreter& interpreter) const {
    const Value on = state->evaluate(interpreter);
    interpreter.at(state->spot());
    const bool is_on = as_condition(interpreter, on, u"undo");
    struct Restore {
        Interpreter& interpreter;
        bool undo;
        ~Restore() { interpreter.set_undo(undo); }
    } restore{interpreter, interpreter.undo_is_on()};
    interpreter.set_undo(is_on);
    return body->evaluate(interpreter);
}

Value FunctionNode::evaluate(Interpreter& interpreter) const {
    Value value = function_value(code, interpreter.self());
    variable->assign(interpreter, value);
    return value;
}

Value StructNode::evaluate(Interpreter& interpreter) const {
    auto definition = std::make_shared<StructDefinition>();
    definition->layout = layout;
    interpreter.keep(layout);
    Value value = Value::shared(Kind::struct_definition, std::move(definition));
    variable->assign(interpreter, value);
    return value;
}

Value DeclareNode::evaluate(Interpreter& interpreter) const {
    Value result;
    for (const Item& item : items) {
        if (item.first_value) {
            result = item.first_value->evaluate(interpreter);
            item.variable->assign(interpreter, result);
        } else if (item.is_local) {
            item.variable->assign(interpreter, Value());
            result = Value();
        } else {
            result = item.variable->evaluate(interpreter);
        }
    }
    return result;
}

} // namespace maxscript
