// Arithmetic, comparison.
#include "standin/maxscript/operations.h"

#include <cmath>

namespace maxscript {

namespace {

// The host computes in 32 bits: an overflow wraps round.
Value whole_arithmetic(Interpreter& interpreter, char16_t operation, std::int64_t one, std::int64_t other) {
    if (operation == u'/' && other == 0) {
        interpreter.fail(u"Runtime error: Integer divide by zero");
    }
    const std::int64_t result = operation == u'+'   ? one + other
                                : operation == u'-' ? one - other
                                : operation == u'*' ? one * other
                                                    : one / other;
    return Value::integer(static_cast<std::int32_t>(static_cast<std::uint32_t>(result)));
}

Value real_arithmetic(char16_t operation, float one, float other) {
    switch (operation) {
    case u'+':
        return Value::real(one + other);
    case u'-':
        return Value::real(one - other);
    case u'*':
        return Value::real(one * other);
    default:
        // Spelled out: dividing by zero is not defined in C++.
        if (other == 0) {
            return Value::real(one == 0 || std::isnan(one)                ? NAN
                               : std::signbit(one) != std::signbit(other) ? -INFINITY
                                                                          : INFINITY);
        }
        return Value::real(one / other);
    }
}

template <class Type>
int order_of(Type one, Type other) {
    return one < other ? -1 : one > other ? 1 : one == other ? 0 : kUnordered;
}

// Whole numbers are compared exactly: a Float does not hold them all.
int order_of_numbers(const Value& one, const Value& other) {
    return one.is(Kind::integer) && other.is(Kind::integer)
               ? order_of(one.as_integer(), other.as_integer())
               : order_of(number_to_real(one), number_to_real(other));
}

// Strings and arrays.
Value sum_of(Interpreter& interpreter, const Value& one, const Value& other) {
    if (one.is(Kind::array)) {
        std::vector<Value> items = one.as_array().items;
        interpreter.charge(items.size() * 16);
        extend(interpreter, items, other);
        return Value::array(std::move(items));
    }
    if (!other.is(Kind::string)) {
        interpreter.fail_conversion(other, u"String");
    }
    interpreter.charge(one.as_string().text.size() + other.as_string().text.size());
    return Value::string(one.as_string().text + other.as_string().text);
}

} // namespace

std::int32_t truncated(double value) {
    return value > -2147483649.0 && value < 2147483648.0 ? static_cast<std::int32_t>(value) : INT32_MIN;
}

bool number_to_integer(const Value& value, std::int32_t& result) {
    if (value.is_number()) {
        result = value.is(Kind::integer) ? value.as_integer() : truncated(value.as_real());
    }
    return value.is_number();
}

float number_to_real(const Value& value) {
    return value.is(Kind::real) ? value.as_real() : static_cast<float>(value.as_integer());
}

Value arithmetic(Interpreter& interpreter, char16_t operation, const Value& one, const Value& other) {
    if (one.is_number() && other.is_number()) {
        return one.is(Kind::real) || other.is(Kind::real)
                   ? real_arithmetic(operation, number_to_real(one), number_to_real(other))
                   : whole_arithmetic(interpreter, operation, one.as_integer(), other.as_integer());
    }
    if (operation == u'+' && (one.is(Kind::string) || one.is(Kind::array))) {
        return sum_of(interpreter, one, other);
    }
    if (one.is_number()) {
        interpreter.fail_conversion(other, interpreter.as_string(class_of(one)));
    }
    interpreter.fail_operator(Text(1, operation), one);
}

Value negate(Interpreter& interpreter, const Value& value) {
    if (!value.is_number()) {
        interpreter.fail_operator(u"-", value);
    }
    return value.is(Kind::real) ? Value::real(-value.as_real())
                                : whole_arithmetic(interpreter, u'-', 0, value.as_integer());
}

bool equal_values(Interpreter& interpreter, const Value& one, const Value& other) {
    if (one.is_number() && other.is_number()) {
        return order_of_numbers(one, other) == 0;
    }
    if (one.kind() != other.kind()) {
        return false;
    }
    switch (one.kind()) {
    case Kind::undefined:
    case Kind::ok:
    case Kind::unsupplied:
        return true;
    case Kind::boolean:
    case Kind::time:
        return one.as_integer() == other.as_integer();
    case Kind::name:
        return one.as_name().folded == other.as_name().folded;
    case Kind::string:
        interpreter.charge(one.as_string().text.size());
        return one.as_string().text == other.as_string().text;
    case Kind::function:
        return one.as_function().code == other.as_function().code &&
               one.as_function().self.identity() == other.as_function().self.identity();
    default:
        return one.identity() == other.identity();
    }
}

int compare_values(Interpreter& interpreter, const Text& operation, const Value& one, const Value& other) {
    if (one.is_number() && other.is_number()) {
        return order_of_numbers(one, other);
    }
    if (!one.is_number() && !one.is(Kind::string)) {
        interpreter.fail_operator(operation, one);
    }
    if (one.kind() != other.kind()) {
        interpreter.fail_conversion(other, interpreter.as_string(class_of(one)));
    }
    interpreter.charge(one.as_string().text.size());
    return order_of(one.as_string().text.compare(other.as_string().text), 0);
}

bool as_condition(Interpreter& interpreter, const Value& value, const char16_t* what) {
    if (!value.is(Kind::boolean)) {
        interpreter.fail(u"Type error: " + Text(what) + u" requires BooleanClass, got: " +
                         interpreter.printed(value));
    }
    return value.as_boolean();
}

} // namespace maxscript
