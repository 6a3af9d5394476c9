// How values look: as print shows them and as `as string` gives them.
#include "standin/maxscript/operations.h"

#include <cmath>
#include <cstdio>

namespace maxscript {

namespace {

constexpr std::size_t kShownElements = 20;
constexpr int kDeepestShown = 20;

Text text_of_real(float value) {
    if (std::isnan(value)) {
        return u"nan";
    }
    if (std::isinf(value)) {
        return value > 0 ? u"inf" : u"-inf";
    }
    char digits[40];
    std::snprintf(digits, sizeof(digits), "%g", static_cast<double>(value));
    std::string text = digits;
    if (text.find_first_of(".e") == std::string::npos) {
        text += ".0";
    }
    return text_from_utf8(text);
}

// Values inside a value.
class Printer {
public:
    explicit Printer(Interpreter& interpreter) : interpreter_(interpreter) {}

    // `quoted`: strings in quotes, names with their #.
    Text print(const Value& value, bool quoted) {
        interpreter_.charge(0);
        if (++depth_ > kDeepestShown) {
            interpreter_.fail(u"Runtime error: values stand too deep inside each other to be shown");
        }
        Text text = text_of(value, quoted);
        --depth_;
        return text;
    }

private:
    Text text_of(const Value& value, bool quoted);
    Text array(const ArrayObject& array);
    Text instance(const InstanceObject& instance);

    Interpreter& interpreter_;
    int depth_ = 0;
};

Text Printer::array(const ArrayObject& array) {
    Text text = u"#(";
    const std::size_t count = array.items.size();
    const std::size_t shown = std::min(count, kShownElements);
    for (std::size_t i = 0; i < shown && i < array.items.size(); ++i) {
        const Value item = array.items[i];
        text += (i == 0 ? u"" : u", ") + print(item, true);
    }
    return text + (shown < count ? u", ...)" : u")");
}

Text Printer::instance(const InstanceObject& instance) {
    const StructLayout& layout = *instance.definition->layout;
    Text text = u"(" + layout.name;
    for (std::size_t i = 0; i < layout.data.size() && i < instance.members.size(); ++i) {
        const Value value = instance.members[i];
        text += u" " + layout.members[layout.data[i]].name + u":" + print(value, true);
    }
    return text + u")";
}

Text struct_text(const StructLayout& layout) {
    Text text;
    for (const StructMember& member : layout.members) {
        text += (text.empty() ? u"\n  " : u",\n  ") + member.name +
                (member.is_function ? u":<fn>; Public" : u":<data>; Public");
    }
    return u"#Struct:" + layout.name + u"(" + text + u")";
}

// Of a kind that contains no other values.
Text plain_text(const Value& value) {
    switch (value.kind()) {
    case Kind::ok:
        return u"OK";
    case Kind::unsupplied:
        return u"unsupplied";
    case Kind::boolean:
        return value.as_boolean() ? u"true" : u"false";
    case Kind::integer:
        return text_from_number(value.as_integer());
    case Kind::real:
        return text_of_real(value.as_real());
    case Kind::time: {
        char text[40];
        std::snprintf(text, sizeof(text), "%gf", static_cast<double>(value.as_ticks()) / kTicksPerFrame);
        return text_from_utf8(text);
    }
    case Kind::struct_definition:
        return struct_text(*value.as_struct().layout);
    case Kind::function:
        return value.as_function().code->name + u"()";
    case Kind::native:
        return value.as_native().name + u"()";
    case Kind::file_stream:
        return u"<File:stream>";
    case Kind::host_object:
        return value.as_object().text();
    case Kind::host_class:
        return value.as_class().name;
    default:
        return u"undefined";
    }
}

Text Printer::text_of(const Value& value, bool quoted) {
    switch (value.kind()) {
    case Kind::name:
        return (quoted ? u"#" : u"") + value.as_name().text;
    case Kind::string:
    case Kind::string_stream: {
        const Text& text = value.as_string().text;
        interpreter_.charge(text.size());
        return quoted ? (value.is(Kind::string) ? u"\"" : u"StringStream:\"") + text + u"\"" : text;
    }
    case Kind::array:
        return array(value.as_array());
    case Kind::instance:
        return instance(value.as_instance());
    case Kind::reference:
        return print(value.as_reference().get(), quoted);
    default:
        return plain_text(value);
    }
}

} // namespace

Text Interpreter::as_string(const Value& value) {
    return Printer(*this).print(value, false);
}

Text Interpreter::printed(const Value& value) {
    return Printer(*this).print(value, true);
}

} // namespace maxscript
