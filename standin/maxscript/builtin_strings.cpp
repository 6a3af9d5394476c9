// Functions of strings.
#include "standin/base/wildcards.h"
#include "standin/maxscript/operations.h"

#include <algorithm>

namespace maxscript {

namespace {

const char16_t* const kBlanks = u" \t\r\n";

Value substring(Arguments& arguments) {
    const Text& text = arguments.text(0);
    const std::int32_t first = arguments.integer(1);
    const std::int32_t count = arguments.integer(2);
    if (first < 1) {
        arguments.fail(u"Runtime error: substring start must be 1 or more, got: " + text_from_number(first));
    }
    const auto start = static_cast<std::size_t>(first) - 1;
    if (start >= text.size()) {
        return Value::string(Text());
    }
    arguments.interpreter().charge(text.size() - start);
    // A negative count means all of the rest.
    return Value::string(text.substr(start, count < 0 ? Text::npos : static_cast<std::size_t>(count)));
}

Value find_string(Arguments& arguments) {
    arguments.interpreter().charge(arguments.text(0).size());
    const std::size_t found = arguments.text(0).find(arguments.text(1));
    return found == Text::npos ? Value() : Value::integer(static_cast<std::int32_t>(found) + 1);
}

Value substitute(Arguments& arguments) {
    const Text& text = arguments.text(0);
    const Text& from = arguments.text(1);
    const Text& to = arguments.text(2);
    if (from.empty()) {
        return Value::string(text);
    }
    Text result;
    std::size_t at = 0;
    for (std::size_t found = text.find(from); found != Text::npos; found = text.find(from, at)) {
        result.append(text, at, found - at);
        result += to;
        at = found + from.size();
        arguments.interpreter().charge(to.size());
    }
    result.append(text, at, Text::npos);
    arguments.interpreter().charge(result.size());
    return Value::string(std::move(result));
}

Value to_lower(Arguments& arguments) {
    arguments.interpreter().charge(arguments.text(0).size());
    return Value::string(folded(arguments.text(0)));
}

Value trim(Arguments& arguments, bool left) {
    const Text& text = arguments.text(0);
    const Text blanks = arguments.count() > 1 ? arguments.text(1) : Text(kBlanks);
    arguments.interpreter().charge(text.size());
    if (left) {
        const std::size_t first = text.find_first_not_of(blanks);
        return Value::string(first == Text::npos ? Text() : text.substr(first));
    }
    const std::size_t last = text.find_last_not_of(blanks);
    return Value::string(last == Text::npos ? Text() : text.substr(0, last + 1));
}

Value filter(Arguments& arguments) {
    const Text& text = arguments.text(0);
    const Text& tokens = arguments.text(1);
    const bool keeps_empty = arguments.keyword_boolean(u"splitemptytokens", false);
    std::vector<Value> parts;
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t end = std::min(text.find_first_of(tokens, start), text.size());
        if (end > start || keeps_empty) {
            parts.push_back(Value::string(text.substr(start, end - start)));
        }
        arguments.interpreter().charge(64 + end - start);
        start = end + 1;
    }
    return Value::array(std::move(parts));
}

Value match_pattern(Arguments& arguments) {
    Text text = arguments.text(0);
    Text pattern = arguments.keyword_text(u"pattern", u"*");
    arguments.interpreter().charge(text.size() + pattern.size());
    if (arguments.keyword_boolean(u"ignorecase", true)) {
        text = folded(std::move(text));
        pattern = folded(std::move(pattern));
    }
    Interpreter& interpreter = arguments.interpreter();
    return Value::boolean(base::matches_wildcards(
        text, pattern, [&interpreter](std::size_t units) { interpreter.charge(units); }));
}

} // namespace

void add_string_functions(Globals& globals) {
    globals.add_function(u"substring", 3, 3, {}, substring);
    globals.add_function(u"findString", 2, 2, {}, find_string);
    globals.add_function(u"substituteString", 3, 3, {}, substitute);
    globals.add_function(u"toLower", 1, 1, {}, to_lower);
    globals.add_function(u"trimLeft", 1, 2, {}, [](Arguments& a) { return trim(a, true); });
    globals.add_function(u"trimRight", 1, 2, {}, [](Arguments& a) { return trim(a, false); });
    globals.add_function(u"filterString", 2, 2, {u"splitEmptyTokens"}, filter);
    globals.add_function(u"matchPattern", 1, 1, {u"pattern", u"ignoreCase"}, match_pattern);
}

} // namespace maxscript
