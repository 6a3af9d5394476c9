// How values look: as print shows them and as `as string` gives them.
#include "standin/maxscript/engine.h"

#include <cmath>
#include <cstdio>

namespace maxscript {

namespace {

constexpr std::size_t kShownElements = 20;
constexpr int kDeepestShown = 20;
constexpr double kTicksPerFrame = 160;

class Printer {
public:
    explicit Printer(Engine& engine) : engine_(engine) {}

    // `quoted`: strings in quotes, names with their #.
    Text print(const Value& value, bool quoted);

private:
    Text print_array(const ArrayObject& array);
    Text print_instance(const InstanceObject& instance);
    Text print_struct(const StructDefinition& definition) const;
    Text print_shared(const Value& value, bool quoted);

    Engine& engine_;
    int depth_ = 0;
};

Text Printer::print(const Value& value, bool quoted) {
    engine_.charge(0);
    switch (value.kind()) {
    case Kind::undefined:
        return u"undefined";
    case Kind::ok:
        return u"OK";
    case Kind::unsupplied:
        return u"unsupplied";
    case Kind::boolean:
        return value.as_boolean() ? u"true" : u"false";
    case Kind::integer:
        return text_from_number(value.as_integer());
    case Kind::integer64:
        return text_from_number(value.as_integer64()) + u"L";
    case Kind::real:
        return text_of_real(value.as_real());
    case Kind::time: {
        char text[40];
        std::snprintf(text, sizeof(text), "%gf", value.as_ticks() / kTicksPerFrame);
        return text_from_utf8(text);
    }
    default:
        break;
    }
    if (++depth_ > kDeepestShown) {
        engine_.fail(u"Runtime error: values stand too deep inside each other to be shown");
    }
    Text text = print_shared(value, quoted);
    --depth_;
    return text;
}

Text Printer::print_shared(const Value& value, bool quoted) {
    switch (value.kind()) {
    case Kind::name:
        return (quoted ? u"#" : u"") + value.as_name().text;
    case Kind::string:
        engine_.charge(value.as_string().text.size());
        return quoted ? u"\"" + value.as_string().text + u"\"" : value.as_string().text;
    case Kind::array:
        return print_array(value.as_array());
    case Kind::struct_definition:
        return print_struct(value.as_struct());
    case Kind::instance:
        return print_instance(value.as_instance());
    case Kind::function:
        return value.as_function().code->name + u"()";
    case Kind::native:
        return value.as_native().name + u"()";
    case Kind::string_stream:
        engine_.charge(value.as_string_stream().text.size());
        return quoted ? u"StringStream:\"" + value.as_string_stream().text + u"\""
                      : value.as_string_stream().text;
    case Kind::file_stream:
        return u"<File:stream>";
    case Kind::host_object:
        return value.as_object().text();
    case Kind::host_class:
        return value.as_class().name;
    case Kind::reference:
        return print(value.as_reference().get(), quoted);
    default:
        return Text();
    }
}

Text Printer::print_array(const ArrayObject& array) {
    Text text = u"#(";
    const std::size_t count = array.items.size();
    const std::size_t shown = std::min(count, kShownElements);
    for (std::size_t i = 0; i < shown && i < array.items.size(); ++i) {
        const Value item = array.items[i];
        text += (i == 0 ? u"" : u", ") + print(item, true);
    }
    return text + (shown < count ? u", ...)" : u")");
}

Text Printer::print_instance(const InstanceObject& instance) {
    const StructLayout& layout = *instance.definition->layout;
    Text text = u"(" + layout.name;
    for (std::size_t i = 0; i < layout.data.size() && i < instance.members.size(); ++i) {
        const StructMember& member = layout.members[layout.data[i]];
        const Value value = instance.members[i];
        text += u" " + member.name + u":" + print(value, true);
    }
    return text + u")";
}

Text Printer::print_struct(const StructDefinition& definition) const {
    Text text = u"#Struct:" + definition.layout->name + u"(";
    bool is_first = true;
    for (const StructMember& member : definition.layout->members) {
        text += (is_first ? u"\n  " : u",\n  ") + member.name +
                (member.is_function ? u":<fn>; Public" : u":<data>; Public");
        is_first = false;
    }
    return text + u")";
}

} // namespace

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

Text text_of(Engine& engine, const Value& value) {
    return Printer(engine).print(value, false);
}

Text printed_text(Engine& engine, const Value& value) {
    return Printer(engine).print(value, true);
}

} // namespace maxscript
