// Nodes with what a virus needs of them: a class, a name, a scale that a script may drive. Like the host's
// own commands, `delete` leaves hidden and frozen nodes alone. It refuses to work outside an undo step, where
// the host would crash later, when a node vanished behind the back of its undo list.
#include "standin/maxscript_host/security_scene.h"

namespace maxscript_host {

namespace {

using maxscript::Arguments;
using maxscript::HostClass;
using maxscript::HostObject;
using maxscript::Kind;
using maxscript::NativeFunction;
using ClassPointer = std::shared_ptr<const HostClass>;

struct Classes {
    std::map<Text, ClassPointer> by_name; // folded
    ClassPointer scale_script;
    ClassPointer plain_scale;
    ClassPointer object_set;
};

// The scene's other part may have made the class already.
ClassPointer make_class(Interpreter& interpreter, const Text& name, const ClassPointer& super) {
    Value known;
    if (interpreter.globals().get(name, known) && known.is(Kind::host_class)) {
        return known.pointer<const HostClass>();
    }
    auto made = std::make_shared<HostClass>();
    made->name = name;
    made->super = super;
    interpreter.globals().add_constant(name, Value::of_class(made));
    return made;
}

Classes make_classes(Interpreter& interpreter) {
    Classes classes;
    const ClassPointer helper = make_class(interpreter, u"helper", nullptr);
    const ClassPointer geometry = make_class(interpreter, u"GeometryClass", nullptr);
    const ClassPointer scale = make_class(interpreter, u"ScaleController", nullptr);
    classes.by_name[u"point"] = make_class(interpreter, u"Point", helper);
    classes.by_name[u"dummy"] = make_class(interpreter, u"Dummy", helper);
    classes.by_name[u"box"] = make_class(interpreter, u"Box", geometry);
    classes.scale_script = make_class(interpreter, u"scale_script", scale);
    classes.plain_scale = make_class(interpreter, u"bezier_scale", scale);
    classes.object_set = make_class(interpreter, u"ObjectSet", nullptr);
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
    for (std::size_t i = 0; i < scene.nodes.size(); ++i) {
        if (scene.nodes[i] == node) {
            scene.nodes.erase(scene.nodes.begin() + static_cast<std::ptrdiff_t>(i));
            break;
        }
    }
    scene.journal.push_back(u"delete " + node->name);
    return Value::ok();
}

Value is_valid_node(Arguments& arguments) {
    const std::shared_ptr<NodeObject> object = arguments[0].object_as<NodeObject>();
    return Value::boolean(object && !object->node()->deleted);
}

void add_function(Interpreter& interpreter, const Text& name, maxscript::NativeCode code) {
    NativeFunction function;
    function.name = name;
    function.fewest = 1;
    function.most = 1;
    function.code = std::move(code);
    interpreter.globals().add_function(function);
}

} // namespace

std::vector<Text> SecurityScene::node_names() const {
    std::vector<Text> names;
    for (const std::shared_ptr<SceneNode>& node : nodes) {
        names.push_back(node->name);
    }
    return names;
}

void install_nodes(Interpreter& interpreter, SecurityScene& scene) {
    const auto classes = std::make_shared<Classes>(make_classes(interpreter));
    interpreter.globals().add_constant(u"objects",
                                       Value::object(std::make_shared<NodeSet>(interpreter, scene, classes)));
    add_function(interpreter, u"delete", [&scene](Arguments& a) { return delete_node(a, scene); });
    add_function(interpreter, u"isValidNode", is_valid_node);
}

void install_security(Interpreter& interpreter, SecurityScene& scene) {
    install_callbacks(interpreter, scene);
    install_global_pools(interpreter, scene);
    install_nodes(interpreter, scene);
    install_startup_folders(interpreter, scene);
    install_binary_streams(interpreter);
    install_saving(interpreter, scene);
    install_ini_settings(interpreter);
}

} // namespace maxscript_host
