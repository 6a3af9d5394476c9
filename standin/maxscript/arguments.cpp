// What native code sees of a call, and interfaces made of native functions.
#include "standin/maxscript/engine.h"

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

void Arguments::fail_conversion(std::size_t index, const char16_t* wanted) const {
    interpreter_.fail(u"Unable to convert: " + interpreter_.printed((*this)[index]) + u" to type: " + wanted);
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
    const Value value = (*this)[index];
    if (!value.is(Kind::boolean)) {
        fail_conversion(index, u"Boolean");
    }
    return value.as_boolean();
}

// The object lives on: the argument on the stack, or the variable it refers to, holds it.
const Text& Arguments::text(std::size_t index) const {
    const Value value = (*this)[index];
    if (!value.is(Kind::string)) {
        fail_conversion(index, u"String");
    }
    return value.as_string().text;
}

const Text& Arguments::name(std::size_t index) const {
    const Value value = (*this)[index];
    if (!value.is(Kind::name)) {
        fail_conversion(index, u"Name");
    }
    return value.as_name().folded;
}

ArrayObject& Arguments::array(std::size_t index) const {
    const Value value = (*this)[index];
    if (!value.is(Kind::array)) {
        fail_conversion(index, u"Array");
    }
    return value.as_array();
}

Text Arguments::keyword_text(const Text& keyword_name, const Text& otherwise) const {
    const Value& value = keyword(keyword_name);
    if (value.is(Kind::unsupplied)) {
        return otherwise;
    }
    if (!value.is(Kind::string)) {
        fail(u"Unable to convert: " + interpreter_.printed(value) + u" to type: String");
    }
    return value.as_string().text;
}

bool Arguments::keyword_boolean(const Text& keyword_name, bool otherwise) const {
    const Value& value = keyword(keyword_name);
    if (value.is(Kind::unsupplied)) {
        return otherwise;
    }
    if (!value.is(Kind::boolean)) {
        fail(u"Unable to convert: " + interpreter_.printed(value) + u" to type: Boolean");
    }
    return value.as_boolean();
}

Text Arguments::keyword_name(const Text& keyword_name, const Text& otherwise) const {
    const Value& value = keyword(keyword_name);
    if (value.is(Kind::unsupplied)) {
        return otherwise;
    }
    if (!value.is(Kind::name)) {
        fail(u"Unable to convert: " + interpreter_.printed(value) + u" to type: Name");
    }
    return value.as_name().folded;
}

bool Arguments::is_reference(std::size_t index) const {
    return raw(index).is(Kind::reference);
}

void Arguments::set_reference(std::size_t index, const Value& value) {
    if (!is_reference(index)) {
        fail(u"Type error: " + function_ + u" needs a by-reference argument (&variable)");
    }
    raw(index).as_reference().set(value);
}

HostInterface::HostInterface(const Text& name) : class_(std::make_shared<HostClass>()) {
    class_->name = name;
}

void HostInterface::add(const Text& name, int fewest, int most, const std::vector<Text>& keywords,
                        NativeCode code) {
    auto function = std::make_shared<NativeFunction>();
    function->name = name;
    function->fewest = fewest;
    function->most = most;
    for (const Text& keyword : keywords) {
        function->keywords.push_back(folded(keyword));
    }
    function->code = std::move(code);
    members_[folded(name)].value = Value::native(std::move(function));
}

void HostInterface::add_value(const Text& name, const Value& value) {
    members_[folded(name)].value = value;
}

void HostInterface::add_property(const Text& name, std::function<Value()> getter,
                                 std::function<void(const Value&)> setter) {
    Member& member = members_[folded(name)];
    member.getter = std::move(getter);
    member.setter = std::move(setter);
}

bool HostInterface::get_property(const Text& name, Value& value) {
    const auto found = members_.find(name);
    if (found == members_.end()) {
        return false;
    }
    value = found->second.getter ? found->second.getter() : found->second.value;
    return true;
}

bool HostInterface::set_property(const Text& name, const Value& value) {
    const auto found = members_.find(name);
    if (found == members_.end() || !found->second.setter) {
        return false;
    }
    found->second.setter(value);
    return true;
}

} // namespace maxscript
