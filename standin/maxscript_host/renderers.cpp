// `renderers`: the production renderer as an object with the settings of its build.
#include "standin/maxscript_host/scene_library.h"

#include <algorithm>

namespace maxscript_host {

namespace {

using max_file::RendererSettings;
using maxscript::HostInterface;

constexpr const wchar_t* kUsualRenderer = L"Default Scanline Renderer";
constexpr const char16_t* kNestedSettings = u"V_Ray_settings";

// As the host makes class names: every ASCII character but letters and digits becomes an underscore.
Text class_name_of(const SceneModel& model) {
    std::wstring name = model.render.renderer.class_name;
    if (name.empty()) {
        name = model.renderer.empty() ? kUsualRenderer : model.renderer;
    }
    Text text = maxscript::text_from_wide(name);
    std::replace_if(
        text.begin(), text.end(),
        [](char16_t unit) {
            const bool is_digit = unit >= u'0' && unit <= u'9';
            const bool is_letter = (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
            return unit < 0x80 && !is_digit && !is_letter;
        },
        u'_');
    return text;
}

Value value_of(const Json::Value& setting) {
    if (setting.isBool()) {
        return Value::boolean(setting.asBool());
    }
    if (setting.type() == Json::intValue || setting.type() == Json::uintValue) {
        return Value::integer(setting.asInt());
    }
    if (setting.isDouble()) {
        return Value::real(static_cast<float>(setting.asDouble()));
    }
    return setting.isString() ? Value::string(maxscript::text_from_utf8(setting.asString()))
                              : Value::undefined();
}

// Properties by name: the settings of a renderer, or the renderer that holds them.
class Properties : public maxscript::HostObject {
public:
    Properties(Interpreter& interpreter, SceneHost& host, const Text& class_name)
        : interpreter_(interpreter), host_(host), class_(maxscript::make_class(class_name)) {}

    void add(const Text& name, const Value& value) { values_[maxscript::folded(name)] = value; }

    maxscript::ClassPointer host_class() const override { return class_; }
    bool has_property(const Text& name) const override { return values_.count(name) != 0; }
    bool get_property(const Text& name, Value& value) override {
        const auto found = values_.find(name);
        if (found == values_.end()) {
            return false;
        }
        answer_or_fail(interpreter_, host_, name);
        value = found->second;
        return true;
    }
    bool set_property(const Text& name, const Value&) override {
        host_.changes.push_back(class_->name + u"." + name);
        return values_.count(name) != 0;
    }

private:
    Interpreter& interpreter_;
    SceneHost& host_;
    maxscript::ClassPointer class_;
    std::map<Text, Value> values_;
};

Value renderer(Interpreter& interpreter, SceneHost& host) {
    const RendererSettings& settings = host.model.render.renderer;
    const auto outer = std::make_shared<Properties>(interpreter, host, class_name_of(host.model));
    auto holder = outer;
    if (settings.nested) {
        holder = std::make_shared<Properties>(interpreter, host, kNestedSettings);
        outer->add(kNestedSettings, Value::object(holder));
    }
    for (const std::string& name : settings.properties.getMemberNames()) {
        holder->add(maxscript::text_from_utf8(name), value_of(settings.properties[name]));
    }
    return Value::object(outer);
}

} // namespace

void install_renderers(Interpreter& interpreter, SceneHost& host) {
    auto renderers = std::make_shared<HostInterface>(u"renderers");
    for (const char16_t* const slot : {u"production", u"current"}) {
        const Text query = Text(u"renderers.") + slot;
        renderers->add_property(
            slot,
            [&interpreter, &host, query] {
                answer_or_fail(interpreter, host, query);
                return renderer(interpreter, host);
            },
            [&host, query](const Value&) { host.changes.push_back(query); });
    }
    interpreter.globals().add_constant(u"renderers", Value::object(renderers));
}

} // namespace maxscript_host
