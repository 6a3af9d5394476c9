// Blocks, branches, loops, definitions.
#include "standin/maxscript/engine.h"
#include "standin/maxscript/nodes.h"

#include <algorithm>
#include <cmath>

namespace maxscript {

namespace {

constexpr double kMostSteps = 9.0e15; // beyond, a double does not count single steps

// After a pass of a loop: true when the loop goes on.
bool loop_goes_on(Engine& engine) {
    if (engine.flow() == Flow::continuing) {
        engine.resume();
    }
    return !engine.interrupted();
}

// At the end of a loop: takes the exit that ended it.
bool take_exit(Engine& engine, Value& value) {
    if (engine.flow() != Flow::exiting) {
        return false;
    }
    value = engine.resume();
    return true;
}

} // namespace

const Value& dont_collect() {
    static const Value value = Value::name(u"dontCollect");
    return value;
}

Value BlockNode::evaluate(Engine& engine) const {
    Value result;
    for (const NodePointer& statement : statements) {
        engine.at(statement->spot());
        engine.charge(0);
        result = statement->evaluate(engine);
        if (engine.interrupted()) {
            return Value();
        }
    }
    return result;
}

Value IfNode::evaluate(Engine& engine) const {
    for (const Branch& branch : branches) {
        const Value condition = branch.condition->evaluate(engine);
        if (engine.interrupted()) {
            return Value();
        }
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
        if (engine.interrupted()) {
            return Value();
        }
        if (!branch.label) {
            chosen = chosen != nullptr ? chosen : &branch;
            continue;
        }
        const Value label = branch.label->evaluate(engine);
        engine.at(branch.label->spot());
        if (!engine.interrupted() && equal_values(engine, wanted, label)) {
            chosen = &branch;
            break;
        }
    }
    return chosen != nullptr && !engine.interrupted() ? chosen->body->evaluate(engine) : Value();
}

Value WhileNode::evaluate(Engine& engine) const {
    Value result;
    bool tested = !body_first;
    while (true) {
        engine.at(spot());
        engine.charge(0);
        if (tested) {
            const Value holds = condition->evaluate(engine);
            engine.at(condition->spot());
            if (engine.interrupted() || !as_condition(engine, holds, u"while-test")) {
                break;
            }
        }
        tested = true;
        result = body->evaluate(engine);
        if (!loop_goes_on(engine)) {
            break;
        }
    }
    take_exit(engine, result);
    return result;
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
        if (engine.interrupted()) {
            return loop_goes_on(engine);
        }
        engine.at((*test)->spot());
        if (!as_condition(engine, holds, test == &during ? u"while-test" : u"where-test")) {
            return test == &where;
        }
    }
    Value result = body->evaluate(engine);
    if (engine.interrupted()) {
        return loop_goes_on(engine);
    }
    if (collects && result.identity() != dont_collect().identity()) {
        if (collected.size() >= kMostElements) {
            engine.stop_at_limit(u"an array grows too large");
        }
        collected.push_back(std::move(result));
    }
    return true;
}

bool ForNode::run_whole(Engine& engine, std::int64_t first, std::int64_t last, std::int64_t step,
                        std::vector<Value>& collected) const {
    for (std::int64_t i = first; step > 0 ? i <= last : i >= last; i += step) {
        if (!pass(engine, Value::integer(static_cast<std::int32_t>(i)), collected)) {
            return true;
        }
    }
    return true;
}

bool ForNode::run_times(Engine& engine, const Value (&limits)[3], std::vector<Value>& collected) const {
    constexpr std::int64_t kTicksPerFrame = 160;
    std::int32_t step = 0;
    if (limits[2].is(Kind::time)) {
        step = limits[2].as_ticks();
    } else if (number_to_integer(limits[2], step)) {
        step = static_cast<std::int32_t>(std::min<std::int64_t>(step * kTicksPerFrame, INT32_MAX));
    }
    if (step == 0) {
        engine.fail(u"Runtime error: For loop 'by' expression cannot be 0");
    }
    const std::int64_t last = limits[1].as_ticks();
    for (std::int64_t ticks = limits[0].as_ticks(); step > 0 ? ticks <= last : ticks >= last; ticks += step) {
        if (!pass(engine, Value::time(static_cast<std::int32_t>(ticks)), collected)) {
            break;
        }
    }
    return true;
}

