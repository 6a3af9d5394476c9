// Constants, classes and properties of values.
#include "standin/maxscript/engine.h"
#include "standin/maxscript/nodes.h"

#include <functional>

namespace maxscript {

namespace {

constexpr float kPi = 3.14159265f;
constexpr float kE = 2.71828183f;
constexpr int kDeepestCopy = 50;

Text property_name(Arguments& arguments, std::size_t index) {
    const Value value = arguments[index];
    if (value.is(Kind::string)) {
        return folded(value.as_string().text);
    }
    return arguments.name(index);
}

Value super_class_of(Arguments& arguments) {
    Engine& engine = arguments.interpreter().engine();
    const Value value = arguments[0];
    const Value its_class = value.is(Kind::host_class) ? value : class_of(engine, value);
    if (its_class.is(Kind::host_class) && its_class.as_class().super) {
        return Value::of_class(its_class.as_class().super);
    }
    return Value::of_class(class_of_kind(Kind::reference));
}

Value is_kind_of(Arguments& arguments) {
    Engine& engine = arguments.interpreter().engine();
    const Value wanted = arguments[1];
    const Value its_class = class_of(engine, arguments[0]);
    if (its_class.identity() == wanted.identity()) {
        return Value::boolean(true);
    }
    if (!its_class.is(Kind::host_class)) {
        return Value::boolean(wanted.identity() == class_of_kind(Kind::reference).get());
    }
    const HostClass* super = its_class.as_class().super.get();
    while (super != nullptr && super != wanted.identity()) {
        super = super->super.get();
    }
    return Value::boolean(super != nullptr);
}

Value property_names(Arguments& arguments) {
    std::vector<Value> names;
    const Value object = arguments[0];
    if (object.is(Kind::host_object)) {
        for (const Text& name : object.as_object().property_names()) {
            names.push_back(Value::name(name));
        }
    } else if (object.is(Kind::instance) || object.is(Kind::struct_definition)) {
        const StructLayout& layout =
            object.is(Kind::instance) ? *object.as_instance().definition->layout : *object.as_struct().layout;
        for (const StructMember& member : layout.members) {
            if (member.is_public) {
                names.push_back(Value::name(member.name));
            }
        }
    }
    return Value::array(std::move(names));
}

Value copied(Engine& engine, const Value& value, int levels) {
    switch (value.kind()) {
    case Kind::string:
        engine.charge(value.as_string().text.size());
        return Value::string(value.as_string().text);
    case Kind::string_stream:
        engine.charge(value.as_string_stream().text.size());
        return Value::string_stream(value.as_string_stream().text);
    case Kind::bit_array:
        return Value::shared(Kind::bit_array, std::make_shared<BitArrayObject>(value.as_bit_array()));
    case Kind::instance: {
        auto instance = std::make_shared<InstanceObject>();
        instance->definition = value.as_instance().definition;
        instance->members = value.as_instance().members;
        return Value::shared(Kind::instance, std::move(instance));
    }
    case Kind::array: {
        std::vector<Value> items = value.as_array().items;
        engine.charge(items.size() * 16);
        for (Value& item : items) {
            if (levels == 0) {
                break;
            }
            if (levels == 1) {
                engine.fail(u"Runtime error: values stand too deep inside each other to be copied");
            }
            item = copied(engine, item, levels - 1);
        }
        return Value::array(std::move(items));
    }
    default:
        return value;
    }
}

// Without #noMap the host copies the elements, and gives no array.
Value copy_value(Arguments& arguments) {
    const bool is_flat = arguments.count() == 2 && arguments.name(1) == u"nomap";
    if (arguments[0].is(Kind::array) && !is_flat) {
        arguments.fail(u"Runtime error: the copy of an array needs #noMap");
    }
    return copied(arguments.interpreter().engine(), arguments[0], 0);
}

void add_constants(Globals& globals) {
    globals.add_constant(u"true", Value::boolean(true));
    globals.add_constant(u"false", Value::boolean(false));
    globals.add_constant(u"undefined", Value());
    globals.add_constant(u"ok", Value::ok());
    globals.add_constant(u"unsupplied", Value::unsupplied());
    globals.add_constant(u"dontCollect", dont_collect());
    globals.add_constant(u"pi", Value::real(kPi));
    globals.add_constant(u"e", Value::real(kE));
}

void add_property_functions(Globals& globals) {
    globals.add_function(u"isProperty", 2, 2, {}, [](Arguments& a) {
        return Value::boolean(has_property(a.interpreter().engine(), a[0], property_name(a, 1)));
    });
    globals.add_function(u"hasProperty", 2, 2, {}, [](Arguments& a) {
        return Value::boolean(has_property(a.interpreter().engine(), a[0], property_name(a, 1)));
    });
    globals.add_function(u"getProperty", 2, 2, {}, [](Arguments& a) {
        return property_of(a.interpreter().engine(), a[0], property_name(a, 1));
    });
    globals.add_function(u"setProperty", 3, 3, {}, [](Arguments& a) {
        set_property_of(a.interpreter().engine(), a[0], property_name(a, 1), a[2]);
        return a[2];
    });
    globals.add_function(u"getPropNames", 1, 1, {}, property_names);
}

} // namespace

void add_value_functions(Globals& globals) {
    add_constants(globals);
    add_property_functions(globals);
    globals.add_function(u"classOf", 1, 1, {},
                         [](Arguments& a) { return class_of(a.interpreter().engine(), a[0]); });
    globals.add_function(u"superClassOf", 1, 1, {}, super_class_of);
    globals.add_function(u"isKindOf", 2, 2, {}, is_kind_of);
    globals.add_function(u"isStruct", 1, 1, {},
                         [](Arguments& a) { return Value::boolean(a[0].is(Kind::instance)); });
    globals.add_function(u"isStructDef", 1, 1, {},
                         [](Arguments& a) { return Value::boolean(a[0].is(Kind::struct_definition)); });
    globals.add_function(u"copy", 1, 2, {}, copy_value);
    globals.add_function(u"deepCopy", 1, 1, {},
                         [](Arguments& a) { return copied(a.interpreter().engine(), a[0], kDeepestCopy); });
}

} // namespace maxscript
