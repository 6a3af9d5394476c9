// One host with one of the three virus checks at a time: files in memory, a scene to infect, a listener that
// is read. The script is loaded as the module loads it.
#pragma once

#include "standin/maxscript_host/scene_library.h"
#include "standin/maxscript_host/security_scene.h"
#include "tests/support/memory_files.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

namespace support {

using maxscript::Text;
using maxscript::Value;
using Lines = std::vector<std::string>;

// The script's text as it is in the source tree.
inline std::string virus_script(const std::string& family) {
    return read_file(test_data_folder() + "/../../scripts/TarvoAntivirus" + family + "_UTF8.ms");
}

inline std::string utf8(const Text& text) {
    return maxscript::utf8_from_text(text);
}

class VirusBench : private maxscript::Listener {
public:
    // "Adsl", "Alc" or "Crp".
    explicit VirusBench(const std::string& family) : interpreter_(environment()) {
        scene.system_startup = u"C:\\Max\\scripts\\Startup";
        scene.user_startup = u"C:\\Users\\me\\Startup\\";
        scene.plugin_settings = u"C:\\Users\\me\\plugcfg\\";
        host.model.path = L"D:\\jobs\\Lobby.max";
        files.put(kScene, "the scene as it was");
        scene.save = [this](const Text& path) {
            return files.write(path, "saved\n" + utf8(scene.saved_content(interpreter_)));
        };
        maxscript_host::install_scene_library(interpreter_, host);
        maxscript_host::install_security(interpreter_, scene);
        load(family);
    }

    // Another check in the same session of the host.
    void load(const std::string& family) { files.put(kScript, virus_script(family)); }

    // Copies the scene's file as the module does before the checks.
    void back_up() { files.put(kCopy, content(kScene)); }
    std::string saved_scene() { return content(kScene); }

    // What the script wrote, without "Tarvo check …: "; a script that throws ends the test.
    Lines check() {
        written_.clear();
        interpreter_.run(u"fileIn \"" + Text(kScript) + u"\"", Text());
        Lines lines;
        std::size_t begin = 0;
        for (std::size_t end = written_.find('\n'); end != std::string::npos;
             end = written_.find('\n', begin)) {
            const std::string line = written_.substr(begin, end - begin);
            const std::size_t colon = line.find(": ");
            lines.push_back(line.compare(0, 12, "Tarvo check ") == 0 ? line.substr(colon + 2) : line);
            begin = end + 1;
        }
        return lines;
    }

    const std::string& written() const { return written_; }
    void run(const Text& source) { interpreter_.run(source, Text()); }
    void add_callback(const Text& id, bool persistent = true) {
        scene.callbacks.push_back({u"filePostOpen", id, u"messageBox \"x\"", persistent, false});
    }
    void add_global(const Text& name) {
        maxscript_host::restore_persistent_global(interpreter_, name, Value::string(u"payload"));
    }
    maxscript_host::SceneNode& add_node(const Text& name, const Text& type, const Text& script = Text()) {
        scene.nodes.push_back(std::make_shared<maxscript_host::SceneNode>());
        maxscript_host::SceneNode& node = *scene.nodes.back();
        node.name = name;
        node.type = type;
        node.has_script = !script.empty();
        node.script = script;
        return node;
    }
    bool has_global(const Text& name) { return interpreter_.globals().is_global(name); }
    bool is_persistent(const Text& name) { return interpreter_.globals().is_persistent(name); }
    std::vector<Text> own_globals() {
        return interpreter_.globals().names(maxscript::Globals::Which::of_scripts);
    }
    // In the order of the scene.
    std::vector<Text> node_names() const {
        std::vector<Text> names;
        for (const auto& node : scene.nodes) {
            names.push_back(node->name);
        }
        return names;
    }
    std::vector<Text> callback_ids() const {
        std::vector<Text> ids;
        for (const maxscript_host::SceneCallback& callback : scene.callbacks) {
            ids.push_back(callback.id);
        }
        return ids;
    }
    // As Ctrl+Z does, all steps.
    void undo() {
        for (const auto& node : scene.undo_list) {
            node->deleted = false;
            scene.nodes.push_back(node);
        }
        scene.undo_list.clear();
    }
    maxscript::Interpreter& interpreter() { return interpreter_; }

    // In the start-up folders; the user's unless it is said otherwise.
    static Text user(const Text& name) { return u"C:\\Users\\me\\Startup\\" + name; }
    static Text system(const Text& name) { return u"C:\\Max\\scripts\\Startup\\" + name; }
    std::string content(const Text& path) {
        const support::MemoryFile* const file = files.find(path);
        return file == nullptr ? "(no such file)" : file->bytes;
    }
    // Names in the user's start-up folder.
    Lines startup_names() {
        Lines names;
        for (const Text& path : files.list(user(u"*"))) {
            names.push_back(utf8(path.substr(path.rfind(u'\\') + 1)));
        }
        return names;
    }

    static constexpr const char16_t* kScene = u"D:\\jobs\\Lobby.max";
    static constexpr const char16_t* kCopy = u"D:\\jobs\\Lobby_004711.max";

    support::MemoryFiles files;
    maxscript_host::SecurityScene scene;
    maxscript_host::SceneHost host;

private:
    static constexpr const char16_t* kScript = u"C:\\ProgramData/Tarvo Rendering/script/check.ms";

    maxscript::Environment environment() {
        maxscript::Environment environment;
        environment.files = &files;
        environment.listener = this;
        return environment;
    }
    void write(const Text& text) override { written_ += utf8(text); }

    std::string written_;
    maxscript::Interpreter interpreter_;
};

} // namespace support
