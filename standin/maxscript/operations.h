// The operations on values, and the built-in functions. Internal to the language. Operations fail at the
// interpreter's spot.
#pragma once

#include "standin/maxscript/code.h"
#include "standin/maxscript/interpreter.h"

namespace maxscript {

constexpr std::size_t kMostElements = 16u << 20;

// Operators, in operators.cpp.
Value arithmetic(Interpreter& interpreter, char16_t operation, const Value& one, const Value& other);
Value negate(Interpreter& interpreter, const Value& value);
bool equal_values(Interpreter& interpreter, const Value& one, const Value& other);
// Below, at or above 0; kUnordered when one is no number.
constexpr int kUnordered = 2;
int compare_values(Interpreter& interpreter, const Text& operation, const Value& one, const Value& other);
bool as_condition(Interpreter& interpreter, const Value& value, const char16_t* what);
std::int32_t truncated(double value); // INT32_MIN for what does not fit, as the machine's conversion gives
bool number_to_integer(const Value& value, std::int32_t& result);
float number_to_real(const Value& value);

// Properties and elements, in access.cpp.
Value property_of(Interpreter& interpreter, const Value& object, const Text& folded_name);
void set_property_of(Interpreter& interpreter, const Value& object, const Text& folded_name,
                     const Value& value);
bool has_property(const Value& object, const Text& folded_name);
Value element_of(Interpreter& interpreter, const Value& object, const Value& index);
void set_element_of(Interpreter& interpreter, const Value& object, const Value& index, const Value& value);
// Fails when an array of `size` elements cannot get another one.
void refuse_growth(Interpreter& interpreter, std::size_t size);
// Appends the elements of a collection.
void extend(Interpreter& interpreter, std::vector<Value>& items, const Value& collection);
// The elements of an array or a host's collection; false: it is neither.
bool elements_of(Interpreter& interpreter, const Value& collection, std::vector<Value>& items);

// Built-in classes, in classes.cpp. The class of all values for a kind that has none of its own.
ClassPointer class_of_kind(Kind kind);
Value class_of(const Value& value);
Value convert(Interpreter& interpreter, const Value& value, const Value& to);
void add_classes(Globals& globals);

// The built-in functions, in builtin_*.cpp.
void add_value_functions(Globals& globals);
void add_program_functions(Globals& globals);
void add_string_functions(Globals& globals);
void add_array_functions(Globals& globals);
void add_file_functions(Globals& globals);
// To a string stream or an open file; any other value is an error.
void write_to_stream(Interpreter& interpreter, const Value& stream, const Text& text);

} // namespace maxscript
