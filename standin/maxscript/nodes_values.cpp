// Variables, members, literals of collections.
#include "standin/maxscript/engine.h"
#include "standin/maxscript/nodes.h"

namespace maxscript {

namespace {

struct CellReference : Reference {
    explicit CellReference(CellPointer variable) : cell(std::move(variable)) {}
    Value get() const override { return cell->getter ? cell->getter() : cell->value; }
    void set(const Value& value) override {
        if (cell->setter) {
            cell->setter(value);
        } else {
            cell->value = value;
        }
    }
    CellPointer cell;
};

// Only ever held by frames above the one whose variable it is.
struct SlotReference : Reference {
    SlotReference(Engine& owner, std::size_t place) : engine(owner), index(place) {}
    Value get() const override { return engine.stack_at(index); }
    void set(const Value& value) override { engine.stack_at(index) = value; }
    Engine& engine;
    std::size_t index;
};

template <class Type, class... Parts>
Value reference_value(Parts&&... parts) {
    std::shared_ptr<Reference> reference = std::make_shared<Type>(std::forward<Parts>(parts)...);
    return Value::shared(Kind::reference, std::move(reference));
}

} // namespace

void FunctionObject::surrender(std::vector<Value>& content) {
    content.push_back(std::move(self));
    self = Value();
}

const StructMember* StructLayout::find(const Text& folded_name) const {
    const auto found = index.find(folded_name);
    return found == index.end() ? nullptr : &members[found->second];
}

Value CellNode::evaluate(Engine& engine) const {
    if (!cell->getter) {
        return cell->value;
    }
    engine.at(spot());
    return cell->getter();
}

void CellNode::assign(Engine& engine, const Value& value) const {
    if (!cell->getter) {
        cell->value = value;
        return;
    }
    engine.at(spot());
    if (!cell->setter) {
        engine.fail(u"Runtime error: Cannot assign to read-only variable: " + cell->name);
    }
    cell->setter(value);
}

Value CellNode::refer(Engine&) const {
    return reference_value<CellReference>(cell);
}

Value SlotNode::evaluate(Engine& engine) const {
    return engine.slot(slot);
}

void SlotNode::assign(Engine& engine, const Value& value) const {
    engine.slot(slot) = value;
}

Value SlotNode::refer(Engine& engine) const {
    return reference_value<SlotReference>(engine, engine.base() + slot);
}

Value MemberNode::evaluate(Engine& engine) const {
    if (member().is_function) {
        return engine.member_function(member(), engine.self());
    }
    engine.at(spot());
    return engine.instance().members[member().data_index];
}

void MemberNode::assign(Engine& engine, const Value& value) const {
    engine.at(spot());
    engine.instance().members[member().data_index] = value;
}

Value PropertyNode::evaluate(Engine& engine) const {
    const Value owner = object->evaluate(engine);
    engine.at(spot());
    return property_of(engine, owner, name);
}

void PropertyNode::assign(Engine& engine, const Value& value) const {
    const Value owner = object->evaluate(engine);
    engine.at(spot());
    set_property_of(engine, owner, name, value);
}

Value IndexNode::evaluate(Engine& engine) const {
    const Value owner = object->evaluate(engine);
    const Value place = index->evaluate(engine);
    engine.at(spot());
    return element_of(engine, owner, place);
}

void IndexNode::assign(Engine& engine, const Value& value) const {
    const Value owner = object->evaluate(engine);
    const Value place = index->evaluate(engine);
    engine.at(spot());
    set_element_of(engine, owner, place, value);
}

Value ArrayNode::evaluate(Engine& engine) const {
    engine.charge(items.size());
    std::vector<Value> values;
    values.reserve(items.size());
    for (const NodePointer& item : items) {
        values.push_back(item->evaluate(engine));
    }
    return Value::array(std::move(values));
}

} // namespace maxscript
