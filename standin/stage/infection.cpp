#include "standin/stage/infection.h"

#include "standin/base/files_win32.h"
#include "standin/base/text.h"
#include "standin/host_sdk/control.h"

#include <algorithm>

namespace stage {

namespace {

using maxscript::Text;
using maxscript_host::SceneCallback;
using maxscript_host::SceneNode;

Text text_of(const Json::Value& value) {
    return maxscript::text_from_utf8(value.asString());
}

SceneCallback callback_from(const Json::Value& wanted) {
    SceneCallback callback;
    callback.event = text_of(wanted["event"]);
    callback.id = text_of(wanted["id"]);
    callback.script = text_of(wanted.get("script", ""));
    callback.persistent = wanted.get("persistent", true).asBool();
    return callback;
}

std::shared_ptr<SceneNode> node_from(const Json::Value& wanted) {
    auto node = std::make_shared<SceneNode>();
    node->name = text_of(wanted["name"]);
    node->type = text_of(wanted.get("class", "Point"));
    node->hidden = wanted.get("hidden", false).asBool();
    node->frozen = wanted.get("frozen", false).asBool();
    node->script = text_of(wanted.get("scale_script", ""));
    // A long payload need not be in the scenario.
    const std::size_t length = wanted.get("script_length", 0).asUInt();
    node->script.resize(std::max(node->script.size(), length), u' ');
    node->has_script = !node->script.empty();
    return node;
}

const std::string kInfectionMark = "\nTEXT OF THE STAGE: WHAT THE SCENE KEEPS\n";

} // namespace

std::string infection_in(const std::string& bytes) {
    const std::size_t mark = bytes.rfind(kInfectionMark);
    return mark == std::string::npos ? std::string() : bytes.substr(mark + kInfectionMark.size());
}

bool write_files(const Json::Value& files, const std::wstring& folder) {
    for (const std::string& name : files.getMemberNames()) {
        const std::wstring file = base::joined(folder, base::to_wide(name));
        if (!base::write_file_and_folders(file, files[name].asString())) {
            return false;
        }
    }
    return true;
}

void Infection::install(maxscript::Interpreter& interpreter) {
    scene_ = maxscript_host::SecurityScene();
    scene_.save = [this, &interpreter](const Text& path) {
        const std::wstring wide = maxscript::wide_from_text(path);
        const bool saved = save(interpreter, wide);
        if (saved) {
            host_sdk::set_scene(host_sdk::scene_path(), false);
        }
        return saved;
    };
    maxscript_host::install_security(interpreter, scene_);
}

void Infection::open(maxscript::Interpreter& interpreter, const Json::Value& wanted,
                     const std::wstring& startup, const std::wstring& scene) {
    std::vector<SceneCallback>& callbacks = scene_.callbacks;
    callbacks.erase(std::remove_if(callbacks.begin(), callbacks.end(),
                                   [](const SceneCallback& callback) { return callback.persistent; }),
                    callbacks.end());
    scene_.nodes.clear();
    for (const Text& name : interpreter.globals().persistent_names()) {
        interpreter.globals().remove(name);
    }
    for (const Json::Value& callback : wanted["callbacks"]) {
        callbacks.push_back(callback_from(callback));
    }
    for (const std::string& name : wanted["globals"].getMemberNames()) {
        maxscript_host::restore_persistent_global(interpreter, maxscript::text_from_utf8(name),
                                                  maxscript::Value::string(text_of(wanted["globals"][name])));
    }
    for (const Json::Value& node : wanted["helpers"]) {
        scene_.nodes.push_back(node_from(node));
    }
    const auto folder = [&startup](const wchar_t* name) {
        return startup.empty() ? Text() : maxscript::text_from_wide(base::joined(startup, name));
    };
    scene_.system_startup = folder(L"system");
    scene_.user_startup = folder(L"user");
    scene_.plugin_settings = folder(L"plugcfg");
    if (!wanted.isNull()) {
        save(interpreter, scene);
    }
}

// Overwrites the scene's file; changes only what scripts can change.
bool Infection::save(maxscript::Interpreter& interpreter, const std::wstring& path) const {
    std::string bytes;
    if (path.empty() || !base::read_file(path, bytes)) {
        return false;
    }
    bytes = bytes.substr(0, bytes.rfind(kInfectionMark));
    return base::write_file(path, bytes + kInfectionMark +
                                      maxscript::utf8_from_text(scene_.saved_content(interpreter)));
}

} // namespace stage
