#include "host/core_access.h"
#include "host/host.h"
#include "host/max_ratio_spinner.h"

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

// No call of the host's face throws; `otherwise` is the answer when something below did.
template <class Result, class Function>
Result Contained(Result otherwise, Function function) noexcept {
    try {
        return function();
    } catch (...) {
        return otherwise;
    }
}

BOOL ExecuteScript(const wchar_t* command, FPValue& value) {
#if MAX_PRODUCT_YEAR_NUMBER >= 2022
    // Later hosts want to know where the text comes from; the other arguments have moved on by one.
    return ::ExecuteMAXScriptScript(command, MAXScript::ScriptSource::NonEmbedded, FALSE, &value, TRUE);
#else
    return ::ExecuteMAXScriptScript(command, FALSE, &value, TRUE);
#endif
}

// A copy: the pointer may belong to a script value that is collected at any time.
ScriptResult TextOf(const FPValue& value) {
    const wchar_t* text = nullptr;
    switch (value.type) {
    case TYPE_STRING:
    case TYPE_FILENAME:
        text = value.s;
        break;
    case TYPE_TSTR:
        text = value.tstr == nullptr ? nullptr : value.tstr->data();
        break;
    default:
        break;
    }
    ScriptResult result;
    if (text != nullptr) {
        result.has_text = true;
        result.text = text;
    }
    return result;
}

// The host may have no text where it means an empty one.
std::wstring OrEmpty(const wchar_t* text) {
    return text == nullptr ? std::wstring() : std::wstring(text);
}

class MaxHost : public Host {
public:
    bool is_available() override;
    WindowHandle main_window() override;
    std::wstring current_file_name() override;
    std::wstring current_file_path() override;
    void save() override;
    bool save_as(const std::wstring& path) override;
    bool run_script(const std::wstring& command, ScriptResult& result) override;
    std::unique_ptr<RatioSpinner> set_up_ratio_spinner(WindowHandle dialog, int spinner_id, int edit_id,
                                                       float minimum, float maximum, float value,
                                                       float step) override;
    std::unique_ptr<RatioSpinner> ratio_spinner(WindowHandle control) override;
};

bool MaxHost::is_available() {
    return CoreInterface() != nullptr;
}

WindowHandle MaxHost::main_window() {
    Interface* core = CoreInterface();
    return core == nullptr ? nullptr : Contained<WindowHandle>(nullptr, [&] { return core->GetMAXHWnd(); });
}

std::wstring MaxHost::current_file_name() {
    Interface* core = CoreInterface();
    return core == nullptr
               ? std::wstring()
               : Contained(std::wstring(), [&] { return OrEmpty(core->GetCurFileName().data()); });
}

std::wstring MaxHost::current_file_path() {
    Interface* core = CoreInterface();
    return core == nullptr
               ? std::wstring()
               : Contained(std::wstring(), [&] { return OrEmpty(core->GetCurFilePath().data()); });
}

void MaxHost::save() {
    Interface* core = CoreInterface();
    if (core != nullptr) {
        Contained(false, [&] { return core->FileSave() != FALSE; });
    }
}

bool MaxHost::save_as(const std::wstring& path) {
    Interface* core = CoreInterface();
    // A result below zero is a failure too.
    return core != nullptr &&
           Contained(false, [&] { return core->SaveToFile(path.c_str(), TRUE, TRUE) > 0; });
}

bool MaxHost::run_script(const std::wstring& command, ScriptResult& result) {
    result = ScriptResult();
    return is_available() && Contained(false, [&] {
               FPValue value;
               const BOOL done = ExecuteScript(command.c_str(), value);
               result = TextOf(value);
               return done != FALSE;
           });
}

std::unique_ptr<RatioSpinner> MaxHost::set_up_ratio_spinner(WindowHandle dialog, int spinner_id, int edit_id,
                                                            float minimum, float maximum, float value,
                                                            float step) {
    return Contained(std::unique_ptr<RatioSpinner>(), [&] {
        return SetUpMaxRatioSpinner(dialog, spinner_id, edit_id, minimum, maximum, value, step);
    });
}

std::unique_ptr<RatioSpinner> MaxHost::ratio_spinner(WindowHandle control) {
    return Contained(std::unique_ptr<RatioSpinner>(), [&] { return MaxRatioSpinnerOf(control); });
}

} // namespace

Host& CurrentHost() {
    static MaxHost host;
    return host;
}

Interface* CoreInterface() {
    return Contained<Interface*>(nullptr, [] { return ::GetCOREInterface(); });
}

IMenuManager* MenuManager() {
    Interface* core = CoreInterface();
    return core == nullptr ? nullptr
                           : Contained<IMenuManager*>(nullptr, [&] { return core->GetMenuManager(); });
}

IActionManager* ActionManager() {
    Interface* core = CoreInterface();
    return core == nullptr ? nullptr
                           : Contained<IActionManager*>(nullptr, [&] { return core->GetActionManager(); });
}

// The other way to it: static_cast<IMenuBarContext*>(manager.GetContext(kMainMenuBar))->GetMenu().
IMenu* MainMenuBar(IMenuManager& manager) {
    return Contained<IMenu*>(nullptr, [&] { return manager.GetMainMenuBar(); });
}

} // namespace tarvo
