// The files that the scene refers to, asked in the host's three ways, and how it makes paths full.
#include "standin/max_file/scene_text.h"
#include "standin/maxscript_host/scene_library.h"

#include <limits>
#include <set>

namespace maxscript_host {

namespace {

using max_file::ReferencedFile;
using maxscript::Arguments;
using maxscript::FileAccess;
using maxscript::HostClass;
using maxscript::HostInterface;
using maxscript::HostObject;
using maxscript::Interpreter;
using maxscript::Kind;
using maxscript::NativeFunction;
using maxscript::Text;
using maxscript::Value;

Text text_of(const std::wstring& wide) {
    return maxscript::text_from_wide(wide);
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
        files.push_back(Value::string(text_of(model.path)));
    }
    if (host.tracks_references) {
        for (const ReferencedFile& file : model.references) {
            files.push_back(Value::string(text_of(file.named)));
        }
    }
    if (!model.render.output_file.empty()) {
        files.push_back(Value::string(text_of(model.render.output_file)));
    }
    for (const auto& scene : host.used_by) {
        for (const Text& name : scene.second) {
            files.push_back(Value::string(name));
        }
    }
    return files;
}

// What a scene file names itself, or the open scene. `name` is folded.
std::vector<Value> files_used_by(const SceneHost& host, const Text& name) {
    std::vector<Value> files;
    const auto used = host.used_by.find(name);
    if (used != host.used_by.end()) {
        for (const Text& file : used->second) {
            files.push_back(Value::string(file));
        }
    } else if (name == maxscript::folded(text_of(host.model.path))) {
        for (const ReferencedFile& file : host.model.references) {
            files.push_back(Value::string(text_of(file.named)));
        }
    }
    return files;
}

void install_tracker(Interpreter& interpreter, SceneHost& host) {
    auto tracker = std::make_shared<HostInterface>(u"ATSOps");
    tracker->add_property(
        u"Silent", [&host] { return Value::boolean(host.tracker_is_silent); },
        [&host](const Value& value) { host.tracker_is_silent = value.as_boolean(); });
    tracker->add_property(
        u"CheckNetworkPaths", [&host] { return Value::boolean(host.tracker_checks_network); },
        [&host](const Value& value) { host.tracker_checks_network = value.as_boolean(); });
    // Only what the file names itself; the third argument takes the names.
    tracker->add(u"GetDependentFiles", 3, 3, {}, [&interpreter, &host](Arguments& arguments) {
        answer_or_fail(interpreter, host, u"ATSOps.GetDependentFiles");
        std::vector<Value> files = files_used_by(host, maxscript::folded(arguments.text(0)));
        const std::size_t count = files.size();
        arguments.set_reference(2, Value::array(std::move(files)));
        return Value::integer(static_cast<std::int32_t>(count));
    });
    tracker->add(u"Refresh", 0, 0, {}, [&interpreter, &host](Arguments&) {
        host.loud_refreshes += host.tracker_is_silent && !host.tracker_checks_network ? 0 : 1;
        answer_or_fail(interpreter, host, u"ATSOps.Refresh");
        return Value::ok();
    });
    tracker->add(u"GetFiles", 1, 1, {}, [&interpreter, &host](Arguments& arguments) {
        answer_or_fail(interpreter, host, u"ATSOps.GetFiles");
        std::vector<Value> files = tracked_files(host);
        interpreter.charge(files.size());
        const std::size_t count = files.size();
        arguments.set_reference(0, Value::array(std::move(files)));
        return Value::integer(static_cast<std::int32_t>(count));
    });
    tracker->add_property(u"Disabled", [&host] { return Value::boolean(host.tracker_disabled); });
    tracker->add(u"NumProviders", 0, 0, {},
                 [&host](Arguments&) { return Value::integer(host.tracker_providers); });
    interpreter.globals().add_constant(u"ATSOps", Value::object(tracker));
}

class Asset : public HostObject {
public:
    Asset(std::shared_ptr<const HostClass> of_class, Text path, Text kind)
        : class_(std::move(of_class)), path_(std::move(path)), kind_(std::move(kind)) {}

    std::shared_ptr<const HostClass> host_class() const override { return class_; }
    bool call_method(const Text& name, Arguments&, Value& result) override {
        if (name == u"getfilename") {
            result = Value::string(path_);
        } else if (name == u"gettype") {
            result = Value::name(kind_);
        } else {
            return false;
        }
        return true;
    }

private:
    std::shared_ptr<const HostClass> class_;
    Text path_;
    Text kind_;
};

void install_assets(Interpreter& interpreter, SceneHost& host) {
    auto asset_class = std::make_shared<HostClass>();
    asset_class->name = u"AssetUser";
    auto manager = std::make_shared<HostInterface>(u"AssetManager");
    manager->add(u"GetNumAssets", 0, 0, {}, [&interpreter, &host](Arguments&) {
        answer_or_fail(interpreter, host, u"AssetManager.GetNumAssets");
        return Value::integer(host.has_assets ? static_cast<std::int32_t>(host.model.references.size()) : 0);
    });
    manager->add(u"GetAssetByIndex", 1, 1, {}, [&interpreter, &host, asset_class](Arguments& arguments) {
        answer_or_fail(interpreter, host, u"AssetManager.GetAssetByIndex");
        const std::vector<ReferencedFile>& files = host.model.references;
        const std::int32_t index = arguments.integer(0);
        if (index < 1 || static_cast<std::size_t>(index) > files.size()) {
            arguments.fail(u"-- Runtime error: no such asset");
        }
        const ReferencedFile& file = files[static_cast<std::size_t>(index) - 1];
        return Value::object(std::make_shared<Asset>(asset_class, text_of(file.named), text_of(file.kind)));
    });
    interpreter.globals().add_constant(u"AssetManager", Value::object(manager));
}

// enumerateFiles [object] function [argument] [#flag]... Without a flag it is all files.
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
            std::vector<Value> given = {Value::string(text_of(file.named))};
            if (has_argument) {
                given.push_back(arguments[at + 1]);
            }
            arguments.interpreter().call(arguments[at], given);
        }
    }
    return Value::ok();
}

