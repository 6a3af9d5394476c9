// The arguments of native code.
#include "standin/maxscript/operations.h"

namespace maxscript {

namespace {

const Value& unsupplied() {
    static const Value value = Value::unsupplied();
    return value;
}

} // namespace

const Value& Arguments::raw(std::size_t index) const {
    return index < count_ ? values_[index] : unsupplied();
}

Value Arguments::operator[](std::size_t index) const {
    const Value& value = raw(index);
    return value.is(Kind::reference) ? value.as_reference().get() : value;
}

const Value& Arguments::keyword(const Text& name) const {
    for (const Keyword& keyword : keywords_) {
        if (keyword.name == name) {
            return keyword.value;
        }
    }
    return unsupplied();
}

void Arguments::fail(const Text& message) const {
    interpreter_.fail(message);
}

void Arguments::fail_conversion(std::size_t index, const Text& wanted) const {
    interpreter_.fail_conversion((*this)[index], wanted);
}

const Value& Arguments::checked(const Value& value, Kind kind, const char16_t* wanted) const {
    if (!value.is(kind)) {
        interpreter_.fail_conversion(value, wanted);
    }
    return value;
}

std::int32_t Arguments::integer(std::size_t index) const {
    std::int32_t number = 0;
    if (!number_to_integer((*this)[index], number)) {
        fail_conversion(index, u"Integer");
    }
    return number;
}

float Arguments::real(std::size_t index) const {
    const Value value = (*this)[index];
    if (!value.is_number()) {
        fail_conversion(index, u"Float");
    }
    return number_to_real(value);
}

bool Arguments::boolean(std::size_t index) const {
    return checked((*this)[index], Kind::boolean, u"Boolean").as_boolean();
}

// The references stay valid: the argument on the stack, or the variable it refers to, owns the object.
const Text& Arguments::text(std::size_t index) const {
    return checked((*this)[index], Kind::string, u"String").as_string().text;
}

const Text& Arguments::name(std::size_t index) const {
    return checked((*this)[index], Kind::name, u"Name").as_name().folded;
}

ArrayObject& Arguments::array(std::size_t index) const {
    return checked((*this)[index], Kind::array, u"Array").as_array();
}

Text Arguments::keyword_text(const Text& keyword_name, const Text& fallback) const {
    return has_keyword(keyword_name)
               ? checked(keyword(keyword_name), Kind::string, u"String").as_string().text
               : fallback;
}

bool Arguments::keyword_boolean(const Text& keyword_name, bool fallback) const {
    return has_keyword(keyword_name) ? checked(keyword(keyword_name), Kind::boolean, u"Boolean").as_boolean()
                                     : fallback;
}

Text Arguments::keyword_name(const Text& keyword_name, const Text& fallback) const {
    return has_keyword(keyword_name) ? checked(keyword(keyword_name), Kind::name, u"Name").as_name().folded
                                     : fallback;
}

void Arguments::set_reference(std::size_t index, const Value& value) {
    if (!raw(index).is(Kind::reference)) {
        fail(u"Type error: " + function_ + u" needs a by-reference argument (&variable)");
    }
    raw(index).as_reference().set(value);
}

} // namespace maxscript
