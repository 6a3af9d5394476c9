#include "common/guard.h"
#include "host/host.h"

#include "host/begin_host_headers.h"

#include <max.h>

#include <actiontable.h>
#include <getcoreinterface.h>
#include <ifnpub.h>
#include <imenuman.h>
#include <maxapi.h>
#include <maxscript/maxscript.h>
#include <maxversion.h>

#include "host/end_host_headers.h"

namespace tarvo {

namespace {

// Calls the core interface inside the guard. `fallback`: returned without one, and if the call throws.
template <class Result, class Call>
Result ask_core(const char* place, Result fallback, Call call) noexcept {
    return Guarded(place, fallback, [&]() -> Result {
        Interface* core = ::GetCOREInterface();
        return core == nullptr ? fallback : call(*core);
    });
}

BOOL execute_script(const wchar_t* command, FPValue& value) {
#if MAX_PRODUCT_YEAR_NUMBER >= 2022
    // Later hosts have the text's origin as their second argument.
    return ::ExecuteMAXScriptScript(command, MAXScript::ScriptSource::NonEmbedded, FALSE, &value, TRUE);
#else
    return ::ExecuteMAXScriptScript(command, FALSE, &value, TRUE);
#endif
}

// The host may return null for an empty text.
std::wstring or_empty(const wchar_t* text) {
    return text == nullptr ? std::wstring() : std::wstring(text);
}

// Copies the text: the host may collect the script value at any time.
ScriptResult text_of(const FPValue& value) {
    const wchar_t* text = nullptr;
    if (value.type == TYPE_STRING || value.type == TYPE_FILENAME) {
        text = value.s;
    } else if (value.type == TYPE_TSTR && value.tstr != nullptr) {
        text = value.tstr->data();
    }
    ScriptResult result;
    result.has_text = text != nullptr;
    result.text = or_empty(text);
    return result;
}

} // namespace

WindowHandle HostMainWindow() {
    return ask_core<WindowHandle>("GetMAXHWnd", nullptr, [](Interface& core) { return core.GetMAXHWnd(); });
}

std::wstring SceneFileName() {
    return ask_core("GetCurFileName", std::wstring(),
                    [](Interface& core) { return or_empty(core.GetCurFileName().data()); });
}

std::wstring SceneFilePath() {
    return ask_core("GetCurFilePath", std::wstring(),
                    [](Interface& core) { return or_empty(core.GetCurFilePath().data()); });
}

void SaveScene() {
    ask_core("FileSave", FALSE, [](Interface& core) { return core.FileSave(); });
}

// The host returns 0 or less on failure.
bool SaveSceneAs(const std::wstring& path) {
    return ask_core("SaveToFile", false,
                    [&](Interface& core) { return core.SaveToFile(path.c_str(), TRUE, TRUE) > 0; });
}

bool RunScript(const std::wstring& command, ScriptResult& result) {
    result = ScriptResult();
    return ask_core("ExecuteMAXScriptScript", false, [&](Interface&) {
        FPValue value;
        const BOOL done = execute_script(command.c_str(), value);
        result = text_of(value);
        return done != FALSE;
    });
}

Interface* CoreInterface() {
    return ask_core<Interface*>("GetCOREInterface", nullptr, [](Interface& core) { return &core; });
}

IMenuManager* MenuManager() {
    return ask_core<IMenuManager*>("GetMenuManager", nullptr,
                                   [](Interface& core) { return core.GetMenuManager(); });
}

IActionManager* ActionManager() {
    return ask_core<IActionManager*>("GetActionManager", nullptr,
                                     [](Interface& core) { return core.GetActionManager(); });
}

IMenu* MainMenuBar(IMenuManager& manager) {
    return Guarded<IMenu*>("GetMainMenuBar", nullptr, [&] { return manager.GetMainMenuBar(); });
}

} // namespace tarvo
