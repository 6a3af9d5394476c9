// The scene's path and XRef scenes, the host's version and the render settings.
#include "standin/max_file/scene_text.h"
#include "standin/maxscript_host/scene_library.h"

namespace maxscript_host {

namespace {

using maxscript::Arguments;
using maxscript::HostInterface;

Value frame(std::int32_t number) {
    return Value::time(number * maxscript::kTicksPerFrame);
}

Value text_value(const std::wstring& wide) {
    return Value::string(maxscript::text_from_wide(wide));
}

class Settings {
public:
    Settings(Interpreter& interpreter, SceneHost& host) : interpreter_(interpreter), host_(host) {}

    // Setting it is recorded; the model stays as it is, because no script here may set it.
    void add(const Text& name, std::function<Value(const SceneModel&)> read) {
        interpreter_.globals().add_variable(
            name,
            [&interpreter = interpreter_, &host = host_, name, read] {
                answer_or_fail(interpreter, host, name);
                return read(host.model);
            },
            [&host = host_, name](const Value&) { host.changes.push_back(name); });
    }

    void add_function(const Text& name, maxscript::NativeCode answer) {
        interpreter_.globals().add_function(name, 0, 0, {}, fallible(host_, name, std::move(answer)));
    }

private:
    Interpreter& interpreter_;
    SceneHost& host_;
};

Value interval(std::int32_t start, std::int32_t end) {
    auto object = std::make_shared<HostInterface>(u"interval");
    object->add_value(u"start", frame(start));
    object->add_value(u"end", frame(end));
    return Value::object(object);
}

void install_frames(Settings& settings) {
    settings.add(u"rendTimeType", [](const SceneModel& model) {
        return Value::integer(static_cast<std::int32_t>(model.render.frames));
    });
    settings.add(u"animationRange",
                 [](const SceneModel& model) { return interval(model.start_frame, model.end_frame); });
    settings.add(u"currentTime", [](const SceneModel& model) { return frame(model.render.current_frame); });
    settings.add(u"rendStart", [](const SceneModel& model) { return frame(model.render.range_start); });
    settings.add(u"rendEnd", [](const SceneModel& model) { return frame(model.render.range_end); });
    settings.add(u"rendPickupFrames",
                 [](const SceneModel& model) { return text_value(model.render.picked_frames); });
}

void install_picture(Settings& settings) {
    settings.add(u"renderWidth", [](const SceneModel& model) { return Value::integer(model.width); });
    settings.add(u"renderHeight", [](const SceneModel& model) { return Value::integer(model.height); });
    settings.add(u"rendOutputFilename",
                 [](const SceneModel& model) { return text_value(model.render.output_file); });
    settings.add(u"fileOutGamma", [](const SceneModel& model) {
        return Value::real(static_cast<float>(model.render.gamma_out));
    });
}

class ReferencedScene : public maxscript::HostObject {
public:
    explicit ReferencedScene(std::wstring file_name) : file_name_(std::move(file_name)) {}

    maxscript::ClassPointer host_class() const override {
        static const maxscript::ClassPointer made = maxscript::make_class(u"XRefScene");
        return made;
    }
    bool has_property(const Text& name) const override { return name == u"filename"; }
    bool get_property(const Text& name, Value& value) override {
        value = text_value(file_name_);
        return has_property(name);
    }

private:
    std::wstring file_name_;
};

std::vector<std::wstring> referenced_scenes(const SceneHost& host) {
    std::vector<std::wstring> scenes;
    for (const max_file::ReferencedFile& file : host.model.references) {
        if (file.kind == L"XRef") {
            scenes.push_back(file.named);
        }
    }
    return scenes;
}

void install_referenced_scenes(Interpreter& interpreter, SceneHost& host) {
    auto xrefs = std::make_shared<HostInterface>(u"xrefs");
    xrefs->add(u"getXRefFileCount", 0, 0, {}, [&host](Arguments&) {
        return Value::integer(static_cast<std::int32_t>(referenced_scenes(host).size()));
    });
    xrefs->add(u"getXRefFile", 1, 1, {}, [&host](Arguments& a) {
        const std::vector<std::wstring> scenes = referenced_scenes(host);
        return Value::object(
            std::make_shared<ReferencedScene>(scenes[index_argument(a, scenes.size(), u"XRef scene")]));
    });
    interpreter.globals().add_constant(u"xrefs", Value::object(xrefs));
}

} // namespace

void install_scene_settings(Interpreter& interpreter, SceneHost& host) {
    Settings settings(interpreter, host);
    settings.add(u"maxFilePath",
                 [](const SceneModel& model) { return text_value(max_file::folder_of(model.path)); });
    settings.add(u"maxFileName",
                 [](const SceneModel& model) { return text_value(max_file::file_name_of(model.path)); });
    install_frames(settings);
    install_picture(settings);
    settings.add_function(u"maxVersion", [&host](Arguments&) {
        const std::int32_t major = host.release / 1000;
        return Value::array({Value::integer(host.release), Value::integer(major + 33), Value::integer(0),
                             Value::integer(major), Value::integer(host.release % 1000 / 100),
                             Value::integer(0), Value::integer(0)});
    });
    settings.add_function(u"getRenderType", [&host](Arguments&) {
        return Value::name(maxscript::text_from_wide(host.model.render.kind));
    });
    settings.add_function(u"timeStamp", [&host](Arguments&) {
        return Value::integer(host.milliseconds += host.milliseconds_a_time);
    });
    auto gamma = std::make_shared<HostInterface>(u"IDisplayGamma");
    gamma->add_property(u"colorCorrectionMode", [&interpreter, &host] {
        answer_or_fail(interpreter, host, u"IDisplayGamma.colorCorrectionMode");
        return Value::name(maxscript::text_from_wide(host.model.render.gamma_mode));
    });
    interpreter.globals().add_constant(u"IDisplayGamma", Value::object(gamma));
    auto tools = std::make_shared<HostInterface>(u"systemTools");
    tools->add(u"getEnvVariable", 1, 1, {}, [&host](Arguments& arguments) {
        const auto found = host.environment_variables.find(arguments.text(0));
        return found == host.environment_variables.end() ? Value::undefined() : Value::string(found->second);
    });
    interpreter.globals().add_constant(u"systemTools", Value::object(tools));
    interpreter.globals().add_function(u"getSaveRequired", 0, 0, {},
                                       [&host](Arguments&) { return Value::boolean(!host.changes.empty()); });
    install_referenced_scenes(interpreter, host);
}

} // namespace maxscript_host
