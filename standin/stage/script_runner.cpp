#include "standin/stage/script_runner.h"

#include "standin/stage/files.h"
#include "standin/stage/wide_text.h"

namespace stage {

namespace {

const std::wstring kLoad = L"fileIn \"";
const std::wstring kCallAnalysis = L"\ngMax.analysis \"\" \"\"";

} // namespace

// Takes `fileIn "PATH"` off the command and looks for the file; `rest` is what follows.
bool StageScripts::load(const std::wstring& command, std::wstring& result, std::wstring& rest) const {
    const std::size_t end = command.find(L'"', kLoad.size());
    if (command.compare(0, kLoad.size(), kLoad) != 0 || end == std::wstring::npos) {
        result = L"-- Syntax error: the stage knows only fileIn";
        return false;
    }
    const std::wstring file = command.substr(kLoad.size(), end - kLoad.size());
    rest = command.substr(end + 1);
    if (!file_exists(file)) {
        result = L"-- Runtime error: fileIn cannot find the file: " + file;
        return false;
    }
    return true;
}

bool StageScripts::run(const std::wstring& command, std::wstring& result, bool& is_text) {
    std::wstring rest;
    bool done = load(command, result, rest);
    is_text = false;
    if (done && rest == kCallAnalysis) {
        done = !answer_.fails;
        is_text = done && answer_.has_text;
        result = done ? answer_.text : L"-- Runtime error: the analysis failed, as the scenario wants it";
    } else if (done && !rest.empty()) {
        done = false;
        result = L"-- Syntax error: the stage does not know what follows fileIn";
    }
    Json::Value entry(Json::objectValue);
    entry["command"] = to_utf8(command);
    entry["succeeded"] = done;
    entry["result"] = to_utf8(result);
    transcript_.append("scripts", entry);
    return done;
}

} // namespace stage
