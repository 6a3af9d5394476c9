// The set `cameras`: camera nodes of several classes, and the nodes they look at.
#include "standin/maxscript_host/scene_library.h"

namespace maxscript_host {

namespace {

using maxscript::HostClass;
using maxscript::HostObject;
using maxscript::Interpreter;
using maxscript::Text;
using maxscript::Value;

using ClassPointer = std::shared_ptr<const HostClass>;

const char16_t* const kCameraClasses[] = {u"Freecamera",         u"Targetcamera",   u"Physical",
                                          u"VRayPhysicalCamera", u"VRayDomeCamera", u"CoronaCam"};
constexpr const char16_t* kTargetClass = u"Targetobject";

struct NodeClasses {
    ClassPointer camera;
    ClassPointer target;
    std::map<Text, ClassPointer> by_name; // folded
};

ClassPointer make_class(const Text& name, const ClassPointer& super) {
    auto made = std::make_shared<HostClass>();
    made->name = name;
    made->super = super;
    return made;
}

class Node : public HostObject {
public:
    Node(Interpreter& interpreter, SceneHost& host, ClassPointer of_class, std::wstring name)
        : interpreter_(interpreter), host_(host), class_(std::move(of_class)), name_(std::move(name)) {}

    ClassPointer host_class() const override { return class_; }
    bool has_property(const Text& name) const override { return name == u"name"; }
    bool get_property(const Text& name, Value& value) override {
        if (name != u"name") {
            return false;
        }
        answer_or_fail(interpreter_, host_, maxscript::text_from_wide(name_) + u".name");
        value = Value::string(maxscript::text_from_wide(name_));
        return true;
    }
    bool set_property(const Text& name, const Value&) override {
        host_.changes.push_back(maxscript::text_from_wide(name_) + u"." + name);
        return name == u"name";
    }
    Text text() const override { return u"$" + maxscript::text_from_wide(name_); }

private:
    Interpreter& interpreter_;
    SceneHost& host_;
    ClassPointer class_;
    std::wstring name_;
};

class CameraSet : public HostObject {
public:
    CameraSet(Interpreter& interpreter, SceneHost& host, NodeClasses classes)
        : interpreter_(interpreter), host_(host), classes_(std::move(classes)),
          class_(make_class(u"ObjectSet", nullptr)) {}

    ClassPointer host_class() const override { return class_; }
    Text text() const override { return u"$cameras"; }
    bool elements(std::vector<Value>& items) const override {
        answer_or_fail(interpreter_, host_, u"cameras");
        const SceneModel& model = host_.model;
        for (std::size_t i = 0; i < model.cameras.size(); ++i) {
            items.push_back(node(camera_class(i), model.cameras[i]));
        }
        for (const std::wstring& name : model.camera_targets) {
            items.push_back(node(classes_.target, name));
        }
        return true;
    }

private:
    Value node(const ClassPointer& of_class, const std::wstring& name) const {
        return Value::object(std::make_shared<Node>(interpreter_, host_, of_class, name));
    }
    ClassPointer camera_class(std::size_t index) const {
        const SceneModel& model = host_.model;
        const Text wanted = index < model.camera_classes.size()
                                ? maxscript::text_from_wide(model.camera_classes[index])
                                : Text(kCameraClasses[0]);
        const auto found = classes_.by_name.find(maxscript::folded(wanted));
        // A class of a plug-in that the host does not name.
        return found != classes_.by_name.end() ? found->second : make_class(wanted, classes_.camera);
    }

    Interpreter& interpreter_;
    SceneHost& host_;
    NodeClasses classes_;
    ClassPointer class_;
};

} // namespace

void install_cameras(Interpreter& interpreter, SceneHost& host) {
    NodeClasses classes;
    classes.camera = make_class(u"camera", nullptr);
    const ClassPointer geometry = make_class(u"GeometryClass", nullptr);
    classes.target = make_class(kTargetClass, geometry);
    interpreter.globals().add_constant(u"camera", Value::of_class(classes.camera));
    interpreter.globals().add_constant(u"GeometryClass", Value::of_class(geometry));
    interpreter.globals().add_constant(kTargetClass, Value::of_class(classes.target));
    for (const char16_t* const name : kCameraClasses) {
        const ClassPointer made = make_class(name, classes.camera);
        classes.by_name[maxscript::folded(name)] = made;
        interpreter.globals().add_constant(name, Value::of_class(made));
    }
    interpreter.globals().add_constant(
        u"cameras", Value::object(std::make_shared<CameraSet>(interpreter, host, classes)));
}

} // namespace maxscript_host
