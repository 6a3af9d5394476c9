// What a script may ask of the scene as a whole: whether it has to be saved, which scenes it refers to.
#include "standin/maxscript_host/scene_library.h"

namespace maxscript_host {

namespace {

using max_file::ReferencedFile;
using maxscript::Arguments;
using maxscript::HostClass;
using maxscript::HostInterface;
using maxscript::HostObject;
using maxscript::NativeFunction;
using maxscript::Value;

class ReferencedScene : public HostObject {
public:
    explicit ReferencedScene(Text file_name) : file_name_(std::move(file_name)) {}

    std::shared_ptr<const HostClass> host_class() const override {
        static const auto made = [] {
            auto scene = std::make_shared<HostClass>();
            scene->name = u"XRefScene";
            return scene;
        }();
        return made;
    }
    bool has_property(const Text& name) const override { return name == u"filename"; }
    bool get_property(const Text& name, Value& value) override {
        value = Value::string(file_name_);
        return has_property(name);
    }

private:
    Text file_name_;
};

std::vector<Text> referenced_scenes(const SceneHost& host) {
    std::vector<Text> scenes;
    for (const ReferencedFile& file : host.model.references) {
        if (file.kind == L"XRef") {
            scenes.push_back(maxscript::text_from_wide(file.named));
        }
    }
    return scenes;
}

Value referenced_scene(Arguments& arguments, const SceneHost& host) {
    const std::vector<Text> scenes = referenced_scenes(host);
    const std::int32_t index = arguments.integer(0);
    if (index < 1 || static_cast<std::size_t>(index) > scenes.size()) {
        arguments.fail(u"-- Runtime error: no such XRef scene");
    }
    return Value::object(std::make_shared<ReferencedScene>(scenes[static_cast<std::size_t>(index) - 1]));
}

} // namespace

void install_scene_state(Interpreter& interpreter, SceneHost& host) {
    NativeFunction save_required;
    save_required.name = u"getSaveRequired";
    save_required.code = [&host](Arguments&) { return Value::boolean(!host.changes.empty()); };
    interpreter.globals().add_function(save_required);

    auto xrefs = std::make_shared<HostInterface>(u"xrefs");
    xrefs->add(u"getXRefFileCount", 0, 0, {}, [&host](Arguments&) {
        return Value::integer(static_cast<std::int32_t>(referenced_scenes(host).size()));
    });
    xrefs->add(u"getXRefFile", 1, 1, {u"root"},
               [&host](Arguments& arguments) { return referenced_scene(arguments, host); });
    interpreter.globals().add_constant(u"xrefs", Value::object(xrefs));
}

} // namespace maxscript_host
