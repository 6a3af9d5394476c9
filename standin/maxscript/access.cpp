// Properties and elements of values.
#include "standin/maxscript/operations.h"

namespace maxscript {

namespace {

[[noreturn]] void fail_unknown(Interpreter& interpreter, const Value& object, const Text& name) {
    interpreter.fail(u"Unknown property: \"" + name + u"\" in " + interpreter.printed(object));
}

bool count_of(const Value& object, Value& result) {
    std::vector<Value> items;
    std::size_t count = 0;
    if (object.is(Kind::array)) {
        count = object.as_array().items.size();
    } else if (object.is(Kind::string)) {
        count = object.as_string().text.size();
    } else if (object.is(Kind::host_object) && object.as_object().elements(items)) {
        count = items.size();
    } else {
        return false;
    }
    result = Value::integer(static_cast<std::int32_t>(count));
    return true;
}

const StructLayout& layout_of(const Value& object) {
    return object.is(Kind::instance) ? *object.as_instance().definition->layout : *object.as_struct().layout;
}

const StructMember& member_of(Interpreter& interpreter, const Value& object, const Text& name) {
    const StructMember* member = layout_of(object).find(name);
    if (member == nullptr) {
        fail_unknown(interpreter, object, name);
    }
    return *member;
}

Value struct_property(Interpreter& interpreter, const Value& object, const Text& name) {
    const StructMember& member = member_of(interpreter, object, name);
    const bool is_instance = object.is(Kind::instance);
    if (member.is_function) {
        return function_value(member.code, is_instance ? object : Value());
    }
    if (!is_instance) {
        interpreter.fail(u"Runtime error: a struct's member is used without an instance");
    }
    const std::vector<Value>& members = object.as_instance().members;
    return member.data_index < members.size() ? members[member.data_index] : Value();
}

// Counted from 0.
std::size_t index_from(Interpreter& interpreter, const Value& index) {
    std::int32_t number = 0;
    if (!number_to_integer(index, number) || number < 1) {
        interpreter.fail(u"Runtime error: array index must be +ve number, got: " +
                         interpreter.printed(index));
    }
    return static_cast<std::size_t>(number) - 1;
}

} // namespace

Value property_of(Interpreter& interpreter, const Value& object, const Text& name) {
    if (object.is(Kind::instance) || object.is(Kind::struct_definition)) {
        return struct_property(interpreter, object, name);
    }
    if (object.is(Kind::time) && name == u"frame") {
        return Value::real(static_cast<float>(object.as_ticks()) / kTicksPerFrame);
    }
    Value result;
    if ((object.is(Kind::host_object) && object.as_object().get_property(name, result)) ||
        (name == u"count" && count_of(object, result))) {
        return result;
    }
    fail_unknown(interpreter, object, name);
}

void set_property_of(Interpreter& interpreter, const Value& object, const Text& name, const Value& value) {
    if (object.is(Kind::instance)) {
        const StructMember& member = member_of(interpreter, object, name);
        if (member.is_function) {
            interpreter.fail(u"Runtime error: Cannot assign to the function " + member.name);
        }
        std::vector<Value>& members = object.as_instance().members;
        if (member.data_index < members.size()) {
            members[member.data_index] = value;
        }
    } else if (!object.is(Kind::host_object) || !object.as_object().set_property(name, value)) {
        fail_unknown(interpreter, object, name);
    }
}

bool has_property(const Value& object, const Text& name) {
    if (object.is(Kind::instance) || object.is(Kind::struct_definition)) {
        return layout_of(object).find(name) != nullptr;
    }
    Value result;
    return object.is(Kind::host_object) ? object.as_object().has_property(name)
                                        : name == u"count" && count_of(object, result);
}

Value element_of(Interpreter& interpreter, const Value& object, const Value& index) {
    if (!object.is(Kind::array) && !object.is(Kind::string)) {
        interpreter.fail_operator(u"get", object);
    }
    const std::size_t place = index_from(interpreter, index);
    if (object.is(Kind::array)) {
        const std::vector<Value>& items = object.as_array().items;
        return place < items.size() ? items[place] : Value();
    }
    const Text& text = object.as_string().text;
    if (place >= text.size()) {
        interpreter.fail(u"Runtime error: string index out of range: " + interpreter.printed(index));
    }
    return Value::string(Text(1, text[place]));
}

void set_element_of(Interpreter& interpreter, const Value& object, const Value& index, const Value& value) {
    if (!object.is(Kind::array)) {
        interpreter.fail_operator(u"put", object);
    }
    const std::size_t place = index_from(interpreter, index);
    std::vector<Value>& items = object.as_array().items;
    refuse_growth(interpreter, place);
    if (place >= items.size()) {
        interpreter.charge((place - items.size()) * 16);
        items.resize(place + 1);
    }
    items[place] = value;
}

bool elements_of(Interpreter& interpreter, const Value& collection, std::vector<Value>& items) {
    if (collection.is(Kind::array)) {
        items = collection.as_array().items;
    } else if (!collection.is(Kind::host_object) || !collection.as_object().elements(items)) {
        return false;
    }
    interpreter.charge(items.size());
    return true;
}

} // namespace maxscript
