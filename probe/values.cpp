// Headers, core objects and scripts.
#include "host/host.h"
#include "probe/questions.h"
#include "probe/report.h"

#include "host/begin_host_headers.h"

#include <max.h>

#include <actiontable.h>
#include <custcont.h>
#include <guplib.h>
#include <ifnpub.h>
#include <imenuman.h>
#include <maxapi.h>
#include <maxscript/maxscript.h>
#include <maxversion.h>
#include <notify.h>
#include <plugapi.h>

#include "host/end_host_headers.h"

namespace tarvo_probe {

namespace {

// The number that the product answers the host with.
#ifdef VERSION_3DSMAX
static_assert(VERSION_3DSMAX == 0x52083400, "plugin/module_entry.cpp has another library version");
#endif

struct Tag {
    int value;
    const char* name;
};
const Tag kTags[] = {
    {TYPE_INT, "TYPE_INT"},       {TYPE_FLOAT, "TYPE_FLOAT"},       {TYPE_BOOL, "TYPE_BOOL"},
    {TYPE_STRING, "TYPE_STRING"}, {TYPE_FILENAME, "TYPE_FILENAME"}, {TYPE_TSTR, "TYPE_TSTR"},
    {TYPE_VALUE, "TYPE_VALUE"},   {TYPE_VOID, "TYPE_VOID"},
};

std::string tag_name(int type) {
    for (const Tag& tag : kTags) {
        if (tag.value == type) {
            return tag.name;
        }
    }
    return "number " + std::to_string(type);
}

// As the product calls it, but quiet: a failing script must not wait for a person.
BOOL execute(const wchar_t* command, FPValue& value) {
#if MAX_PRODUCT_YEAR_NUMBER >= 2022
    return ::ExecuteMAXScriptScript(command, MAXScript::ScriptSource::NonEmbedded, TRUE, &value, TRUE);
#else
    return ::ExecuteMAXScriptScript(command, TRUE, &value, TRUE);
#endif
}

void ask_script(const char* key, const wchar_t* command) {
    FPValue value;
    const BOOL done = execute(command, value);
    TheReport().flag(std::string(key) + ".done", done != FALSE);
    TheReport().line(std::string(key) + ".tag", tag_name(value.type).c_str());
}

std::wstring script_text(const wchar_t* command) {
    tarvo::ScriptResult result;
    tarvo::RunScript(command, result);
    return result.has_text ? result.text : std::wstring(L"(no text)");
}

} // namespace

void AskHeaders() noexcept {
    Report& report = TheReport();
    report.number("headers.year", MAX_PRODUCT_YEAR_NUMBER);
    report.number("headers.utility_super_class", static_cast<long long>(GUP_CLASS_ID));
    report.number("headers.startup_notification", NOTIFY_SYSTEM_STARTUP);
    report.number("headers.main_menu_bar", static_cast<long long>(kMainMenuBar));
    report.number("headers.edit_type_float", static_cast<long long>(EDITTYPE_FLOAT));
    report.number("headers.spinner_change", static_cast<long long>(CC_SPINNER_CHANGE));
    report.number("headers.keep", GUPRESULT_KEEP);
    report.number("headers.script_value_size", static_cast<long long>(sizeof(FPValue)));
    report.number("headers.tag_size", static_cast<long long>(sizeof(FPValue::type)));
    report.number("headers.string_tag", static_cast<long long>(TYPE_STRING));
    report.number("headers.action_description_size", static_cast<long long>(sizeof(ActionDescription)));
    report.number("headers.character_size", static_cast<long long>(sizeof(MCHAR)));
}

void AskObjects(const std::string& moment) noexcept {
    Ask("objects", [&] {
        Report& report = TheReport();
        report.object(moment + ".core", tarvo::CoreInterface());
        report.object(moment + ".menu_manager", tarvo::MenuManager());
        report.object(moment + ".action_manager", tarvo::ActionManager());
        report.object(moment + ".main_window", tarvo::HostMainWindow());
        report.line(moment + ".file_name", tarvo::SceneFileName());
        report.line(moment + ".file_path", tarvo::SceneFilePath());
    });
}

void AskScripts() noexcept {
    Ask("script", [] {
        Report& report = TheReport();
        ask_script("script.text", L"\"abc\"");
        ask_script("script.number", L"3");
        ask_script("script.flag", L"true");
        ask_script("script.nothing", L"undefined");
        ask_script("script.failing", L"throw \"probe\"");
        ask_script("script.not_compiling", L"(1 +");
        report.line("script.text.value", script_text(L"\"abc\""));
        report.line("script.empty_text", script_text(L"\"\""));
        report.line("script.last_of_two_lines", script_text(L"1\n\"b\""));
        report.line("script.chinese", script_text(L"(bit.intAsChar 0x4e2d) + \"\""));
        const std::wstring long_text =
            script_text(L"(local s = \"0123456789abcdef\"; for i = 1 to 16 do s += s; s)");
        report.number("script.long_text_length", static_cast<long long>(long_text.size()));
    });
}

} // namespace tarvo_probe
