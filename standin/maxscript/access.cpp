// Properties and elements of values.
#include "standin/maxscript/bit_array.h"
#include "standin/maxscript/engine.h"

namespace maxscript {

namespace {

[[noreturn]] void fail_unknown(Engine& engine, const Value& object, const Text& name) {
    engine.fail(u"Unknown property: \"" + name + u"\" in " + printed_text(engine, object));
}

std::int32_t bits_set(const BitArrayObject& array) {
    std::int32_t count = 0;
    for (const bool bit : array.bits) {
        count += bit ? 1 : 0;
    }
    return count;
}

bool count_of(const Value& object, Value& result) {
    switch (object.kind()) {
    case Kind::array:
        result = Value::integer(static_cast<std::int32_t>(object.as_array().items.size()));
        return true;
    case Kind::string:
        result = Value::integer(static_cast<std::int32_t>(object.as_string().text.size()));
        return true;
    case Kind::bit_array:
        result = Value::integer(static_cast<std::int32_t>(object.as_bit_array().bits.size()));
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

bool time_property(const Value& object, const Text& name, Value& result) {
    const float ticks = static_cast<float>(object.as_ticks());
    if (name == u"ticks") {
        result = Value::integer(object.as_ticks());
    } else if (name == u"frame") {
        result = Value::real(ticks / 160);
    } else if (name == u"normalized") {
        result = Value::real(ticks / 16000);
    } else {
        return false;
    }
    return true;
}

const StructMember& member_of(Engine& engine, const Value& object, const Text& name) {
    const bool is_instance = object.is(Kind::instance);
    const StructLayout& layout =
        is_instance ? *object.as_instance().definition->layout : *object.as_struct().layout;
    const StructMember* member = layout.find(name);
    if (member == nullptr) {
        fail_unknown(engine, object, name);
    }
    const bool is_inside =
        engine.self().is(Kind::instance) && engine.self().as_instance().definition->layout.get() == &layout;
    if (!member->is_public && !is_inside) {
        engine.fail(u"Runtime error: Attempting to access private member: \"" + member->name +
                    u"\" in: #Struct:" + layout.name);
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

Value bit_or_default(const std::vector<bool>& bits, std::size_t index) {
    return Value::boolean(index < bits.size() && bits[index]);
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
        if (time_property(object, name, result)) {
            return result;
        }
        break;
    case Kind::bit_array:
        if (name == u"numberset") {
            return Value::integer(bits_set(object.as_bit_array()));
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
    if (object.is(Kind::array) && name == u"count") {
        std::int32_t count = -1;
        if (!number_to_integer(value, count) || count < 0 ||
            static_cast<std::size_t>(count) > kMostElements) {
            fail_index(engine, value);
        }
        engine.charge(static_cast<std::size_t>(count) * 16);
        object.as_array().items.resize(static_cast<std::size_t>(count));
        return;
    }
    fail_unknown(engine, object, name);
}

bool has_property(Engine&, const Value& object, const Text& name) {
    Value result;
    switch (object.kind()) {
    case Kind::instance: {
        const StructMember* member = object.as_instance().definition->layout->find(name);
        return member != nullptr && member->is_public;
    }
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
    Value result;
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
    case Kind::bit_array:
        return bit_or_default(object.as_bit_array().bits, index_from(engine, index));
    case Kind::host_object:
        if (object.as_object().get_index(index, result)) {
            return result;
        }
        break;
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
    if (object.is(Kind::string)) {
        const std::size_t place = index_from(engine, index);
        Text& text = object.as_string().text;
        if (place >= text.size()) {
            engine.fail(u"Runtime error: string index out of range: " + printed_text(engine, index));
        }
        if (!value.is(Kind::string) || value.as_string().text.size() != 1) {
            engine.fail(u"Runtime error: a character of a string needs a string of one character, got: " +
                        printed_text(engine, value));
        }
        text[place] = value.as_string().text[0];
        return;
    }
    if (object.is(Kind::bit_array)) {
        set_bit(engine, object.as_bit_array(), index_from(engine, index),
                as_condition(engine, value, u"bit"));
        return;
    }
    if (!object.is(Kind::host_object) || !object.as_object().set_index(index, value)) {
        engine.fail(u"No \"\"put\"\" function for " + printed_text(engine, object));
    }
}

bool elements_of(Engine& engine, const Value& collection, std::vector<Value>& items) {
    switch (collection.kind()) {
    case Kind::array:
        items = collection.as_array().items;
        break;
    case Kind::bit_array:
        for (std::size_t i = 0; i < collection.as_bit_array().bits.size(); ++i) {
            if (collection.as_bit_array().bits[i]) {
                items.push_back(Value::integer(static_cast<std::int32_t>(i) + 1));
            }
        }
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
