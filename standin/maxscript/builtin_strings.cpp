// Functions of strings.
#include "standin/maxscript/engine.h"
#include "standin/maxscript/streams.h"

#include <algorithm>
#include <cstdio>

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

Value replace(Arguments& arguments) {
    Text text = arguments.text(0);
    const std::int32_t first = arguments.integer(1);
    const std::int32_t count = arguments.integer(2);
    if (first < 1 || count < 0 || static_cast<std::size_t>(first) - 1 > text.size()) {
        arguments.fail(u"Runtime error: replace is out of the string's range: " + text_from_number(first));
    }
    text.replace(static_cast<std::size_t>(first) - 1, static_cast<std::size_t>(count), arguments.text(3));
    arguments.interpreter().charge(text.size());
    return Value::string(std::move(text));
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

Value change_case(Arguments& arguments, char16_t (*change)(char16_t)) {
    Text text = arguments.text(0);
    std::transform(text.begin(), text.end(), text.begin(), change);
    arguments.interpreter().charge(text.size());
    return Value::string(std::move(text));
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

// ? is one unit, * any number. Goes back to the last * only, so the work is at most text times pattern.
bool matches(Engine& engine, const Text& text, const Text& pattern) {
    std::size_t at = 0;
    std::size_t in_pattern = 0;
    std::size_t star = Text::npos;
    std::size_t star_at = 0;
    while (at < text.size()) {
        if (in_pattern < pattern.size() && pattern[in_pattern] == u'*') {
            star = in_pattern++;
            star_at = at;
        } else if (in_pattern < pattern.size() &&
                   (pattern[in_pattern] == u'?' || pattern[in_pattern] == text[at])) {
            ++at;
            ++in_pattern;
        } else if (star != Text::npos) {
            engine.charge(at - star_at);
            in_pattern = star + 1;
            at = ++star_at;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*', in_pattern) == Text::npos;
}

Value match_pattern(Arguments& arguments) {
    Text text = arguments.text(0);
    Text pattern = arguments.keyword_text(u"pattern", u"*");
    arguments.interpreter().charge(text.size() + pattern.size());
    if (arguments.keyword_boolean(u"ignorecase", true)) {
        text = folded(std::move(text));
        pattern = folded(std::move(pattern));
    }
    return Value::boolean(matches(arguments.interpreter().engine(), text, pattern));
}

Value compare_strings(Arguments& arguments) {
    arguments.interpreter().charge(arguments.text(0).size());
    const int order = compare_folded(arguments.text(0), arguments.text(1));
    return Value::integer(order < 0 ? -1 : order > 0 ? 1 : 0);
}

// formattedPrint value format:"…": flags, width and precision of printf with one letter.
Value formatted(Arguments& arguments) {
    const std::string given = utf8_from_text(arguments.keyword_text(u"format", u""));
    const std::size_t letter = given.find_first_not_of("0123456789.+- #");
    const std::string kinds = "diouxXeEfgG";
    if (letter == std::string::npos || letter + 1 != given.size() || letter > 8 ||
        kinds.find(given[letter]) == std::string::npos) {
        arguments.fail(u"Runtime error: the format is not supported: " + text_from_utf8(given));
    }
    char text[1200] = "";
    const std::string pattern = "%" + given;
    if (kinds.find(given[letter]) < 6) {
        std::snprintf(text, sizeof(text), pattern.c_str(), arguments.integer(0));
    } else {
        std::snprintf(text, sizeof(text), pattern.c_str(), static_cast<double>(arguments.real(0)));
    }
    return Value::string(text_from_utf8(text));
}

Value free_value(Arguments& arguments) {
    const Value value = arguments[0];
    if (value.is(Kind::string)) {
        value.as_string().text.clear();
    } else if (value.is(Kind::string_stream)) {
        value.as_string_stream().text.clear();
        value.as_string_stream().position = 0;
    } else if (value.is(Kind::array)) {
        value.as_array().items.clear();
    } else {
        arguments.fail_conversion(0, u"String");
    }
    return Value::ok();
}

} // namespace

void add_string_functions(Globals& globals) {
    globals.add_function(u"substring", 3, 3, {}, substring);
    globals.add_function(u"findString", 2, 2, {}, find_string);
    globals.add_function(u"replace", 4, 4, {}, replace);
    globals.add_function(u"substituteString", 3, 3, {}, substitute);
    globals.add_function(u"toLower", 1, 1, {}, [](Arguments& a) { return change_case(a, lower_unit); });
    globals.add_function(u"toUpper", 1, 1, {}, [](Arguments& a) { return change_case(a, upper_unit); });
    globals.add_function(u"trimLeft", 1, 2, {}, [](Arguments& a) { return trim(a, true); });
    globals.add_function(u"trimRight", 1, 2, {}, [](Arguments& a) { return trim(a, false); });
    globals.add_function(u"filterString", 2, 2, {u"splitEmptyTokens"}, filter);
    globals.add_function(u"matchPattern", 1, 1, {u"pattern", u"ignoreCase"}, match_pattern);
    globals.add_function(u"stricmp", 2, 2, {}, compare_strings);
    globals.add_function(u"formattedPrint", 1, 1, {u"format"}, formatted);
    globals.add_function(u"free", 1, 1, {}, free_value);
}

} // namespace maxscript
