// The scene's path, the host's version and the render settings.
#include "standin/max_file/scene_text.h"
#include "standin/maxscript_host/scene_library.h"

namespace maxscript_host {

namespace {

using maxscript::Arguments;
using maxscript::HostInterface;
using maxscript::Interpreter;
using maxscript::NativeFunction;
using maxscript::Text;
using maxscript::Value;

constexpr std::int32_t kTicksPerFrame = 160; // 30 frames a second

Value frame(std::int32_t number) {
    return Value::time(number * kTicksPerFrame);
}

Value text(const std::wstring& wide) {
    return Value::string(maxscript::text_from_wide(wide));
}

Value real(double number) {
    return Value::real(static_cast<float>(number));
}

class Settings {
public:
    Settings(Interpreter& interpreter, SceneHost& host) : interpreter_(interpreter), host_(host) {}

    // A setting of the scene. That a script sets it is noted; the model stays, as no script here may do so.
    void add(const Text& name, std::function<Value(const SceneModel&)> read) {
        Interpreter& interpreter = interpreter_;
        SceneHost& host = host_;
        interpreter_.globals().add_variable(
            name,
            [&interpreter, &host, name, read] {
                answer_or_fail(interpreter, host, name);
                return read(host.model);
            },
            [&host, name](const Value&) { host.changes.push_back(name); });
    }

    void add_function(const Text& name, int fewest, int most, const std::vector<Text>& keywords,
                      std::function<Value(Arguments&)> answer) {
        SceneHost& host = host_;
        NativeFunction function;
        function.name = name;
        function.fewest = fewest;
        function.most = most;
        function.keywords = keywords;
        function.code = [&host, name, answer](Arguments& arguments) {
            answer_or_fail(arguments.interpreter(), host, name);
            return answer(arguments);
        };
        interpreter_.globals().add_function(function);
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
                 [](const SceneModel& model) { return text(model.render.picked_frames); });
}

void install_picture(Settings& settings) {
    settings.add(u"renderWidth", [](const SceneModel& model) { return Value::integer(model.width); });
    settings.add(u"renderHeight", [](const SceneModel& model) { return Value::integer(model.height); });
    settings.add(u"rendOutputFilename",
                 [](const SceneModel& model) { return text(model.render.output_file); });
    settings.add(u"fileOutGamma", [](const SceneModel& model) { return real(model.render.gamma_out); });
}

} // namespace

void install_scene_settings(Interpreter& interpreter, SceneHost& host) {
    Settings settings(interpreter, host);
    settings.add(u"maxFilePath",
                 [](const SceneModel& model) { return text(max_file::folder_of(model.path)); });
    settings.add(u"maxFileName",
                 [](const SceneModel& model) { return text(max_file::file_name_of(model.path)); });
    install_frames(settings);
    install_picture(settings);
    settings.add_function(u"maxVersion", 0, 0, {}, [&host](Arguments&) {
        const std::int32_t major = host.release / 1000;
        return Value::array({Value::integer(host.release), Value::integer(major + 33), Value::integer(0),
                             Value::integer(major), Value::integer(host.release % 1000 / 100),
                             Value::integer(0), Value::integer(0)});
    });
    settings.add_function(u"getRenderType", 0, 0, {}, [&host](Arguments&) {
        return Value::name(maxscript::text_from_wide(host.model.render.kind));
    });
    settings.add_function(u"timeStamp", 0, 0, {}, [&host](Arguments&) {
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
}

} // namespace maxscript_host
