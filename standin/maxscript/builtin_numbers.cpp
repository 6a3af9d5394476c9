// Mathematics, and the interface `bit`.
#include "standin/maxscript/engine.h"

#include <cmath>

namespace maxscript {

namespace {

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

void add_bits(Globals& globals) {
    auto bit = std::make_shared<HostInterface>(u"bit");
    bit->add(u"charAsInt", 1, 1, {}, character_code);
    bit->add(u"intAsChar", 1, 1, {}, character);
    bit->add(u"and", 2, 2, {}, [](Arguments& a) { return Value::integer(a.integer(0) & a.integer(1)); });
    bit->add(u"or", 2, 2, {}, [](Arguments& a) { return Value::integer(a.integer(0) | a.integer(1)); });
    bit->add(u"not", 1, 1, {}, [](Arguments& a) { return Value::integer(~a.integer(0)); });
    globals.add_constant(u"bit", Value::object(bit));
}

} // namespace

void add_number_functions(Globals& globals) {
    add_bits(globals);
    globals.add_function(u"mod", 2, 2, {}, modulo);
}

} // namespace maxscript
