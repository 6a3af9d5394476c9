#include "standin/stage/dialog_watch.h"

#include "standin/stage/dialog_state.h"
#include "standin/stage/import_table.h"

#include <commctrl.h>

#include <exception>

namespace stage {

namespace {

constexpr UINT kRefillTable = WM_USER + 1;
constexpr UINT kUnknownMessage = WM_USER + 2; // the module has no handler for it

DialogWatch* g_watch = nullptr;
AnyFunction g_dialog_box = nullptr;
AnyFunction g_end_dialog = nullptr;

INT_PTR WINAPI watched_dialog_box(HINSTANCE instance, const wchar_t* name, HWND owner, DLGPROC procedure,
                                  LPARAM parameter) {
    return g_watch->show(instance, name, owner, procedure, parameter);
}

BOOL WINAPI watched_end_dialog(HWND dialog, INT_PTR result) {
    return g_watch->end(dialog, result);
}

INT_PTR CALLBACK watched_procedure(HWND dialog, UINT message, WPARAM w_param, LPARAM l_param) {
    return g_watch->message(dialog, message, w_param, l_param);
}

struct MessageName {
    UINT message;
    const char* name;
};

const MessageName kRecorded[] = {
    {WM_INITDIALOG, "WM_INITDIALOG"}, {WM_COMMAND, "WM_COMMAND"},     {WM_NOTIFY, "WM_NOTIFY"},
    {WM_CLOSE, "WM_CLOSE"},           {WM_DESTROY, "WM_DESTROY"},     {kRefillTable, "WM_USER+1"},
    {kUnknownMessage, "WM_USER+2"},   {WM_MOUSEMOVE, "WM_MOUSEMOVE"}, {WM_LBUTTONDOWN, "WM_LBUTTONDOWN"},
    {WM_LBUTTONUP, "WM_LBUTTONUP"},
};

// The notifications that mean a user's action; controls send many others.
bool is_user_notification(LPARAM l_param) {
    const UINT code = reinterpret_cast<const NMHDR*>(l_param)->code;
    return code == static_cast<UINT>(NM_DBLCLK) || code == static_cast<UINT>(NM_CLICK) ||
           code == static_cast<UINT>(UDN_DELTAPOS);
}

// Empty: not recorded.
std::string recorded_name(UINT message, LPARAM l_param) {
    for (const MessageName& known : kRecorded) {
        if (known.message == message) {
            return message == WM_NOTIFY && !is_user_notification(l_param) ? "" : known.name;
        }
    }
    return std::string();
}

Json::Value describe_message(int template_id, const std::string& name, UINT message, WPARAM w_param,
                             LPARAM l_param) {
    Json::Value entry(Json::objectValue);
    entry["dialog"] = template_id;
    entry["message"] = name;
    if (message == WM_COMMAND) {
        entry["id"] = static_cast<int>(LOWORD(w_param));
        entry["code"] = static_cast<int>(HIWORD(w_param));
    } else if (message == WM_NOTIFY) {
        const auto* header = reinterpret_cast<const NMHDR*>(l_param);
        entry["id"] = static_cast<Json::Int>(header->idFrom);
        entry["code"] = static_cast<Json::Int>(header->code);
    }
    entry["result"] = Json::Value();
    return entry;
}

} // namespace

const char* dialog_name(int template_id) {
    return template_id == kMainTemplate ? "main" : template_id == kEditTemplate ? "edit" : "other";
}

void DialogWatch::install(HMODULE module) {
    g_watch = this;
    replace_import(module,
                   {"DialogBoxParamW", reinterpret_cast<AnyFunction>(&watched_dialog_box), &g_dialog_box});
    replace_import(module, {"EndDialog", reinterpret_cast<AnyFunction>(&watched_end_dialog), &g_end_dialog});
}

HWND DialogWatch::window(int template_id) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const OpenDialog& open : open_) {
        if (open.template_id == template_id) {
            return open.window;
        }
    }
    return nullptr;
}

HWND DialogWatch::top() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return open_.empty() ? nullptr : open_.back().window;
}

std::string DialogWatch::name_of_window(HWND window) const {
    if (window == nullptr) {
        return "none";
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const OpenDialog& open : open_) {
        if (open.window == window) {
            return dialog_name(open.template_id);
        }
    }
    return window == frame_ ? "frame" : "other";
}

INT_PTR DialogWatch::show(HINSTANCE instance, const wchar_t* template_name, HWND owner, DLGPROC procedure,
                          LPARAM parameter) {
    Json::Value entry(Json::objectValue);
    const int template_id = IS_INTRESOURCE(template_name) ? LOWORD(template_name) : 0;
    entry["template"] = template_id;
    entry["owner"] = name_of_window(owner);
    entry["result"] = Json::Value();
    const Json::ArrayIndex index = transcript_.append("dialogs", entry);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        open_.push_back({template_id, procedure, nullptr});
    }
    const INT_PTR result = reinterpret_cast<decltype(&::DialogBoxParamW)>(g_dialog_box)(
        instance, template_name, owner, &watched_procedure, parameter);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        open_.pop_back();
    }
    transcript_.amend("dialogs", index, "result", static_cast<Json::Int64>(result));
    return result;
}

BOOL DialogWatch::end(HWND dialog, INT_PTR result) {
    const OpenDialog open = find(dialog);
    // The last moment at which the controls can be read.
    Json::Value state = read_dialog_state(dialog);
    state["open"] = false;
    transcript_.set("dialog_state", dialog_name(open.template_id), state);
    return reinterpret_cast<decltype(&::EndDialog)>(g_end_dialog)(dialog, result);
}

// A dialog's first message has its window; the newest dialog has none until then.
DialogWatch::OpenDialog DialogWatch::find(HWND dialog) {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const OpenDialog& open : open_) {
        if (open.window == dialog) {
            return open;
        }
    }
    if (!open_.empty() && open_.back().window == nullptr) {
        open_.back().window = dialog;
        return open_.back();
    }
    return {0, nullptr, dialog};
}

// The stage is a host that survives an exception of a dialog procedure, which must not reach the system's
// frames.
INT_PTR DialogWatch::guarded_call(const OpenDialog& open, HWND dialog, UINT message, WPARAM w_param,
                                  LPARAM l_param) {
    Json::Value entry(Json::objectValue);
    entry["dialog"] = open.template_id;
    try {
        return open.procedure == nullptr ? FALSE : open.procedure(dialog, message, w_param, l_param);
    } catch (const std::exception& error) {
        entry["what"] = error.what();
    } catch (...) {
        entry["what"] = "not a standard exception";
    }
    transcript_.append("exceptions", entry);
    return FALSE;
}

INT_PTR DialogWatch::message(HWND dialog, UINT message, WPARAM w_param, LPARAM l_param) {
    const OpenDialog open = find(dialog);
    if (windows_radio_buttons_ && message == WM_INITDIALOG) {
        play_windows_radio_buttons(dialog);
    }
    if (message == WM_COMMAND && is_replaced_radio_click(w_param, l_param)) {
        return FALSE;
    }
    const std::string name = recorded_name(message, l_param);
    if (name.empty()) {
        return guarded_call(open, dialog, message, w_param, l_param);
    }
    const Json::ArrayIndex index =
        transcript_.append("commands", describe_message(open.template_id, name, message, w_param, l_param));
    const INT_PTR result = guarded_call(open, dialog, message, w_param, l_param);
    transcript_.amend("commands", index, "result", static_cast<Json::Int64>(result));
    return result;
}

} // namespace stage
