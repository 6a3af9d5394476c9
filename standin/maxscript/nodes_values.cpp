// Variables, members, literals of collections.
#include "standin/maxscript/bit_array.h"
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

struct MemberReference : Reference {
    MemberReference(Value owner, std::size_t place) : instance(std::move(owner)), index(place) {}
    Value get() const override { return instance.as_instance().members[index]; }
    void set(const Value& value) override { instance.as_instance().members[index] = value; }
    Value instance;
    std::size_t index;
};

struct PropertyReference : Reference {
    PropertyReference(Engine& running, Value owner, Text folded_name)
        : engine(running), object(std::move(owner)), name(std::move(folded_name)) {}
    Value get() const override { return property_of(engine, object, name); }
    void set(const Value& value) override { set_property_of(engine, object, name, value); }
    Engine& engine;
    Value object;
    Text name;
};

struct ElementReference : Reference {
    ElementReference(Engine& running, Value owner, Value place)
        : engine(running), object(std::move(owner)), index(std::move(place)) {}
    Value get() const override { return element_of(engine, object, index); }
    void set(const Value& value) override { set_element_of(engine, object, index, value); }
    Engine& engine;
    Value object;
    Value index;
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

// A caller may have left out the &; then it is an ordinary parameter.
Value ReferenceSlotNode::evaluate(Engine& engine) const {
    const Value value = engine.slot(slot);
    return value.is(Kind::reference) ? value.as_reference().get() : value;
}

void ReferenceSlotNode::assign(Engine& engine, const Value& value) const {
    const Value held = engine.slot(slot);
    if (held.is(Kind::reference)) {
        held.as_reference().set(value);
    } else {
        engine.slot(slot) = value;
    }
}

Value ReferenceSlotNode::refer(Engine& engine) const {
    const Value held = engine.slot(slot);
    return held.is(Kind::reference) ? held : SlotNode::refer(engine);
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

Value MemberNode::refer(Engine& engine) const {
    engine.at(spot());
    engine.instance();
    return reference_value<MemberReference>(engine.self(), member().data_index);
}

Value ThisNode::evaluate(Engine& engine) const {
    engine.at(spot());
    engine.instance();
    return engine.self();
}

Value PathNode::evaluate(Engine& engine) const {
    engine.at(spot());
    const auto& hook = engine.environment().object_by_path;
    return hook ? hook(path) : Value();
}

Value PropertyNode::evaluate(Engine& engine) const {
    const Value owner = object->evaluate(engine);
    if (engine.interrupted()) {
        return Value();
    }
    engine.at(spot());
    return property_of(engine, owner, name);
}

void PropertyNode::assign(Engine& engine, const Value& value) const {
    const Value owner = object->evaluate(engine);
    if (!engine.interrupted()) {
        engine.at(spot());
        set_property_of(engine, owner, name, value);
    }
}

Value PropertyNode::refer(Engine& engine) const {
    return reference_value<PropertyReference>(engine, object->evaluate(engine), name);
}

Value IndexNode::evaluate(Engine& engine) const {
    const Value owner = object->evaluate(engine);
    const Value place = engine.interrupted() ? Value() : index->evaluate(engine);
    if (engine.interrupted()) {
        return Value();
    }
    engine.at(spot());
    return element_of(engine, owner, place);
}

void IndexNode::assign(Engine& engine, const Value& value) const {
    const Value owner = object->evaluate(engine);
    const Value place = engine.interrupted() ? Value() : index->evaluate(engine);
    if (!engine.interrupted()) {
        engine.at(spot());
        set_element_of(engine, owner, place, value);
    }
}

Value IndexNode::refer(Engine& engine) const {
    const Value owner = object->evaluate(engine);
    const Value place = engine.interrupted() ? Value() : index->evaluate(engine);
    return reference_value<ElementReference>(engine, owner, place);
}

Value ArrayNode::evaluate(Engine& engine) const {
    engine.charge(items.size());
    std::vector<Value> values;
    values.reserve(items.size());
    for (const NodePointer& item : items) {
        values.push_back(item->evaluate(engine));
        if (engine.interrupted()) {
            return Value();
        }
    }
    return Value::array(std::move(values));
}

Value BitArrayNode::evaluate(Engine& engine) const {
    auto bits = std::make_shared<BitArrayObject>();
    for (const Range& range : ranges) {
        const Value first = range.first->evaluate(engine);
        const Value last = range.last && !engine.interrupted() ? range.last->evaluate(engine) : first;
        if (engine.interrupted()) {
            return Value();
        }
        engine.at(range.first->spot());
        const std::size_t from = index_from(engine, first);
        const std::size_t to = index_from(engine, last);
        for (std::size_t i = from; i <= to; ++i) {
            set_bit(engine, *bits, i, true);
        }
    }
    return Value::shared(Kind::bit_array, std::move(bits));
}

} // namespace maxscript
