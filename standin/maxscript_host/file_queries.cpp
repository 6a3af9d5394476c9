// The files that the scene refers to, by the host's three queries, and how the host completes paths.
#include "standin/max_file/scene_text.h"
#include "standin/maxscript_host/scene_library.h"

#include <limits>
#include <set>

namespace maxscript_host {

namespace {

using max_file::ReferencedFile;
using maxscript::Arguments;
using maxscript::ClassPointer;
using maxscript::FileAccess;
using maxscript::HostInterface;
using maxscript::HostObject;
using maxscript::Kind;

Value text_value(const std::wstring& wide) {
    return Value::string(maxscript::text_from_wide(wide));
}

bool exists(Interpreter& interpreter, const Text& path) {
    FileAccess* const files = interpreter.environment().files;
    return files != nullptr && files->exists(path);
}

bool is_destination(const ReferencedFile& file) {
    return file.kind == L"RenderOutput" || file.kind == L"BatchRender";
}

// The tracker lists the scene and its output as well.
std::vector<Value> tracked_files(const SceneHost& host) {
    const SceneModel& model = host.model;
    std::vector<Value> files;
    if (!model.path.empty()) {
        files.push_back(text_value(model.path));
    }
    if (host.tracks_references) {
        for (const ReferencedFile& file : model.references) {
            files.push_back(text_value(file.named));
        }
    }
    if (!model.render.output_file.empty()) {
        files.push_back(text_value(model.render.output_file));
    }
    for (const auto& scene : host.used_by) {
        for (const Text& name : scene.second) {
            files.push_back(Value::string(name));
        }
    }
    return files;
}

// The files that a scene file or the open scene names. `name` is folded.
std::vector<Value> files_used_by(const SceneHost& host, const Text& name) {
    std::vector<Value> files;
    const auto used = host.used_by.find(name);
    if (used != host.used_by.end()) {
        for (const Text& file : used->second) {
            files.push_back(Value::string(file));
        }
    } else if (name == maxscript::folded(maxscript::text_from_wide(host.model.path))) {
        for (const ReferencedFile& file : host.model.references) {
            files.push_back(text_value(file.named));
        }
    }
    return files;
}

// Fills the variable of a by-reference argument and gives the count.
Value give_files(Arguments& arguments, std::size_t index, std::vector<Value> files) {
    const auto count = static_cast<std::int32_t>(files.size());
    arguments.interpreter().charge(files.size());
    arguments.set_reference(index, Value::array(std::move(files)));
    return Value::integer(count);
}

void add_flag(HostInterface& tracker, const Text& name, bool& flag) {
    tracker.add_property(
        name, [&flag] { return Value::boolean(flag); },
        [&flag](const Value& value) { flag = value.as_boolean(); });
}

void install_tracker(Interpreter& interpreter, SceneHost& host) {
    auto tracker = std::make_shared<HostInterface>(u"ATSOps");
    add_flag(*tracker, u"Silent", host.tracker_is_silent);
    add_flag(*tracker, u"CheckNetworkPaths", host.tracker_checks_network);
    // Only the file's own references, not theirs; the third argument takes the names.
    tracker->add(u"GetDependentFiles", 3, 3, {},
                 fallible(host, u"ATSOps.GetDependentFiles", [&host](Arguments& a) {
                     return give_files(a, 2, files_used_by(host, maxscript::folded(a.text(0))));
                 }));
    tracker->add(u"Refresh", 0, 0, {}, [&host](Arguments& a) {
        host.loud_refreshes += host.tracker_is_silent && !host.tracker_checks_network ? 0 : 1;
        answer_or_fail(a.interpreter(), host, u"ATSOps.Refresh");
        return Value::ok();
    });
    tracker->add(u"GetFiles", 1, 1, {}, fallible(host, u"ATSOps.GetFiles", [&host](Arguments& a) {
                     return give_files(a, 0, tracked_files(host));
                 }));
    tracker->add_property(u"Disabled", [&host] { return Value::boolean(host.tracker_disabled); });
    tracker->add(u"NumProviders", 0, 0, {},
                 [&host](Arguments&) { return Value::integer(host.tracker_providers); });
    interpreter.globals().add_constant(u"ATSOps", Value::object(tracker));
}

class Asset : public HostObject {
public:
    Asset(ClassPointer of_class, ReferencedFile file) : class_(std::move(of_class)), file_(std::move(file)) {}

