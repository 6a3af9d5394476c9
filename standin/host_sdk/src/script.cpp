// Runs script text and returns its result as an FPValue.
#include "call_record.h"

#include "maxscript/maxscript.h"

#include <memory>
#include <utility>

namespace host_sdk {

namespace {

// The text that the last script returned. The next script collects the value: it overwrites the text, so that
// a plug-in that kept the pointer shows it, and frees the text before that.
std::unique_ptr<wchar_t[]> g_last_text;
std::unique_ptr<wchar_t[]> g_collected_text;

void drop_last_text() {
    for (wchar_t* at = g_last_text.get(); at != nullptr && *at != L'\0'; ++at) {
        *at = L'?';
    }
    g_collected_text = std::move(g_last_text);
}

const wchar_t* keep_text(const std::wstring& text) {
    g_last_text.reset(new wchar_t[text.size() + 1]);
    text.copy(g_last_text.get(), text.size());
    g_last_text[text.size()] = L'\0';
    return g_last_text.get();
}

void return_text(const std::wstring& text, FPValue& value) {
    switch (state().text_tag) {
    case TextTag::string:
        value.s = keep_text(text);
        value.type = TYPE_STRING;
        break;
    case TextTag::filename:
        value.s = keep_text(text);
        value.type = TYPE_FILENAME;
        break;
    case TextTag::tstr:
        value.tstr = new TSTR(text.c_str());
        value.type = TYPE_TSTR;
        break;
    }
}

BOOL run_script(const std::wstring& command, FPValue* value) {
    std::wstring result;
    bool is_text = false;
    bool done = false;
    if (state().runner != nullptr) {
        run_foreign([&] { done = state().runner->run(command, result, is_text); });
    }
    if (done && is_text && value != nullptr) {
        return_text(result, *value);
    }
    return done ? TRUE : FALSE;
}

} // namespace

void clear_script() {
    drop_last_text();
}

} // namespace host_sdk

BOOL ExecuteMAXScriptScript(const MCHAR* script, BOOL quiet_errors, FPValue* result, BOOL log_quiet_errors) {
    using namespace host_sdk;
    record("ExecuteMAXScriptScript", script, quiet_errors, static_cast<const void*>(result),
           log_quiet_errors);
    drop_last_text();
    if (result != nullptr) {
        result->Free();
    }
    return run_script(script, result);
}