bool ForNode::run_range(Engine& engine, std::vector<Value>& collected) const {
    Value limits[3] = {source->evaluate(engine), Value(), Value::integer(1)};
    limits[1] = engine.interrupted() ? Value() : to->evaluate(engine);
    if (by && !engine.interrupted()) {
        limits[2] = by->evaluate(engine);
    }
    if (engine.interrupted()) {
        return false;
    }
    engine.at(spot());
    if (limits[0].is(Kind::time) && limits[1].is(Kind::time)) {
        return run_times(engine, limits, collected);
    }
    bool whole = true;
    for (const Value& limit : limits) {
        if (!limit.is_number()) {
            engine.fail(u"Runtime error: For loop limits must be numbers, got: " +
                        printed_text(engine, limit));
        }
        whole = whole && limit.is(Kind::integer);
    }
    if (number_to_real(limits[2]) == 0) {
        engine.fail(u"Runtime error: For loop 'by' expression cannot be 0");
    }
    if (whole) {
        return run_whole(engine, limits[0].as_integer(), limits[1].as_integer(), limits[2].as_integer(),
                         collected);
    }
    const double first = number_to_real(limits[0]);
    const double step = number_to_real(limits[2]);
    const double passes = std::floor((number_to_real(limits[1]) - first) / step + 1e-6);
    for (double i = 0; i <= passes && i < kMostSteps; ++i) {
        if (!pass(engine, Value::real(static_cast<float>(first + i * step)), collected)) {
            break;
        }
    }
    return true;
}

bool ForNode::run_items(Engine& engine, std::vector<Value>& collected) const {
    const Value items = source->evaluate(engine);
    if (engine.interrupted()) {
        return false;
    }
    if (items.is(Kind::array)) {
        // The body may change the array.
        for (std::size_t i = 0; i < items.as_array().items.size(); ++i) {
            const Value item = items.as_array().items[i];
            if (!pass(engine, item, collected)) {
                break;
            }
        }
        return true;
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
    return true;
}

Value ForNode::evaluate(Engine& engine) const {
    std::vector<Value> collected;
    const bool ran = to ? run_range(engine, collected) : run_items(engine, collected);
    if (!ran) {
        return Value();
    }
    Value exit_value;
    const bool was_exit = take_exit(engine, exit_value);
    if (collects) {
        return Value::array(std::move(collected));
    }
    return was_exit ? exit_value : Value::ok();
}

Value FlowNode::evaluate(Engine& engine) const {
    Value result = value ? value->evaluate(engine) : Value();
    if (!engine.interrupted()) {
        engine.interrupt(static_cast<Flow>(kind), std::move(result));
    }
    return Value();
}

Value TryNode::evaluate(Engine& engine) const {
    const bool print_all = engine.print_all_elements;
    try {
        return body->evaluate(engine);
    } catch (const ScriptError& error) {
        if (error.kind() == ErrorKind::limit) {
            throw;
        }
        engine.print_all_elements = print_all;
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
    if (engine.interrupted()) {
        return Value();
    }
    engine.at(state->spot());
    const bool is_on = as_condition(engine, on, context.c_str());
    struct Restore {
        Engine& engine;
        bool print_all_elements;
        bool undo;
        ~Restore() {
            engine.print_all_elements = print_all_elements;
            engine.undo = undo;
        }
    } restore{engine, engine.print_all_elements, engine.undo};
    if (context == u"printallelements") {
        engine.print_all_elements = is_on;
    } else if (context == u"undo") {
        engine.undo = is_on;
    }
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
            if (engine.interrupted()) {
                return Value();
            }
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
