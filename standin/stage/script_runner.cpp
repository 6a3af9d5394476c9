#include "standin/stage/script_runner.h"

#include "standin/base/files_win32.h"
#include "standin/base/json.h"
#include "standin/base/text.h"

#include <json/writer.h>

namespace stage {

namespace {

using maxscript::Interpreter;
using maxscript::ScriptError;

constexpr const wchar_t* kStartScript = L"PrepareAnalysisScript.ms";
const std::wstring kCallAnalysis = L"\ngMax.analysis \"\" \"\"";

bool calls_analysis(const std::wstring& command) {
    return command.size() > kCallAnalysis.size() &&
           command.compare(command.size() - kCallAnalysis.size(), kCallAnalysis.size(), kCallAnalysis) == 0;
}

// Sets the members of `members`; merges objects inside objects.
void merge_into(Json::Value& target, const Json::Value& members) {
    for (const std::string& key : members.getMemberNames()) {
        if (target[key].isObject() && members[key].isObject()) {
            merge_into(target[key], members[key]);
        } else {
            target[key] = members[key];
        }
    }
}

// Replaces {scene} in each text by the path of the scene file.
void fill_in_scene(Json::Value& value, const std::string& path) {
    const std::string mark = "{scene}";
    if (value.isString()) {
        std::string text = value.asString();
        const std::size_t at = text.find(mark);
        value = at == std::string::npos ? text : text.replace(at, mark.size(), path);
    } else if (value.isArray() || value.isObject()) {
        for (Json::Value& member : value) {
            fill_in_scene(member, path);
        }
    }
}

// The text that the scenario's "analysis" makes of the script's result.
std::wstring changed_analysis(const Json::Value& wanted, const std::wstring& returned,
                              const std::wstring& scene_path) {
    if (wanted.isMember("text")) {
        return base::to_wide(wanted["text"].asString());
    }
    if (!wanted.isMember("document") && !wanted.isMember("merge")) {
        return returned;
    }
    Json::Value document = wanted["document"];
    if (wanted.isMember("merge")) {
        document = base::parsed_or_null(base::to_utf8(returned));
        merge_into(document, wanted["merge"]);
    }
    fill_in_scene(document, base::to_utf8(scene_path));
    return base::to_wide(Json::writeString(Json::StreamWriterBuilder(), document));
}

} // namespace

StageScripts::StageScripts(Transcript& transcript) : transcript_(transcript) {}

StageScripts::~StageScripts() = default;

void StageScripts::start_host(const std::wstring& folder, const std::wstring& program_data) {
    maxscript::Environment environment;
    environment.files = &files_;
    environment.listener = this;
    interpreter_.reset(new Interpreter(environment));
    host_ = maxscript_host::SceneHost();
    host_.environment_variables[u"ProgramData"] = maxscript::text_from_wide(program_data);
    host_.environment_variables[u"SystemDrive"] = u"C:";
    maxscript_host::install_scene_library(*interpreter_, host_);
    infection_.install(*interpreter_);
    const std::wstring start_script = base::joined(folder, kStartScript);
    if (base::file_exists(start_script)) {
        const std::wstring command = L"fileIn @\"" + start_script + L"\"";
        std::wstring result;
        bool is_text = false;
        const bool done = run_script(command, result, is_text);
        transcript_.append("start_scripts", entry(command, done, result));
    }
}

void StageScripts::set_scene(const StageScene& scene, const Json::Value& analysis) {
    host_.model = scene.model;
    host_.failing.clear();
    for (const Json::Value& query : scene.literal["failing"]) {
        host_.fail_query(maxscript::text_from_utf8(query.asString()));
    }
    host_.used_by.clear();
    for (const std::string& file : scene.literal["xrefs"].getMemberNames()) {
        for (const Json::Value& used : scene.literal["xrefs"][file]) {
            host_.used_by[maxscript::folded(maxscript::text_from_utf8(file))].push_back(
                maxscript::text_from_utf8(used.asString()));
        }
    }
    infection_.open(*interpreter_, scene.literal["infection"], scene.startup_folder, scene.model.path);
    analysis_ = analysis;
}

// A value that is not a text becomes what the host would print.
bool StageScripts::run_script(const std::wstring& command, std::wstring& result, bool& is_text) {
    is_text = false;
    printed_.clear();
    try {
        const maxscript::Value value = interpreter_->run(maxscript::text_from_wide(command), u"");
        is_text = value.is(maxscript::Kind::string);
        result = maxscript::wide_from_text(interpreter_->as_string(value));
        return true;
    } catch (const ScriptError& error) {
        result = base::to_wide(error.what());
        return false;
    }
}

Json::Value StageScripts::entry(const std::wstring& command, bool succeeded,
                                const std::wstring& result) const {
    Json::Value made(Json::objectValue);
    made["command"] = base::to_utf8(command);
    made["succeeded"] = succeeded;
    made["result"] = base::to_utf8(result);
    made["listener"] = maxscript::utf8_from_text(printed_);
    return made;
}

bool StageScripts::answer_analysis(std::wstring& result, bool& is_text) const {
    const bool fails = analysis_.get("fails", false).asBool();
    is_text = !fails && !analysis_.get("no_text", false).asBool();
    result = fails ? L"-- Runtime error: the analysis failed, as the scenario wants it"
                   : changed_analysis(analysis_, result, host_.model.path);
    return !fails;
}

bool StageScripts::run(const std::wstring& command, std::wstring& result, bool& is_text) {
    // The host may have saved the scene under another name.
    host_.model.path = host_sdk::scene_path();
    bool done = run_script(command, result, is_text);
    if (done && calls_analysis(command)) {
        done = answer_analysis(result, is_text);
    }
    transcript_.append("scripts", entry(command, done, result));
    return done;
}

} // namespace stage
