#include "standin/stage/script_runner.h"

#include "standin/base/files_win32.h"
#include "standin/base/text.h"
#include "standin/stage/analysis_answer.h"

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

// A value that is no text comes out as the host would print it.
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
    const AnalysisAnswer answer = analysis_answer(analysis_, result, host_.model.path);
    is_text = !answer.fails && answer.has_text;
    result = answer.fails ? L"-- Runtime error: the analysis failed, as the scenario wants it" : answer.text;
    return !answer.fails;
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