    ClassPointer host_class() const override { return class_; }
    bool call_method(const Text& name, Arguments&, Value& result) override {
        if (name == u"getfilename") {
            result = text_value(file_.named);
        } else if (name == u"gettype") {
            result = Value::name(maxscript::text_from_wide(file_.kind));
        } else {
            return false;
        }
        return true;
    }

private:
    ClassPointer class_;
    ReferencedFile file_;
};

void install_assets(Interpreter& interpreter, SceneHost& host) {
    const ClassPointer asset_class = maxscript::make_class(u"AssetUser");
    auto manager = std::make_shared<HostInterface>(u"AssetManager");
    manager->add(u"GetNumAssets", 0, 0, {}, fallible(host, u"AssetManager.GetNumAssets", [&host](Arguments&) {
                     const std::size_t count = host.has_assets ? host.model.references.size() : 0;
                     return Value::integer(static_cast<std::int32_t>(count));
                 }));
    manager->add(u"GetAssetByIndex", 1, 1, {},
                 fallible(host, u"AssetManager.GetAssetByIndex", [&host, asset_class](Arguments& a) {
                     const std::vector<ReferencedFile>& files = host.model.references;
                     return Value::object(std::make_shared<Asset>(
                         asset_class, files[index_argument(a, files.size(), u"asset")]));
                 }));
    interpreter.globals().add_constant(u"AssetManager", Value::object(manager));
}

// enumerateFiles [object] function [argument] [#flag]... Without a flag: all files.
bool is_wanted(const Arguments& arguments, const ReferencedFile& file) {
    bool has_flags = false;
    bool wants_video_post = false;
    for (std::size_t i = 0; i < arguments.count(); ++i) {
        has_flags = has_flags || arguments[i].is(Kind::name);
        wants_video_post =
            wants_video_post || (arguments[i].is(Kind::name) && arguments.name(i) == u"videopost");
    }
    return !is_destination(file) && (file.kind != L"VideoPost" || !has_flags || wants_video_post);
}

Value enumerate_files(Arguments& arguments, const SceneHost& host) {
    std::size_t at = 0;
    while (at < arguments.count() && !arguments[at].is_callable()) {
        ++at;
    }
    if (at == arguments.count()) {
        arguments.fail(u"-- Runtime error: enumerateFiles needs a function");
    }
    const bool has_argument = at + 1 < arguments.count() && !arguments[at + 1].is(Kind::name);
    for (const ReferencedFile& file : host.model.references) {
        if (is_wanted(arguments, file)) {
            std::vector<Value> given = {text_value(file.named)};
            if (has_argument) {
                given.push_back(arguments[at + 1]);
            }
            arguments.interpreter().call(arguments[at], given);
        }
    }
    return Value::ok();
}

bool is_absolute(const Text& path) {
    const bool has_drive = path.size() > 1 && path[1] == u':';
    return has_drive || (!path.empty() && (path[0] == u'\\' || path[0] == u'/'));
}

// "$maps\a.png" is in the folder "maps" of the project.
Text without_symbols(const Text& path, const Text& project) {
    return !path.empty() && path[0] == u'$' ? project + u"\\" + path.substr(1) : path;
}

Text below(const Text& folder, Text path) {
    if (path.compare(0, 2, u".\\") == 0 || path.compare(0, 2, u"./") == 0) {
        path.erase(0, 2);
    }
    return folder + u"\\" + path;
}

void install_paths(Interpreter& interpreter, SceneHost& host) {
    auto config = std::make_shared<HostInterface>(u"pathConfig");
    const auto add = [&host, &config](const Text& name, const maxscript::NativeCode& answer) {
        config->add(name, 1, 1, {}, fallible(host, u"pathConfig." + name, answer));
    };
    add(u"resolvePathSymbols",
        [&host](Arguments& a) { return Value::string(without_symbols(a.text(0), host.project_folder)); });
    add(u"isAbsolutePath", [](Arguments& a) { return Value::boolean(is_absolute(a.text(0))); });
    add(u"convertPathToAbsolute", [&host](Arguments& a) {
        return Value::string(is_absolute(a.text(0)) ? a.text(0) : below(host.project_folder, a.text(0)));
    });
    interpreter.globals().add_constant(u"pathConfig", Value::object(config));
}

// A reference that was found elsewhere when the scene was saved stands for a file in a map folder. The list
// is made once for each run of a script: the model cannot change meanwhile.
class MapFolders {
public:
    Text find(Interpreter& interpreter, const SceneModel& model, const Text& path) {
        if (run_ != interpreter.calls_from_outside()) {
            read(model);
            interpreter.charge(model.references.size());
            run_ = interpreter.calls_from_outside();
        }
        const auto same = found_.equal_range(max_file::folded_path(maxscript::wide_from_text(path)));
        for (auto each = same.first; each != same.second; ++each) {
            if (exists(interpreter, each->second)) {
                return each->second;
            }
        }
        return Text();
    }
    // The folders themselves, each once.
    std::vector<Text> folders(Interpreter& interpreter, const SceneModel& model) {
        std::vector<Text> found;
        std::set<Text> known;
        for (const ReferencedFile& file : model.references) {
            const Text path = maxscript::text_from_wide(file.found);
            const std::size_t slash = path.find_last_of(u"\\/");
            if (slash != Text::npos && file.found != file.named &&
                known.insert(path.substr(0, slash)).second) {
                found.push_back(path.substr(0, slash));
            }
        }
        interpreter.charge(model.references.size());
        return found;
    }

private:
    void read(const SceneModel& model) {
        found_.clear();
        for (const ReferencedFile& file : model.references) {
            if (!file.found.empty()) {
                found_.emplace(max_file::folded_path(file.named), maxscript::text_from_wide(file.found));
            }
        }
    }

