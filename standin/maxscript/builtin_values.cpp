// Constants, classes and properties of values; numbers, and the interface `bit`.
#include "standin/maxscript/operations.h"

#include <cmath>

namespace maxscript {

namespace {

Text property_name(Arguments& arguments, std::size_t index) {
    const Value value = arguments[index];
    return value.is(Kind::string) ? folded(value.as_string().text) : arguments.name(index);
}

Value super_class_of(Arguments& arguments) {
    const Value value = arguments[0];
    const Value its_class = value.is(Kind::host_class) ? value : class_of(value);
    const bool has_super = its_class.is(Kind::host_class) && its_class.as_class().super;
    return Value::of_class(has_super ? its_class.as_class().super : class_of_kind(Kind::reference));
}

Value character_code(Arguments& arguments) {
    const Text& text = arguments.text(0);
    if (text.empty()) {
        arguments.fail(u"Runtime error: charAsInt needs a character");
    }
    return Value::integer(text[0]);
}

Value character(Arguments& arguments) {
    const std::int32_t code = arguments.integer(0);
    if (code < 0 || code > 0xFFFF) {
        arguments.fail(u"Runtime error: intAsChar needs a number from 0 to 65535, got: " +
                       text_from_number(code));
    }
    return Value::string(Text(1, static_cast<char16_t>(code)));
}

void add_bits(Globals& globals) {
    auto bit = std::make_shared<HostInterface>(u"bit");
    bit->add(u"charAsInt", 1, 1, {}, character_code);
    bit->add(u"intAsChar", 1, 1, {}, character);
    bit->add(u"and", 2, 2, {}, [](Arguments& a) { return Value::integer(a.integer(0) & a.integer(1)); });
    globals.add_constant(u"bit", Value::object(bit));
}

} // namespace

void add_value_functions(Globals& globals) {
    globals.add_constant(u"true", Value::boolean(true));
    globals.add_constant(u"false", Value::boolean(false));
    globals.add_constant(u"undefined", Value());
    globals.add_constant(u"ok", Value::ok());
    globals.add_constant(u"unsupplied", Value::unsupplied());
    add_bits(globals);
    globals.add_function(u"mod", 2, 2, {},
                         [](Arguments& a) { return Value::real(std::fmod(a.real(0), a.real(1))); });
    globals.add_function(u"isProperty", 2, 2, {}, [](Arguments& a) {
        return Value::boolean(has_property(a[0], property_name(a, 1)));
    });
    globals.add_function(u"getProperty", 2, 2, {}, [](Arguments& a) {
        return property_of(a.interpreter(), a[0], property_name(a, 1));
    });
    globals.add_function(u"classOf", 1, 1, {}, [](Arguments& a) { return class_of(a[0]); });
    globals.add_function(u"superClassOf", 1, 1, {}, super_class_of);
}

} // namespace maxscript
