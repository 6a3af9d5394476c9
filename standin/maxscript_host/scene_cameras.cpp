// The set `cameras`: camera nodes of several classes, and the nodes they look at.
#include "standin/maxscript_host/scene_library.h"

namespace maxscript_host {

namespace {

using maxscript::ClassPointer;
using maxscript::HostObject;

const char16_t* const kCameraClasses[] = {u"Freecamera",         u"Targetcamera",   u"Physical",
                                          u"VRayPhysicalCamera", u"VRayDomeCamera", u"CoronaCam"};

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
    CameraSet(Interpreter& interpreter, SceneHost& host, ClassPointer camera, ClassPointer target)
        : interpreter_(interpreter), host_(host), camera_(std::move(camera)), target_(std::move(target)),
          class_(maxscript::make_class(u"ObjectSet")) {}

    ClassPointer host_class() const override { return class_; }
    Text text() const override { return u"$cameras"; }
    bool elements(std::vector<Value>& items) const override {
        answer_or_fail(interpreter_, host_, u"cameras");
        const SceneModel& model = host_.model;
        for (std::size_t i = 0; i < model.cameras.size(); ++i) {
            items.push_back(node(camera_class(i), model.cameras[i]));
        }
        for (const std::wstring& name : model.camera_targets) {
            items.push_back(node(target_, name));
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
        Value known;
        // A plug-in's class is no global name of the host.
        return interpreter_.globals().get(wanted, known) && known.is(maxscript::Kind::host_class)
                   ? known.pointer<const maxscript::HostClass>()
                   : maxscript::make_class(wanted, camera_);
    }

    Interpreter& interpreter_;
    SceneHost& host_;
    ClassPointer camera_;
    ClassPointer target_;
    ClassPointer class_;
};

} // namespace

void install_cameras(Interpreter& interpreter, SceneHost& host) {
    const ClassPointer camera = host_class(interpreter, u"camera");
    const ClassPointer target =
        host_class(interpreter, u"Targetobject", host_class(interpreter, u"GeometryClass"));
    for (const char16_t* const name : kCameraClasses) {
        host_class(interpreter, name, camera);
    }
    interpreter.globals().add_constant(
        u"cameras", Value::object(std::make_shared<CameraSet>(interpreter, host, camera, target)));
}

} // namespace maxscript_host