void install_enumeration(Interpreter& interpreter, SceneHost& host) {
    NativeFunction function;
    function.name = u"enumerateFiles";
    function.fewest = 1;
    function.most = maxscript::kAnyCount;
    function.code = [&interpreter, &host](Arguments& arguments) {
        answer_or_fail(interpreter, host, u"enumerateFiles");
        return enumerate_files(arguments, host);
    };
    interpreter.globals().add_function(function);
}

bool is_absolute(const Text& path) {
    const bool has_drive = path.size() > 1 && path[1] == u':';
    return has_drive || (!path.empty() && (path[0] == u'\\' || path[0] == u'/'));
}

// "$maps\a.png" is below the project's folder of that name.
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
    const auto add = [&interpreter, &host, &config](const Text& name,
                                                    std::function<Value(const Text&)> answer) {
        config->add(name, 1, 1, {}, [&interpreter, &host, name, answer](Arguments& arguments) {
            answer_or_fail(interpreter, host, u"pathConfig." + name);
            return answer(arguments.text(0));
        });
    };
    add(u"resolvePathSymbols",
        [&host](const Text& path) { return Value::string(without_symbols(path, host.project_folder)); });
    add(u"isAbsolutePath", [](const Text& path) { return Value::boolean(is_absolute(path)); });
    add(u"convertPathToAbsolute", [&host](const Text& path) {
        return Value::string(is_absolute(path) ? path : below(host.project_folder, path));
    });
    interpreter.globals().add_constant(u"pathConfig", Value::object(config));
}

// A reference that was found elsewhere when the scene was saved stands for a file in a map folder. The list
// is read once for each run of a script, which cannot replace the model.
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
            const Text path = text_of(file.found);
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
                found_.emplace(max_file::folded_path(file.named), text_of(file.found));
            }
        }
    }

    std::uint64_t run_ = std::numeric_limits<std::uint64_t>::max(); // none
    std::multimap<std::wstring, Text> found_;                       // by folded name, in the scene's order
};

void install_map_folders(Interpreter& interpreter, SceneHost& host) {
    auto folders = std::make_shared<HostInterface>(u"mapPaths");
    auto map_folders = std::make_shared<MapFolders>();
    folders->add(u"getFullFilePath", 1, 1, {}, [&interpreter, &host, map_folders](Arguments& arguments) {
        answer_or_fail(interpreter, host, u"mapPaths.getFullFilePath");
        ++host.map_path_queries;
        const Text found = map_folders->find(interpreter, host.model, arguments.text(0));
        return found.empty() && host.undefined_map_paths ? Value() : Value::string(found);
    });
    folders->add(u"count", 0, 0, {}, [&interpreter, &host, map_folders](Arguments&) {
        answer_or_fail(interpreter, host, u"mapPaths.count");
        return Value::integer(
            static_cast<std::int32_t>(map_folders->folders(interpreter, host.model).size()));
    });
    folders->add(u"get", 1, 1, {}, [&interpreter, &host, map_folders](Arguments& arguments) {
        const std::vector<Text> all = map_folders->folders(interpreter, host.model);
        const std::int32_t index = arguments.integer(0);
        if (index < 1 || static_cast<std::size_t>(index) > all.size()) {
            arguments.fail(u"-- Runtime error: no such map path");
        }
        return Value::string(all[static_cast<std::size_t>(index) - 1]);
    });
    interpreter.globals().add_constant(u"mapPaths", Value::object(folders));
}

// Lets a function of the language itself fail too.
void make_fallible(Interpreter& interpreter, SceneHost& host, const Text& name) {
    Value original;
    if (!interpreter.globals().get(name, original) || !original.is(Kind::native)) {
        return;
    }
    NativeFunction function = original.as_native();
    const maxscript::NativeCode code = function.code;
    function.code = [&host, name, code](Arguments& arguments) {
        answer_or_fail(arguments.interpreter(), host, name);
        return code(arguments);
    };
    interpreter.globals().add_function(function);
}

} // namespace

void install_file_queries(Interpreter& interpreter, SceneHost& host) {
    install_tracker(interpreter, host);
    install_assets(interpreter, host);
    install_enumeration(interpreter, host);
    install_paths(interpreter, host);
    install_map_folders(interpreter, host);
    for (const char16_t* const name :
         {u"doesFileExist", u"getFiles", u"getFilenameType", u"substituteString"}) {
        make_fallible(interpreter, host, name);
    }
}

} // namespace maxscript_host
