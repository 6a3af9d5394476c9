// The values of the script language.
//
// Texts are UTF-16 units in a std::u16string on every platform, because the host counts, cuts and indexes
// strings in UTF-16 units. Names of variables, members and names (#abc) are compared without case; a "folded"
// name is in lower case.
//
// A Value is small and copied freely. Strings, arrays, instances and streams are shared: a copy of the Value
// is the same object, as it is for scripts. All of them belong to the thread of their interpreter. Containers
// are emptied when the thread's last interpreter is destroyed (nothing else would end a cycle), so copy out
// what is needed longer.
//
//     Value files = Value::array({Value::string(u"C:\\a.png"), Value::integer(3)});
//     files.as_array().items.push_back(Value::name(u"missing"));
//     if (value.is(Kind::string)) { use(value.as_string().text); }
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace maxscript {

using Text = std::u16string;

enum class Kind : std::uint8_t {
    undefined,
    ok,         // OK, the result of commands without a value
    unsupplied, // the value of a keyword parameter that was not given
    boolean,
    integer, // 32 bit
    real,    // "Float", 32 bit
    time,    // in ticks, 4800 to the second
    name,    // #abc
    string,  // mutable and shared
    array,
    struct_definition,
    instance, // of a struct
    function, // written in the script language
    native,   // a function of the host
    string_stream,
    file_stream,
    host_object,
    host_class, // a class of the host, or of a built-in value (String, Integer)
    reference   // a by-reference argument; native code sees it only through Arguments
};

constexpr std::int32_t kTicksPerFrame = 160; // 30 frames a second

class Interpreter;
class Arguments;
class HostObject;
struct HostClass;
struct NativeFunction;
struct NameText;
struct StringObject;
struct ArrayObject;
struct StructDefinition;
struct InstanceObject;
struct FunctionObject;
struct FileStream;
struct Reference;

class Value {
public:
    Value() = default; // undefined

    static Value undefined() { return Value(); }
    static Value ok() { return Value(Kind::ok); }
    static Value unsupplied() { return Value(Kind::unsupplied); }
    static Value boolean(bool value) { return Value(Kind::boolean, value ? 1 : 0); }
    static Value integer(std::int32_t value) { return Value(Kind::integer, value); }
    static Value time(std::int32_t ticks) { return Value(Kind::time, ticks); }
    static Value real(float value);
    // Without the '#'. Keeps its spelling, is compared without case.
    static Value name(const Text& text);
    static Value string(Text text); // a new string object
    static Value array(std::vector<Value> items = std::vector<Value>());
    static Value string_stream(Text text);
    static Value native(std::shared_ptr<const NativeFunction> function);
    static Value object(std::shared_ptr<HostObject> object);
    static Value of_class(std::shared_ptr<const HostClass> host_class);
    template <class Object>
    static Value shared(Kind kind, std::shared_ptr<Object> object) {
        Value value(kind);
        value.object_ = std::move(object);
        return value;
    }

    Kind kind() const { return kind_; }
    bool is(Kind kind) const { return kind_ == kind; }
    bool is_number() const { return kind_ == Kind::integer || kind_ == Kind::real; }
    bool is_callable() const; // function, native, struct definition, class with a constructor

    // Each is valid for its own kind only.
    bool as_boolean() const { return whole_ != 0; }
    std::int32_t as_integer() const { return whole_; }
    std::int32_t as_ticks() const { return whole_; }
    float as_real() const { return real_; }
    const NameText& as_name() const { return *get<NameText>(); }
    StringObject& as_string() const { return *get<StringObject>(); }
    ArrayObject& as_array() const { return *get<ArrayObject>(); }
    StructDefinition& as_struct() const { return *get<StructDefinition>(); }
    InstanceObject& as_instance() const { return *get<InstanceObject>(); }
    FunctionObject& as_function() const { return *get<FunctionObject>(); }
    const NativeFunction& as_native() const { return *get<NativeFunction>(); }
    StringObject& as_string_stream() const { return *get<StringObject>(); }
    FileStream& as_file_stream() const { return *get<FileStream>(); }
    HostObject& as_object() const { return *get<HostObject>(); }
    const HostClass& as_class() const { return *get<HostClass>(); }
    Reference& as_reference() const { return *get<Reference>(); }

    // The host object as the embedder's own type; null when it has another type.
    template <class Type>
    std::shared_ptr<Type> object_as() const {
        return is(Kind::host_object) ? std::dynamic_pointer_cast<Type>(pointer<HostObject>())
                                     : std::shared_ptr<Type>();
    }
    template <class Type>
    std::shared_ptr<Type> pointer() const {
        return std::static_pointer_cast<Type>(object_);
    }
    // Equal for two Values that share one object.
    const void* identity() const { return object_.get(); }

private:
    explicit Value(Kind kind, std::int32_t whole = 0) : kind_(kind), whole_(whole) {}
    template <class Type>
    Type* get() const {
        return static_cast<Type*>(object_.get());
    }

    Kind kind_ = Kind::undefined;
    std::int32_t whole_ = 0;
    float real_ = 0;
    std::shared_ptr<void> object_;
};

struct NameText {
    Text text;   // as it was written
    Text folded; // in lower case
};

// A string, or a stream of text in memory.
struct StringObject {
    Text text;
};

// A value that may contain itself. Each thread has a list of its containers, so that the last interpreter can
// empty them.
class Container {
public:
    Container();
    virtual ~Container();
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;
    static void empty_all();

protected:
    // Drops the content in a loop: a deep nest must not end in a deep recursion.
    static void drop_later(std::vector<Value>& content);
    // Moves the container's values to the end of `content`.
    virtual void surrender(std::vector<Value>& content) = 0;

private:
    Container* previous_;
    Container* next_;
};

struct ArrayObject : Container {
    ~ArrayObject() override { drop_later(items); }
    void surrender(std::vector<Value>& content) override;

    std::vector<Value> items;
};

// A class of the host or of a built-in value. Classes are compared by identity: make each once.
struct HostClass {
    Text name;                              // as classOf prints it
    std::shared_ptr<const HostClass> super; // the answer of superClassOf; null: none
    // For `Class arg key:v`; null: cannot be called.
    std::shared_ptr<const NativeFunction> constructor;
};

using ClassPointer = std::shared_ptr<const HostClass>;

ClassPointer make_class(const Text& name, const ClassPointer& super = nullptr);

using NativeCode = std::function<Value(Arguments& arguments)>;

constexpr int kAnyCount = -1;

struct NativeFunction {
    Text name;                  // as it is printed in errors
    int fewest = 0;             // positional arguments
    int most = 0;               // kAnyCount: no limit
    std::vector<Text> keywords; // folded; any other keyword is an error. A single u"*" takes all
    NativeCode code;
};

// An object of the host: a node, a renderer, an asset, the interface `callbacks`. Property and method names
// are folded. A function returns false for a name that it does not know; the interpreter raises the error.
class HostObject {
public:
    HostObject() = default;
    virtual ~HostObject() = default;
    HostObject(const HostObject&) = delete;
    HostObject& operator=(const HostObject&) = delete;

    virtual ClassPointer host_class() const = 0;
    // A property that cannot be read throws through Interpreter::fail.
    virtual bool get_property(const Text&, Value&) { return false; }
    virtual bool set_property(const Text&, const Value&) { return false; }
    virtual bool has_property(const Text&) const { return false; }
    // `object.name args`. Tried before get_property, which may give a function value as well.
    virtual bool call_method(const Text&, Arguments&, Value&) { return false; }
    // For `for x in object` and `object.count`: false when it is no collection.
    virtual bool elements(std::vector<Value>&) const { return false; }
    // As print and `as string` show it.
    virtual Text text() const { return host_class()->name; }
};

struct InstanceObject : Container {
    ~InstanceObject() override { drop_later(members); }
    void surrender(std::vector<Value>& content) override;

    std::shared_ptr<StructDefinition> definition;
    std::vector<Value> members; // data only
};

// ASCII, Latin, Greek and Cyrillic letters; every other unit stays.
char16_t lower_unit(char16_t unit);
Text folded(Text text);
bool equal_folded(const Text& one, const Text& other);

// Units that cannot be converted become U+FFFD.
Text text_from_utf8(const std::string& bytes);
std::string utf8_from_text(const Text& text);
Text text_from_wide(const std::wstring& wide);
std::wstring wide_from_text(const Text& text);
Text text_from_number(std::int64_t number);

} // namespace maxscript
