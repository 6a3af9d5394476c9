// Blocks, branches, loops, definitions.
#include "standin/maxscript/engine.h"
#include "standin/maxscript/nodes.h"

namespace maxscript {

Value BlockNode::evaluate(Engine& engine) const {
    Value result;
    for (const NodePointer& statement : statements) {
        engine.at(statement->spot());
        engine.charge(0);
        result = statement->evaluate(engine);
    }
    return result;
}

Value IfNode::evaluate(Engine& engine) const {
    for (const Branch& branch : branches) {
        const Value condition = branch.condition->evaluate(engine);
        engine.at(branch.condition->spot());
        if (as_condition(engine, condition, u"if-test")) {
            return branch.body->evaluate(engine);
        }
    }
    return otherwise ? otherwise->evaluate(engine) : Value();
}

Value CaseNode::evaluate(Engine& engine) const {
    const Value wanted = subject ? subject->evaluate(engine) : Value::boolean(true);
    const Branch* chosen = nullptr;
    for (const Branch& branch : branches) {
        if (!branch.label) {
            chosen = chosen != nullptr ? chosen : &branch;
            continue;
        }
        const Value label = branch.label->evaluate(engine);
        engine.at(branch.label->spot());
        if (equal_values(engine, wanted, label)) {
            chosen = &branch;
            break;
        }
    }
    return chosen != nullptr ? chosen->body->evaluate(engine) : Value();
}

Value WhileNode::evaluate(Engine& engine) const {
    Value result;
    while (true) {
        engine.at(spot());
        engine.charge(0);
        const Value holds = condition->evaluate(engine);
        engine.at(condition->spot());
        if (!as_condition(engine, holds, u"while-test")) {
            return result;
        }
        result = body->evaluate(engine);
    }
}

// One value of the loop. False: the loop is over.
bool ForNode::pass(Engine& engine, const Value& value, std::vector<Value>& collected) const {
    engine.at(spot());
    engine.charge(0);
    variable->assign(engine, value);
    for (const NodePointer* test : {&during, &where}) {
        if (!*test) {
            continue;
        }
        const Value holds = (*test)->evaluate(engine);
        engine.at((*test)->spot());
        if (!as_condition(engine, holds, test == &during ? u"while-test" : u"where-test")) {
            return test == &where;
        }
    }
    Value result = body->evaluate(engine);
    if (collects) {
        if (collected.size() >= kMostElements) {
            engine.stop_at_limit(u"an array grows too large");
        }
        collected.push_back(std::move(result));
    }
    return true;
}

void ForNode::run_range(Engine& engine, std::vector<Value>& collected) const {
    const Value limits[3] = {source->evaluate(engine), to->evaluate(engine),
                             by ? by->evaluate(engine) : Value::integer(1)};
    engine.at(spot());
    for (const Value& limit : limits) {
        if (!limit.is(Kind::integer)) {
            engine.fail(u"Runtime error: For loop limits must be whole numbers, got: " +
                        printed_text(engine, limit));
        }
    }
    const std::int64_t last = limits[1].as_integer();
    const std::int64_t step = limits[2].as_integer();
    if (step == 0) {
        engine.fail(u"Runtime error: For loop 'by' expression cannot be 0");
    }
    bool goes_on = true;
    for (std::int64_t i = limits[0].as_integer(); goes_on && (step > 0 ? i <= last : i >= last); i += step) {
        goes_on = pass(engine, Value::integer(static_cast<std::int32_t>(i)), collected);
    }
}

void ForNode::run_items(Engine& engine, std::vector<Value>& collected) const {
    const Value items = source->evaluate(engine);
    if (items.is(Kind::array)) {
        // The body may change the array.
        for (std::size_t i = 0; i < items.as_array().items.size(); ++i) {
            const Value item = items.as_array().items[i];
            if (!pass(engine, item, collected)) {
                break;
            }
        }
        return;
    }
    engine.at(source->spot());
    std::vector<Value> values;
    if (!elements_of(engine, items, values)) {
        engine.fail(u"Type error: For loop needs a collection, got: " + printed_text(engine, items));
    }
    for (const Value& value : values) {
        if (!pass(engine, value, collected)) {
            break;
        }
    }
}

Value ForNode::evaluate(Engine& engine) const {
    std::vector<Value> collected;
    if (to) {
        run_range(engine, collected);
    } else {
        run_items(engine, collected);
    }
    return collects ? Value::array(std::move(collected)) : Value::ok();
}

Value TryNode::evaluate(Engine& engine) const {
    try {
        return body->evaluate(engine);
    } catch (const ScriptError& error) {
        if (error.kind() == ErrorKind::limit) {
            throw;
        }
        struct Leave {
            Engine& engine;
            const ScriptError* before;
            ~Leave() { engine.set_current_error(before); }
        } leave{engine, engine.set_current_error(&error)};
        return handler->evaluate(engine);
    }
}

Value ContextNode::evaluate(Engine& engine) const {
    const Value on = state->evaluate(engine);
    engine.at(state->spot());
    const bool is_on = as_condition(engine, on, u"undo");
    struct Restore {
        Engine& engine;
        bool undo;
        ~Restore() { engine.undo = undo; }
    } restore{engine, engine.undo};
    engine.undo = is_on;
    return body->evaluate(engine);
}

Value FunctionNode::evaluate(Engine& engine) const {
    auto function = std::make_shared<FunctionObject>();
    function->code = code;
    function->self = engine.self();
    Value value = Value::shared(Kind::function, std::move(function));
    variable->assign(engine, value);
    return value;
}

Value StructNode::evaluate(Engine& engine) const {
    auto definition = std::make_shared<StructDefinition>();
    definition->layout = layout;
    engine.keep(layout);
    Value value = Value::shared(Kind::struct_definition, std::move(definition));
    variable->assign(engine, value);
    return value;
}

Value DeclareNode::evaluate(Engine& engine) const {
    Value result;
    for (const Item& item : items) {
        if (item.first_value) {
            result = item.first_value->evaluate(engine);
            item.variable->assign(engine, result);
        } else if (item.is_local) {
            item.variable->assign(engine, Value());
            result = Value();
        } else {
            result = item.variable->evaluate(engine);
        }
    }
    for (const CellPointer& cell : persistent) {
        cell->persistent = true;
    }
    return result;
}

} // namespace maxscript
