// Constants, classes and properties of values.
#include "standin/maxscript/engine.h"

namespace maxscript {

namespace {

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

void add_constants(Globals& globals) {
    globals.add_constant(u"true", Value::boolean(true));
    globals.add_constant(u"false", Value::boolean(false));
    globals.add_constant(u"undefined", Value());
    globals.add_constant(u"ok", Value::ok());
    globals.add_constant(u"unsupplied", Value::unsupplied());
}

void add_property_functions(Globals& globals) {
    globals.add_function(u"isProperty", 2, 2, {}, [](Arguments& a) {
        return Value::boolean(has_property(a.interpreter().engine(), a[0], property_name(a, 1)));
    });
    globals.add_function(u"getProperty", 2, 2, {}, [](Arguments& a) {
        return property_of(a.interpreter().engine(), a[0], property_name(a, 1));
    });
}

} // namespace

void add_value_functions(Globals& globals) {
    add_constants(globals);
    add_property_functions(globals);
    globals.add_function(u"classOf", 1, 1, {},
                         [](Arguments& a) { return class_of(a.interpreter().engine(), a[0]); });
    globals.add_function(u"superClassOf", 1, 1, {}, super_class_of);
}

} // namespace maxscript