    std::uint64_t run_ = std::numeric_limits<std::uint64_t>::max(); // none
    std::multimap<std::wstring, Text> found_;                       // by folded name, in the scene's order
};

void install_map_folders(Interpreter& interpreter, SceneHost& host) {
    auto paths = std::make_shared<HostInterface>(u"mapPaths");
    auto folders = std::make_shared<MapFolders>();
    paths->add(u"getFullFilePath", 1, 1, {},
               fallible(host, u"mapPaths.getFullFilePath", [&host, folders](Arguments& a) {
                   ++host.map_path_queries;
                   const Text found = folders->find(a.interpreter(), host.model, a.text(0));
                   return found.empty() && host.undefined_map_paths ? Value() : Value::string(found);
               }));
    paths->add(u"count", 0, 0, {}, fallible(host, u"mapPaths.count", [&host, folders](Arguments& a) {
                   const std::size_t count = folders->folders(a.interpreter(), host.model).size();
                   return Value::integer(static_cast<std::int32_t>(count));
               }));
    paths->add(u"get", 1, 1, {}, [&host, folders](Arguments& a) {
        const std::vector<Text> all = folders->folders(a.interpreter(), host.model);
        return Value::string(all[index_argument(a, all.size(), u"map path")]);
    });
    interpreter.globals().add_constant(u"mapPaths", Value::object(paths));
}

} // namespace

void install_file_queries(Interpreter& interpreter, SceneHost& host) {
    install_tracker(interpreter, host);
    install_assets(interpreter, host);
    interpreter.globals().add_function(
        u"enumerateFiles", 1, maxscript::kAnyCount, {},
        fallible(host, u"enumerateFiles", [&host](Arguments& a) { return enumerate_files(a, host); }));
    install_paths(interpreter, host);
    install_map_folders(interpreter, host);
    // Functions of the language itself.
    for (const char16_t* const name :
         {u"doesFileExist", u"getFiles", u"getFilenameType", u"substituteString"}) {
        interpreter.globals().wrap_function(
            name, [&host, name](const maxscript::NativeCode& code) { return fallible(host, name, code); });
    }
}

} // namespace maxscript_host
