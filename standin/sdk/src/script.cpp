// Running script text, and the ways in which a text comes back.
#include "call_record.h"

#include "maxscript/maxscript.h"

namespace host_standin {

namespace {

// The text of the script value that was returned last. A script's value does not outlive the next script, so the
// memory is filled with nonsense and given back then: a plug-in that kept the pointer shows it.
wchar_t* g_last_text = nullptr;

void drop_last_text() {
    for (wchar_t* at = g_last_text; at != nullptr && *at != L'\0'; ++at) {
        *at = L'?';
    }
    delete[] g_last_text;
    g_last_text = nullptr;
}

const wchar_t* keep_text(const std::wstring& text) {
    g_last_text = new wchar_t[text.size() + 1];
    text.copy(g_last_text, text.size());
    g_last_text[text.size()] = L'\0';
    return g_last_text;
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

void clear_script() { drop_last_text(); }

} // namespace host_standin

BOOL ExecuteMAXScriptScript(const MCHAR* script, BOOL quiet_errors, FPValue* result, BOOL log_quiet_errors) {
    using namespace host_standin;
    record("ExecuteMAXScriptScript", script, quiet_errors, static_cast<const void*>(result), log_quiet_errors);
    drop_last_text();
    if (result != nullptr) {
        result->Free();
    }
    return script == nullptr ? FALSE : run_script(script, result);
}
