// The built-in classes and the conversions between them.
#include "standin/maxscript/operations.h"

#include <cmath>
#include <cstdlib>

namespace maxscript {

namespace {

struct Classes {
    ClassPointer value = make_class(u"Value");
    ClassPointer number = make_class(u"Number", value);
    std::map<Kind, ClassPointer> by_kind = {
        {Kind::undefined, make_class(u"UndefinedClass", value)},
        {Kind::ok, make_class(u"OkClass", value)},
        {Kind::unsupplied, make_class(u"UnsuppliedClass", value)},
        {Kind::boolean, make_class(u"BooleanClass", value)},
        {Kind::integer, make_class(u"Integer", number)},
        {Kind::real, make_class(u"Float", number)},
        {Kind::time, make_class(u"Time", value)},
        {Kind::name, make_class(u"Name", value)},
        {Kind::string, make_class(u"String", value)},
        {Kind::array, make_class(u"Array", value)},
        {Kind::struct_definition, make_class(u"StructDef", value)},
        {Kind::instance, make_class(u"Struct", value)},
        {Kind::function, make_class(u"MAXScriptFunction", value)},
        {Kind::native, make_class(u"Primitive", value)},
        {Kind::string_stream, string_stream()},
        {Kind::file_stream, make_class(u"FileStream", value)},
    };

private:
    // The only class that scripts call.
    ClassPointer string_stream() const {
        HostClass made = *make_class(u"StringStream", value);
        const Value constructor = make_native(made.name, 1, 1, {}, [](Arguments& arguments) {
            return Value::string_stream(arguments.text(0));
        });
        made.constructor = constructor.pointer<const NativeFunction>();
        return std::make_shared<HostClass>(made);
    }
};

const Classes& classes() {
    static const Classes made;
    return made;
}

// A number at the start of the text, blanks before it; false: there is none.
bool number_in(const Text& text, double& number) {
    const std::string digits = utf8_from_text(text.substr(0, 64));
    const std::size_t first = digits.find_first_not_of(" \t\r\n+-");
    const bool is_decimal =
        first != std::string::npos &&
        (std::isdigit(static_cast<unsigned char>(digits[first])) != 0 || digits[first] == '.');
    char* end = nullptr;
    number = is_decimal ? std::strtod(digits.c_str(), &end) : 0;
    return is_decimal && end != digits.c_str();
}

// A number or a text that holds one; undefined: the text holds none. False: another kind.
bool to_number(const Value& value, Kind kind, Value& result) {
    std::int32_t number = 0;
    double parsed = 0;
    if (value.is(Kind::string)) {
        if (number_in(value.as_string().text, parsed)) {
            result = kind == Kind::real ? Value::real(static_cast<float>(parsed))
                                        : Value::integer(truncated(parsed));
        }
        return true;
    }
    const bool is_number = number_to_integer(value, number);
    if (is_number) {
        result = kind == Kind::real ? Value::real(number_to_real(value)) : Value::integer(number);
    }
    return is_number;
}

} // namespace

ClassPointer class_of_kind(Kind kind) {
    const auto found = classes().by_kind.find(kind);
    return found == classes().by_kind.end() ? classes().value : found->second;
}

void add_classes(Globals& globals) {
    globals.add_constant(u"Value", Value::of_class(classes().value));
    globals.add_constant(u"Number", Value::of_class(classes().number));
    for (const auto& entry : classes().by_kind) {
        if (entry.first != Kind::instance) {
            globals.add_constant(entry.second->name, Value::of_class(entry.second));
        }
    }
}

Value class_of(const Value& value) {
    switch (value.kind()) {
    case Kind::host_object:
        return Value::of_class(value.as_object().host_class());
    case Kind::instance:
        return Value::shared(Kind::struct_definition, value.as_instance().definition);
    case Kind::host_class:
        return Value::of_class(value.as_class().super ? value.as_class().super : classes().value);
    default:
        return Value::of_class(class_of_kind(value.kind()));
    }
}

Value convert(Interpreter& interpreter, const Value& value, const Value& to) {
    if (!to.is(Kind::host_class)) {
        interpreter.fail(u"Type error: as needs a class, got: " + interpreter.printed(to));
    }
    if (to.identity() == class_of_kind(Kind::string).get()) {
        return Value::string(interpreter.as_string(value));
    }
    Value result;
    for (const Kind kind : {Kind::integer, Kind::real}) {
        if (to.identity() == class_of_kind(kind).get() && to_number(value, kind, result)) {
            return result;
        }
    }
    if (to.identity() == class_of_kind(Kind::name).get() && value.is(Kind::string)) {
        return Value::name(value.as_string().text);
    }
    if (class_of(value).identity() == to.identity()) {
        return value;
    }
    interpreter.fail_conversion(value, interpreter.as_string(to));
}

} // namespace maxscript
