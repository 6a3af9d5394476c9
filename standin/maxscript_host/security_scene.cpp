// saveMaxFile, setSaveRequired and clearUndoBuffer, and the part of a saved scene that a virus can hide in.
#include "standin/maxscript_host/security_scene.h"

namespace maxscript_host {

namespace {

using maxscript::Arguments;

Value save_max_file(Arguments& arguments, SecurityScene& scene) {
    const Text& path = arguments.text(0);
    const bool saved = scene.save && scene.save(path);
    if (saved && arguments.keyword_boolean(u"clearneedsaveflag", true)) {
        scene.save_required = false;
    }
    // The journal shows a new name and a question to the user: a check may do neither.
    const bool keeps_name = !arguments.keyword_boolean(u"usenewfile", true);
    const bool quiet = arguments.keyword_boolean(u"quiet", false);
    scene.journal.push_back(u"saveMaxFile " + path + (keeps_name ? u"" : u" new name") +
                            (quiet ? u"" : u" asks"));
    return Value::boolean(saved);
}

} // namespace

Text SecurityScene::saved_content(Interpreter& interpreter) const {
    Text content;
    for (const SceneCallback& callback : callbacks) {
        content += callback.persistent ? u"callback " + callback.id + u"\n" : Text();
    }
    for (const Text& name : interpreter.globals().persistent_names()) {
        content += u"global " + name + u"\n";
    }
    for (const std::shared_ptr<SceneNode>& node : nodes) {
        content += u"node " + node->name + u"\n";
    }
    return content;
}

void install_security(Interpreter& interpreter, SecurityScene& scene) {
    install_callbacks(interpreter, scene);
    install_global_pools(interpreter, scene);
    install_nodes(interpreter, scene);
    install_file_functions(interpreter, scene);
    maxscript::Globals& globals = interpreter.globals();
    globals.add_function(u"saveMaxFile", 1, 1, {u"clearNeedSaveFlag", u"useNewFile", u"quiet"},
                         [&scene](Arguments& a) { return save_max_file(a, scene); });
    globals.add_function(u"setSaveRequired", 1, 1, {}, [&scene](Arguments& a) {
        scene.save_required = a.boolean(0);
        return Value::ok();
    });
    globals.add_function(u"clearUndoBuffer", 0, 0, {}, [&scene](Arguments&) {
        scene.undo_list.clear();
        return Value::ok();
    });
}

} // namespace maxscript_host
