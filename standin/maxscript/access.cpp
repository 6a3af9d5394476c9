// Properties and elements of values.
#include "standin/maxscript/engine.h"

namespace maxscript {

namespace {

constexpr float kTicksPerFrame = 160;

[[noreturn]] void fail_unknown(Engine& engine, const Value& object, const Text& name) {
    engine.fail(u"Unknown property: \"" + name + u"\" in " + printed_text(engine, object));
}

bool count_of(const Value& object, Value& result) {
    switch (object.kind()) {
    case Kind::array:
        result = Value::integer(static_cast<std::int32_t>(object.as_array().items.size()));
        return true;
    case Kind::string:
        result = Value::integer(static_cast<std::int32_t>(object.as_string().text.size()));
        return true;
    case Kind::host_object: {
        std::vector<Value> items;
        if (!object.as_object().elements(items)) {
            return false;
        }
        result = Value::integer(static_cast<std::int32_t>(items.size()));
        return true;
    }
    default:
        return false;
    }
}

const StructMember& member_of(Engine& engine, const Value& object, const Text& name) {
    const bool is_instance = object.is(Kind::instance);
    const StructLayout& layout =
        is_instance ? *object.as_instance().definition->layout : *object.as_struct().layout;
    const StructMember* member = layout.find(name);
    if (member == nullptr) {
        fail_unknown(engine, object, name);
    }
    return *member;
}

Value struct_property(Engine& engine, const Value& object, const Text& name) {
    const StructMember& member = member_of(engine, object, name);
    const bool is_instance = object.is(Kind::instance);
    if (member.is_function) {
        return engine.member_function(member, is_instance ? object : Value());
    }
    if (!is_instance) {
        engine.fail(u"Runtime error: a struct's member is used without an instance");
    }
    const std::vector<Value>& members = object.as_instance().members;
    return member.data_index < members.size() ? members[member.data_index] : Value();
}

[[noreturn]] void fail_index(Engine& engine, const Value& index) {
    engine.fail(u"Runtime error: array index must be +ve number, got: " + printed_text(engine, index));
}

} // namespace

Value property_of(Engine& engine, const Value& object, const Text& name) {
    Value result;
    switch (object.kind()) {
    case Kind::instance:
    case Kind::struct_definition:
        return struct_property(engine, object, name);
    case Kind::host_object:
        if (object.as_object().get_property(name, result)) {
            return result;
        }
        break;
    case Kind::time:
        if (name == u"frame") {
            return Value::real(static_cast<float>(object.as_ticks()) / kTicksPerFrame);
        }
        break;
    default:
        break;
    }
    if (name == u"count" && count_of(object, result)) {
        return result;
    }
    fail_unknown(engine, object, name);
}

void set_property_of(Engine& engine, const Value& object, const Text& name, const Value& value) {
    if (object.is(Kind::instance)) {
        const StructMember& member = member_of(engine, object, name);
        if (member.is_function) {
            engine.fail(u"Runtime error: Cannot assign to the function " + member.name);
        }
        std::vector<Value>& members = object.as_instance().members;
        if (member.data_index < members.size()) {
            members[member.data_index] = value;
        }
        return;
    }
    if (object.is(Kind::host_object) && object.as_object().set_property(name, value)) {
        return;
    }
    fail_unknown(engine, object, name);
}

bool has_property(Engine&, const Value& object, const Text& name) {
    Value result;
    switch (object.kind()) {
    case Kind::instance:
        return object.as_instance().definition->layout->find(name) != nullptr;
    case Kind::struct_definition:
        return object.as_struct().layout->find(name) != nullptr;
    case Kind::host_object:
        return object.as_object().has_property(name);
    default:
        return name == u"count" && count_of(object, result);
    }
}

std::size_t index_from(Engine& engine, const Value& index) {
    std::int32_t number = 0;
    if (!number_to_integer(index, number) || number < 1) {
        fail_index(engine, index);
    }
    return static_cast<std::size_t>(number) - 1;
}

Value element_of(Engine& engine, const Value& object, const Value& index) {
    switch (object.kind()) {
    case Kind::array: {
        const std::size_t place = index_from(engine, index);
        const std::vector<Value>& items = object.as_array().items;
        return place < items.size() ? items[place] : Value();
    }
    case Kind::string: {
        const std::size_t place = index_from(engine, index);
        const Text& text = object.as_string().text;
        if (place >= text.size()) {
            engine.fail(u"Runtime error: string index out of range: " + printed_text(engine, index));
        }
        return Value::string(Text(1, text[place]));
    }
    default:
        break;
    }
    engine.fail(u"No \"\"get\"\" function for " + printed_text(engine, object));
}

void set_element_of(Engine& engine, const Value& object, const Value& index, const Value& value) {
    if (object.is(Kind::array)) {
        const std::size_t place = index_from(engine, index);
        std::vector<Value>& items = object.as_array().items;
        if (place >= kMostElements) {
            engine.stop_at_limit(u"an array grows too large");
        }
        if (place >= items.size()) {
            engine.charge((place - items.size()) * 16);
            items.resize(place + 1);
        }
        items[place] = value;
        return;
    }
    engine.fail(u"No \"\"put\"\" function for " + printed_text(engine, object));
}

bool elements_of(Engine& engine, const Value& collection, std::vector<Value>& items) {
    switch (collection.kind()) {
    case Kind::array:
        items = collection.as_array().items;
        break;
    case Kind::host_object:
        if (!collection.as_object().elements(items)) {
            return false;
        }
        break;
    default:
        return false;
    }
    engine.charge(items.size());
    return true;
}

} // namespace maxscript
