// Nodes with the parts that a virus uses: a class, a name, a scale that a script may drive. Like the host's
// own commands, `delete` skips hidden and frozen nodes. It fails outside an undo step: the host would crash
// later, when its undo list names a node that is gone.
#include "standin/maxscript_host/scene_library.h"
#include "standin/maxscript_host/security_scene.h"

#include <algorithm>

namespace maxscript_host {

namespace {

using maxscript::Arguments;
using maxscript::ClassPointer;
using maxscript::HostObject;
using maxscript::Kind;

struct Classes {
    std::map<Text, ClassPointer> by_name; // folded
    ClassPointer scale_script;
    ClassPointer plain_scale;
    ClassPointer object_set;
};

Classes make_classes(Interpreter& interpreter) {
    Classes classes;
    const ClassPointer helper = host_class(interpreter, u"helper");
    const ClassPointer scale = host_class(interpreter, u"ScaleController");
    classes.by_name[u"point"] = host_class(interpreter, u"Point", helper);
    classes.by_name[u"dummy"] = host_class(interpreter, u"Dummy", helper);
    classes.by_name[u"box"] = host_class(interpreter, u"Box", host_class(interpreter, u"GeometryClass"));
    classes.scale_script = host_class(interpreter, u"scale_script", scale);
    classes.plain_scale = host_class(interpreter, u"bezier_scale", scale);
    classes.object_set = host_class(interpreter, u"ObjectSet");
    return classes;
}

// The controller of a node's scale.
class ScaleDriver : public HostObject {
public:
    ScaleDriver(ClassPointer of_class, std::shared_ptr<SceneNode> node)
        : class_(std::move(of_class)), node_(std::move(node)) {}
    ClassPointer host_class() const override { return class_; }
    bool has_property(const Text& name) const override { return name == u"script" && node_->has_script; }
    bool get_property(const Text& name, Value& value) override {
        if (!has_property(name)) {
            return false;
        }
        value = Value::string(node_->script);
        return true;
    }

private:
    ClassPointer class_;
    std::shared_ptr<SceneNode> node_;
};

// `node.scale`: a value that knows its controller.
class Scale : public HostObject {
public:
    Scale(ClassPointer of_class, Value driver) : class_(std::move(of_class)), driver_(std::move(driver)) {}
    ClassPointer host_class() const override { return class_; }
    bool has_property(const Text& name) const override { return name == u"controller"; }
    bool get_property(const Text& name, Value& value) override {
        value = driver_;
        return has_property(name);
    }

private:
    ClassPointer class_;
    Value driver_;
};

class NodeObject : public HostObject {
public:
    NodeObject(Interpreter& interpreter, SecurityScene& scene, std::shared_ptr<Classes> classes,
               std::shared_ptr<SceneNode> node)
        : interpreter_(interpreter), scene_(scene), classes_(std::move(classes)), node_(std::move(node)) {}

    const std::shared_ptr<SceneNode>& node() const { return node_; }
    ClassPointer host_class() const override {
        const auto found = classes_->by_name.find(maxscript::folded(node_->type));
        return found == classes_->by_name.end() ? classes_->by_name.at(u"dummy") : found->second;
    }
    bool has_property(const Text& name) const override {
        return name == u"name" || name == u"ishidden" || name == u"isfrozen" || name == u"scale";
    }
    bool get_property(const Text& name, Value& value) override {
        refuse_deleted();
        if (name == u"name") {
            value = Value::string(node_->name);
        } else if (name == u"scale") {
            ++scene_.scale_reads;
            const ClassPointer& of_class = node_->has_script ? classes_->scale_script : classes_->plain_scale;
            value = Value::object(std::make_shared<Scale>(
                of_class, Value::object(std::make_shared<ScaleDriver>(of_class, node_))));
        } else {
            value = Value::boolean(name == u"ishidden" ? node_->hidden : node_->frozen);
        }
        return has_property(name);
    }
    bool set_property(const Text& name, const Value& value) override {
        refuse_deleted();
        if (name == u"name" && value.is(Kind::string)) {
            node_->name = value.as_string().text;
        } else if (name == u"ishidden" && value.is(Kind::boolean)) {
            node_->hidden = value.as_boolean();
        } else if (name == u"isfrozen" && value.is(Kind::boolean)) {
            node_->frozen = value.as_boolean();
        } else {
            return false;
        }
        return true;
    }
    Text text() const override { return node_->deleted ? u"<Deleted scene node>" : u"$" + node_->name; }

private:
    void refuse_deleted() const {
        if (node_->deleted) {
            interpreter_.fail(u"Attempt to access deleted scene object");
        }
    }

    Interpreter& interpreter_;
    SecurityScene& scene_;
    std::shared_ptr<Classes> classes_;
    std::shared_ptr<SceneNode> node_;
};

class NodeSet : public HostObject {
public:
    NodeSet(Interpreter& interpreter, SecurityScene& scene, std::shared_ptr<Classes> classes)
        : interpreter_(interpreter), scene_(scene), classes_(std::move(classes)) {}
    ClassPointer host_class() const override { return classes_->object_set; }
    Text text() const override { return u"$objects"; }
    bool elements(std::vector<Value>& items) const override {
        for (const std::shared_ptr<SceneNode>& node : scene_.nodes) {
            items.push_back(
                Value::object(std::make_shared<NodeObject>(interpreter_, scene_, classes_, node)));
        }
        return true;
    }

private:
    Interpreter& interpreter_;
    SecurityScene& scene_;
    std::shared_ptr<Classes> classes_;
};

Value delete_node(Arguments& arguments, SecurityScene& scene) {
    const std::shared_ptr<NodeObject> object = arguments[0].object_as<NodeObject>();
    if (!object || object->node()->deleted) {
        arguments.fail(u"delete takes a node of the scene");
    }
    if (!arguments.interpreter().undo_is_on()) {
        arguments.fail(u"delete stands outside an undo step");
    }
    const std::shared_ptr<SceneNode> node = object->node();
    if (node->stuck || node->hidden || node->frozen) {
        return Value::ok();
    }
    node->deleted = true;
    scene.undo_list.push_back(node);
    scene.nodes.erase(std::find(scene.nodes.begin(), scene.nodes.end(), node));
    scene.journal.push_back(u"delete " + node->name);
    return Value::ok();
}

Value is_valid_node(Arguments& arguments) {
    const std::shared_ptr<NodeObject> object = arguments[0].object_as<NodeObject>();
    return Value::boolean(object && !object->node()->deleted);
}

} // namespace

void install_nodes(Interpreter& interpreter, SecurityScene& scene) {
    const auto classes = std::make_shared<Classes>(make_classes(interpreter));
    interpreter.globals().add_constant(u"objects",
                                       Value::object(std::make_shared<NodeSet>(interpreter, scene, classes)));
    interpreter.globals().add_function(u"delete", 1, 1, {},
                                       [&scene](Arguments& a) { return delete_node(a, scene); });
    interpreter.globals().add_function(u"isValidNode", 1, 1, {}, is_valid_node);
}

} // namespace maxscript_host
