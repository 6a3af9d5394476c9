// The built-in classes and the conversions between them.
#include "standin/maxscript/engine.h"

#include <cmath>
#include <cstdlib>
#include <map>

namespace maxscript {

namespace {

using ClassPointer = std::shared_ptr<const HostClass>;

ClassPointer make_class(const char16_t* name, ClassPointer super) {
    auto made = std::make_shared<HostClass>();
    made->name = name;
    made->super = std::move(super);
    return made;
}

struct Classes {
    ClassPointer value = make_class(u"Value", nullptr);
    ClassPointer number = make_class(u"Number", value);
    std::map<Kind, ClassPointer> by_kind;

    Classes() {
        const std::pair<Kind, const char16_t*> plain[] = {
            {Kind::undefined, u"UndefinedClass"},
            {Kind::ok, u"OkClass"},
            {Kind::unsupplied, u"UnsuppliedClass"},
            {Kind::boolean, u"BooleanClass"},
            {Kind::time, u"Time"},
            {Kind::name, u"Name"},
            {Kind::string, u"String"},
            {Kind::array, u"Array"},
            {Kind::struct_definition, u"StructDef"},
            {Kind::instance, u"Struct"},
            {Kind::function, u"MAXScriptFunction"},
            {Kind::native, u"Primitive"},
            {Kind::string_stream, u"StringStream"},
            {Kind::file_stream, u"FileStream"},
        };
        for (const auto& entry : plain) {
            by_kind[entry.first] = make_class(entry.second, value);
        }
        by_kind[Kind::integer] = make_class(u"Integer", number);
        by_kind[Kind::integer64] = make_class(u"Integer64", number);
        by_kind[Kind::real] = make_class(u"Float", number);
        auto stream = std::make_shared<HostClass>(*by_kind[Kind::string_stream]);
        auto constructor = std::make_shared<NativeFunction>();
        constructor->name = u"StringStream";
        constructor->fewest = 1;
        constructor->most = 1;
        constructor->code = [](Arguments& arguments) { return Value::string_stream(arguments.text(0)); };
        stream->constructor = std::move(constructor);
        by_kind[Kind::string_stream] = stream;
    }
};

const Classes& classes() {
    static const Classes made;
    return made;
}

[[noreturn]] void fail_conversion(Engine& engine, const Value& value, const Value& to) {
    engine.fail(u"Unable to convert: " + printed_text(engine, value) + u" to type: " + text_of(engine, to));
}

// A number at the start of the text, blanks before it; false: there is none.
bool number_in(const Text& text, double& number) {
    const std::string digits = utf8_from_text(text.substr(0, 64));
    const char* start = digits.c_str();
    const std::size_t first = digits.find_first_not_of(" \t\r\n+-");
    const bool is_decimal =
        first != std::string::npos &&
        (std::isdigit(static_cast<unsigned char>(digits[first])) != 0 || digits[first] == '.');
    char* end = nullptr;
    number = is_decimal ? std::strtod(start, &end) : 0;
    return is_decimal && end != start;
}

Value to_integer(Engine& engine, const Value& value, const Value& to) {
    std::int32_t number = 0;
    double parsed = 0;
    if (number_to_integer(value, number)) {
        return Value::integer(number);
    }
    if (value.is(Kind::string)) {
        if (!number_in(value.as_string().text, parsed)) {
            return Value();
        }
        return Value::integer(
            parsed > -2147483649.0 && parsed < 2147483648.0 ? static_cast<std::int32_t>(parsed) : INT32_MIN);
    }
    fail_conversion(engine, value, to);
}

Value to_real(Engine& engine, const Value& value, const Value& to) {
    double parsed = 0;
    if (value.is_number()) {
        return Value::real(number_to_real(value));
    }
    if (value.is(Kind::string)) {
        return number_in(value.as_string().text, parsed) ? Value::real(static_cast<float>(parsed)) : Value();
    }
    fail_conversion(engine, value, to);
}

Value to_name(Engine& engine, const Value& value, const Value& to) {
    if (value.is(Kind::name)) {
        return value;
    }
    if (value.is(Kind::string)) {
        return Value::name(value.as_string().text);
    }
    fail_conversion(engine, value, to);
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

Value class_of(Engine&, const Value& value) {
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

Value convert(Engine& engine, const Value& value, const Value& to) {
    using Conversion = Value (*)(Engine&, const Value&, const Value&);
    static const std::pair<Kind, Conversion> kConversions[] = {
        {Kind::integer, to_integer},
        {Kind::real, to_real},
        {Kind::name, to_name},
    };
    if (!to.is(Kind::host_class)) {
        engine.fail(u"Type error: as needs a class, got: " + printed_text(engine, to));
    }
    if (to.identity() == class_of_kind(Kind::string).get()) {
        return Value::string(text_of(engine, value));
    }
    for (const auto& conversion : kConversions) {
        if (to.identity() == class_of_kind(conversion.first).get()) {
            return conversion.second(engine, value, to);
        }
    }
    if (class_of(engine, value).identity() == to.identity()) {
        return value;
    }
    fail_conversion(engine, value, to);
}

} // namespace maxscript
