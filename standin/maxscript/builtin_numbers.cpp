// Mathematics, and the interface `bit`.
#include "standin/maxscript/engine.h"

#include <cmath>

namespace maxscript {

namespace {

constexpr double kDegree = 3.14159265358979323846 / 180;

Value absolute(Arguments& arguments) {
    Engine& engine = arguments.interpreter().engine();
    const Value number = arguments[0];
    if (!number.is_number() && !number.is(Kind::time)) {
        arguments.fail_conversion(0, u"Number");
    }
    const Value zero = number.is(Kind::time) ? Value::time(0) : Value::integer(0);
    return compare_values(engine, u"<", number, zero) < 0 ? negate(engine, number) : number;
}

Value modulo(Arguments& arguments) {
    const float divisor = arguments.real(1);
    return Value::real(std::fmod(arguments.real(0), divisor));
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

Value shifted(Arguments& arguments) {
    const auto bits = static_cast<std::uint32_t>(arguments.integer(0));
    const std::int32_t by = arguments.integer(1);
    if (by <= -32 || by >= 32) {
        return Value::integer(0);
    }
    return Value::integer(static_cast<std::int32_t>(by >= 0 ? bits << by : bits >> -by));
}

std::uint32_t bit_of(Arguments& arguments) {
    const std::int32_t number = arguments.integer(1);
    if (number < 1 || number > 32) {
        arguments.fail(u"Runtime error: bits are numbered from 1 to 32, got: " + text_from_number(number));
    }
    return 1u << (number - 1);
}

Value set_one_bit(Arguments& arguments) {
    const auto bits = static_cast<std::uint32_t>(arguments.integer(0));
    const std::uint32_t bit = bit_of(arguments);
    return Value::integer(static_cast<std::int32_t>(arguments.boolean(2) ? bits | bit : bits & ~bit));
}

void add_bits(Globals& globals) {
    auto bit = std::make_shared<HostInterface>(u"bit");
    bit->add(u"charAsInt", 1, 1, {}, character_code);
    bit->add(u"intAsChar", 1, 1, {}, character);
    bit->add(u"and", 2, 2, {}, [](Arguments& a) { return Value::integer(a.integer(0) & a.integer(1)); });
    bit->add(u"or", 2, 2, {}, [](Arguments& a) { return Value::integer(a.integer(0) | a.integer(1)); });
    bit->add(u"xor", 2, 2, {}, [](Arguments& a) { return Value::integer(a.integer(0) ^ a.integer(1)); });
    bit->add(u"not", 1, 1, {}, [](Arguments& a) { return Value::integer(~a.integer(0)); });
    bit->add(u"shift", 2, 2, {}, shifted);
    bit->add(u"get", 2, 2, {}, [](Arguments& a) {
        return Value::boolean((static_cast<std::uint32_t>(a.integer(0)) & bit_of(a)) != 0);
    });
    bit->add(u"set", 3, 3, {}, set_one_bit);
    globals.add_constant(u"bit", Value::object(bit));
}

void add_real_function(Globals& globals, const Text& name, double (*function)(double)) {
    globals.add_function(name, 1, 1, {}, [function](Arguments& a) {
        return Value::real(static_cast<float>(function(a.real(0))));
    });
}

} // namespace

void add_number_functions(Globals& globals) {
    add_bits(globals);
    globals.add_function(u"abs", 1, 1, {}, absolute);
    globals.add_function(u"mod", 2, 2, {}, modulo);
    globals.add_function(u"pow", 2, 2, {},
                         [](Arguments& a) { return Value::real(std::pow(a.real(0), a.real(1))); });
    add_real_function(globals, u"ceil", [](double number) { return std::ceil(number); });
    add_real_function(globals, u"floor", [](double number) { return std::floor(number); });
    add_real_function(globals, u"sqrt", [](double number) { return std::sqrt(number); });
    add_real_function(globals, u"exp", [](double number) { return std::exp(number); });
    add_real_function(globals, u"log", [](double number) { return std::log(number); });
    add_real_function(globals, u"log10", [](double number) { return std::log10(number); });
    // Angles are in degrees.
    add_real_function(globals, u"sin", [](double angle) { return std::sin(angle * kDegree); });
    add_real_function(globals, u"cos", [](double angle) { return std::cos(angle * kDegree); });
    add_real_function(globals, u"tan", [](double angle) { return std::tan(angle * kDegree); });
    add_real_function(globals, u"asin", [](double number) { return std::asin(number) / kDegree; });
    add_real_function(globals, u"acos", [](double number) { return std::acos(number) / kDegree; });
    add_real_function(globals, u"atan", [](double number) { return std::atan(number) / kDegree; });
    add_real_function(globals, u"degToRad", [](double angle) { return angle * kDegree; });
    add_real_function(globals, u"radToDeg", [](double angle) { return angle / kDegree; });
}

} // namespace maxscript
