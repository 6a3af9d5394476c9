#include "standin/maxscript/value.h"

#include <iterator>

namespace maxscript {

namespace {

thread_local Container* newest_container = nullptr;
thread_local std::vector<Value>* being_dropped = nullptr;

void move_to_end(std::vector<Value>& from, std::vector<Value>& to) {
    to.insert(to.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(from.end()));
    from.clear();
}

} // namespace

Container::Container() : previous_(nullptr), next_(newest_container) {
    if (next_ != nullptr) {
        next_->previous_ = this;
    }
    newest_container = this;
}

Container::~Container() {
    (previous_ != nullptr ? previous_->next_ : newest_container) = next_;
    if (next_ != nullptr) {
        next_->previous_ = previous_;
    }
}

void Container::drop_later(std::vector<Value>& content) {
    if (content.empty()) {
        return;
    }
    if (being_dropped != nullptr) {
        move_to_end(content, *being_dropped);
        return;
    }
    std::vector<Value> waiting;
    waiting.swap(content);
    being_dropped = &waiting;
    while (!waiting.empty()) {
        const Value last = std::move(waiting.back());
        waiting.pop_back();
    }
    being_dropped = nullptr;
}

void Container::empty_all() {
    std::vector<Value> content;
    for (Container* container = newest_container; container != nullptr; container = container->next_) {
        container->surrender(content);
    }
    drop_later(content);
}

void ArrayObject::surrender(std::vector<Value>& content) {
    move_to_end(items, content);
}

void InstanceObject::surrender(std::vector<Value>& content) {
    move_to_end(members, content);
}

Value Value::real(float value) {
    Value result(Kind::real);
    result.real_ = value;
    return result;
}

Value Value::name(const Text& text) {
    auto name = std::make_shared<NameText>();
    name->text = text;
    name->folded = maxscript::folded(text);
    return shared(Kind::name, std::move(name));
}

Value Value::string(Text text) {
    auto string = std::make_shared<StringObject>();
    string->text = std::move(text);
    return shared(Kind::string, std::move(string));
}

Value Value::array(std::vector<Value> items) {
    auto array = std::make_shared<ArrayObject>();
    array->items = std::move(items);
    return shared(Kind::array, std::move(array));
}

Value Value::string_stream(Text text) {
    auto stream = std::make_shared<StringObject>();
    stream->text = std::move(text);
    return shared(Kind::string_stream, std::move(stream));
}

Value Value::native(std::shared_ptr<const NativeFunction> function) {
    return shared(Kind::native, std::const_pointer_cast<NativeFunction>(function));
}

Value Value::object(std::shared_ptr<HostObject> object) {
    return object ? shared(Kind::host_object, std::move(object)) : Value();
}

Value Value::of_class(std::shared_ptr<const HostClass> host_class) {
    return shared(Kind::host_class, std::const_pointer_cast<HostClass>(host_class));
}

bool Value::is_callable() const {
    switch (kind_) {
    case Kind::function:
    case Kind::native:
    case Kind::struct_definition:
        return true;
    case Kind::host_class:
        return as_class().constructor != nullptr;
    default:
        return false;
    }
}

ClassPointer make_class(const Text& name, const ClassPointer& super) {
    auto made = std::make_shared<HostClass>();
    made->name = name;
    made->super = super;
    return made;
}

} // namespace maxscript
