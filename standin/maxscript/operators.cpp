// Arithmetic, comparison.
#include "standin/maxscript/engine.h"

#include <cmath>

namespace maxscript {

namespace {

constexpr int kUnordered = 2;

// The host computes in the machine's 32 or 64 bits: what does not fit wraps round.
std::int32_t wrapped(std::int64_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

std::int32_t cut_to_integer(double value) {
    if (!(value > -2147483649.0 && value < 2147483648.0)) {
        return INT32_MIN; // as the machine's conversion gives
    }
    return static_cast<std::int32_t>(value);
}

std::int64_t whole_of(const Value& value) {
    return value.is(Kind::integer) ? value.as_integer() : value.as_integer64();
}

std::int64_t whole_arithmetic(Engine& engine, char16_t operation, std::int64_t one, std::int64_t other,
                              bool is_long) {
    const auto left = static_cast<std::uint64_t>(one);
    const auto right = static_cast<std::uint64_t>(other);
    switch (operation) {
    case u'+':
        return static_cast<std::int64_t>(left + right);
    case u'-':
        return static_cast<std::int64_t>(left - right);
    case u'*':
        return static_cast<std::int64_t>(left * right);
    case u'/':
        if (other == 0) {
            engine.fail(u"Runtime error: Integer divide by zero");
        }
        return other == -1 ? static_cast<std::int64_t>(0 - left) : one / other;
    default: {
        const double power = std::pow(static_cast<double>(one), static_cast<double>(other));
        if (!is_long) {
            return cut_to_integer(power);
        }
        return power > -9.2e18 && power < 9.2e18 ? static_cast<std::int64_t>(power) : INT64_MIN;
    }
    }
}

Value real_arithmetic(char16_t operation, const Value& first, float one, float other) {
    switch (operation) {
    case u'+':
        return Value::real(one + other);
    case u'-':
        return Value::real(one - other);
    case u'*':
        return Value::real(one * other);
    case u'/':
        // Spelled out: dividing by zero is not defined in C++.
        if (other == 0) {
            return Value::real(one == 0 || std::isnan(one)                ? NAN
                               : std::signbit(one) != std::signbit(other) ? -INFINITY
                                                                          : INFINITY);
        }
        return Value::real(one / other);
    default: {
        const double power = std::pow(static_cast<double>(one), static_cast<double>(other));
        // The result has the base's kind; an Integer is rounded.
        return first.is(Kind::real) ? Value::real(static_cast<float>(power))
                                    : Value::integer(cut_to_integer(std::round(power)));
    }
    }
}

Value number_arithmetic(Engine& engine, char16_t operation, const Value& one, const Value& other) {
    if (one.is(Kind::real) || other.is(Kind::real)) {
        return real_arithmetic(operation, one, number_to_real(one), number_to_real(other));
    }
    const bool is_long = one.is(Kind::integer64) || other.is(Kind::integer64);
    const std::int64_t result = whole_arithmetic(engine, operation, whole_of(one), whole_of(other), is_long);
    return is_long ? Value::integer64(result) : Value::integer(wrapped(result));
}

template <class Type>
int order_of(Type one, Type other) {
    return one < other ? -1 : one > other ? 1 : one == other ? 0 : kUnordered;
}

[[noreturn]] void fail_operator(Engine& engine, const Text& operation, const Value& value) {
    engine.fail(u"No \"\"" + operation + u"\"\" function for " + printed_text(engine, value));
}

[[noreturn]] void fail_conversion(Engine& engine, const Value& value, const Value& to) {
    engine.fail(u"Unable to convert: " + printed_text(engine, value) + u" to type: " +
                text_of(engine, class_of(engine, to)));
}

} // namespace

bool number_to_integer(const Value& value, std::int32_t& result) {
    switch (value.kind()) {
    case Kind::integer:
        result = value.as_integer();
        return true;
    case Kind::integer64:
        result = wrapped(value.as_integer64());
        return true;
    case Kind::real:
        result = cut_to_integer(value.as_real());
        return true;
    default:
        return false;
    }
}

float number_to_real(const Value& value) {
    return value.is(Kind::real) ? value.as_real() : static_cast<float>(whole_of(value));
}

Value add(Engine& engine, const Value& one, const Value& other) {
    if (one.is(Kind::string)) {
        if (!other.is(Kind::string)) {
            fail_conversion(engine, other, one);
        }
        const Text& left = one.as_string().text;
        const Text& right = other.as_string().text;
        engine.charge(left.size() + right.size());
        return Value::string(left + right);
    }
    std::vector<Value> more;
    if (!elements_of(engine, other, more)) {
        fail_conversion(engine, other, one);
    }
    std::vector<Value> items = one.as_array().items;
    engine.charge((items.size() + more.size()) * 16);
    if (items.size() + more.size() > kMostElements) {
        engine.stop_at_limit(u"an array grows too large");
    }
    items.insert(items.end(), more.begin(), more.end());
    return Value::array(std::move(items));
}

Value arithmetic(Engine& engine, char16_t operation, const Value& one, const Value& other) {
    if (one.is_number() && other.is_number()) {
        return number_arithmetic(engine, operation, one, other);
    }
    if (operation == u'+' && (one.is(Kind::string) || one.is(Kind::array))) {
        return add(engine, one, other);
    }
    if (one.is_number()) {
        fail_conversion(engine, other, one);
    }
    fail_operator(engine, Text(1, operation), one);
}

Value negate(Engine& engine, const Value& value) {
    switch (value.kind()) {
    case Kind::integer:
        return Value::integer(wrapped(-static_cast<std::int64_t>(value.as_integer())));
    case Kind::integer64:
        return Value::integer64(
            static_cast<std::int64_t>(0 - static_cast<std::uint64_t>(value.as_integer64())));
    case Kind::real:
        return Value::real(-value.as_real());
    default:
        fail_operator(engine, u"-", value);
    }
}

bool equal_values(Engine& engine, const Value& one, const Value& other) {
    if (one.is_number() && other.is_number()) {
        if (one.is(Kind::real) || other.is(Kind::real)) {
            return number_to_real(one) == number_to_real(other);
        }
        return whole_of(one) == whole_of(other);
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
        return one.as_integer64() == other.as_integer64();
    case Kind::name:
        return one.as_name().folded == other.as_name().folded;
    case Kind::string:
        engine.charge(one.as_string().text.size());
        return one.as_string().text == other.as_string().text;
    case Kind::function:
        return one.as_function().code == other.as_function().code &&
               one.as_function().self.identity() == other.as_function().self.identity();
    default:
        return one.identity() == other.identity();
    }
}

int compare_values(Engine& engine, const char16_t* operation, const Value& one, const Value& other) {
    if (one.is_number() && other.is_number()) {
        if (one.is(Kind::real) || other.is(Kind::real)) {
            return order_of(number_to_real(one), number_to_real(other));
        }
        return order_of(whole_of(one), whole_of(other));
    }
    if (!one.is_number() && !one.is(Kind::string) && !one.is(Kind::name)) {
        fail_operator(engine, operation, one);
    }
    if (one.kind() != other.kind()) {
        fail_conversion(engine, other, one);
    }
    if (one.is(Kind::name)) {
        return order_of(one.as_name().folded.compare(other.as_name().folded), 0);
    }
    engine.charge(one.as_string().text.size());
    return order_of(one.as_string().text.compare(other.as_string().text), 0);
}

bool as_condition(Engine& engine, const Value& value, const char16_t* what) {
    if (!value.is(Kind::boolean)) {
        engine.fail(u"Type error: " + Text(what) + u" requires BooleanClass, got: " +
                    printed_text(engine, value));
    }
    return value.as_boolean();
}

} // namespace maxscript
