// Steps with mouse and keyboard.
#include "standin/base/text.h"
#include "standin/stage/dialog_state.h"
#include "standin/stage/json_match.h"
#include "standin/stage/steps.h"

#include <commctrl.h>

#include <algorithm>

namespace stage {

namespace {

struct KeyName {
    const char* name;
    WPARAM key;
};

const KeyName kKeys[] = {
    {"tab", VK_TAB},        {"enter", VK_RETURN},  {"escape", VK_ESCAPE},  {"space", VK_SPACE},
    {"up", VK_UP},          {"down", VK_DOWN},     {"left", VK_LEFT},      {"home", VK_HOME},
    {"end", VK_END},        {"page_up", VK_PRIOR}, {"page_down", VK_NEXT}, {"delete", VK_DELETE},
    {"backspace", VK_BACK},
};

POINT middle_of(HWND window) {
    RECT area = {};
    ::GetClientRect(window, &area);
    return {area.right / 2, area.bottom / 2};
}

// A point of the control's first link, or the middle.
POINT link_point(HWND control) {
    RECT area = {};
    ::GetClientRect(control, &area);
    for (LONG y = 1; y < area.bottom; y += 3) {
        for (LONG x = 1; x < area.right; x += 3) {
            LHITTESTINFO hit = {};
            hit.pt = {x, y};
            if (::SendMessageW(control, LM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)) != FALSE) {
                return hit.pt;
            }
        }
    }
    return middle_of(control);
}

bool is_link(HWND control) {
    return class_name(control) == WC_LINK;
}

void hold_shift(bool held) {
    BYTE keys[256] = {};
    ::GetKeyboardState(keys);
    keys[VK_SHIFT] = held ? 0x80 : 0;
    ::SetKeyboardState(keys);
}

void focus_on(HWND control) {
    ::SendMessageW(::GetParent(control), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
}

} // namespace

void Steps::click_at(HWND window, POINT point) {
    const LPARAM place = MAKELPARAM(point.x, point.y);
    ::PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, place);
    ::PostMessageW(window, WM_LBUTTONUP, 0, place);
    settle();
}

// To the window with the focus, as the system would send it.
void Steps::press_key(WPARAM key, bool shift) {
    HWND focus = nullptr;
    call([&focus, shift] {
        focus = ::GetFocus();
        hold_shift(shift);
    });
    const HWND target = focus != nullptr ? focus : run_.frame.window();
    ::PostMessageW(target, WM_KEYDOWN, key, 1);
    ::PostMessageW(target, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
    settle();
    call([] { hold_shift(false); });
}

// A control of the host may have an inner edit control that gets the focus.
HWND Steps::focused_in(HWND control) {
    HWND focus = nullptr;
    call([&focus] { focus = ::GetFocus(); });
    return ::IsChild(control, focus) != FALSE ? focus : control;
}

void Steps::type(const Json::Value& arguments) {
    const HWND edit = usable_control(arguments);
    const std::wstring text = base::to_wide(arguments["text"].asString());
    const std::string how = arguments.get("how", "keys").asString();
    if (how == "set") {
        // Posted, not called: the change may open a box, which this thread answers.
        run_.ui->post([edit, text] { ::SetWindowTextW(edit, text.c_str()); });
        settle();
        return;
    }
    run_.ui->post([edit] { focus_on(edit); });
    settle();
    const HWND target = focused_in(edit);
    run_.ui->post([target, how] {
        ::SendMessageW(target, EM_SETSEL, how == "append" ? 0x7FFFFFFF : 0,
                       how == "append" ? 0x7FFFFFFF : -1);
    });
    settle();
    if (text.empty() && how == "keys") {
        ::PostMessageW(target, WM_CHAR, VK_BACK, 1);
        settle();
    }
    for (wchar_t character : text) {
        ::PostMessageW(target, WM_CHAR, character, 1);
        settle();
    }
}

void Steps::spin(const Json::Value& arguments) {
    const HWND spinner = usable_control(arguments);
    const bool up = arguments["direction"].asString() == "up";
    const unsigned times = arguments.get("times", 1).asUInt();
    if (arguments.get("by", "click").asString() == "key") {
        const auto buddy = reinterpret_cast<HWND>(::SendMessageW(spinner, UDM_GETBUDDY, 0, 0));
        if (buddy == nullptr) {
            throw StepFailure{"a spinner with a field", "it has none"};
        }
        call([buddy] { focus_on(buddy); });
    }
    RECT area = {};
    ::GetClientRect(spinner, &area);
    const POINT half = {area.right / 2, up ? area.bottom / 4 : area.bottom - 1 - area.bottom / 4};
    for (unsigned i = 0; i < times; ++i) {
        if (arguments.get("by", "click").asString() == "key") {
            press_key(up ? VK_UP : VK_DOWN);
        } else {
            click_at(spinner, half);
        }
    }
}

// As when a user chooses: the selection first, then the notification.
void Steps::choose(const Json::Value& arguments) {
    const HWND combo = usable_control(arguments);
    const int id = arguments["control"].asInt();
    const Json::Value& item = arguments["item"];
    const Json::Value texts = run_.module.texts();
    Json::Value items;
    call([&] { items = read_dialog_state(::GetParent(combo))["controls"][std::to_string(id)]["items"]; });
    int index = item.isInt() ? item.asInt() : -1;
    for (Json::ArrayIndex i = 0; i < items.size() && !item.isInt() && index < 0; ++i) {
        index = Matcher(texts).matches(item, items[i]) ? static_cast<int>(i) : -1;
    }
    if (index < 0 || index >= static_cast<int>(items.size())) {
        throw StepFailure{"an entry " + compact(item), compact(items)};
    }
    run_.ui->post([combo, index, id] {
        ::SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        ::SendMessageW(::GetParent(combo), WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE),
                       reinterpret_cast<LPARAM>(combo));
    });
    settle();
}

void Steps::click(const Json::Value& arguments) {
    const HWND target = usable_control(arguments);
    POINT point = middle_of(target);
    if (is_link(target)) {
        call([&] { point = link_point(target); });
    }
    click_at(target, point);
}

void Steps::key(const Json::Value& arguments) {
    if (arguments.isMember("access")) {
        const std::wstring letter = base::to_wide(arguments["access"].asString());
        HWND focus = nullptr;
        call([&focus] { focus = ::GetFocus(); });
        if (focus == nullptr || letter.size() != 1) {
            throw StepFailure{"one letter and a control with the focus", compact(arguments)};
        }
        constexpr LPARAM alt_is_down = 0x20000001;
        ::PostMessageW(focus, WM_SYSCHAR, letter[0], alt_is_down);
        settle();
        return;
    }
    const std::string name = arguments["press"].asString();
    const bool shift = name == "shift_tab";
    const auto known = std::find_if(std::begin(kKeys), std::end(kKeys), [&](const KeyName& entry) {
        return entry.name == (shift ? "tab" : name);
    });
    if (known == std::end(kKeys)) {
        throw StepFailure{"a key of the stage", name};
    }
    press_key(known->key, shift);
}

// Like a switch to another program and back: the dialog restores its focus.
void Steps::switch_away(const Json::Value& arguments) {
    const HWND own = dialog(arguments);
    run_.ui->post([own] {
        const HWND other = ::CreateWindowExW(0, WC_STATICW, L"", WS_POPUP | WS_VISIBLE, 0, 0, 1, 1, nullptr,
                                             nullptr, ::GetModuleHandleW(nullptr), nullptr);
        ::SetActiveWindow(other);
        ::SetActiveWindow(own);
        ::DestroyWindow(other);
    });
    settle();
}

void Steps::post(const Json::Value& arguments) {
    ::PostMessageW(dialog(arguments), arguments["message"].asUInt(),
                   static_cast<WPARAM>(arguments.get("wparam", 0).asInt64()), 0);
    settle();
}

// What the cross in the corner does.
void Steps::close(const Json::Value& arguments) {
    ::PostMessageW(dialog(arguments), WM_SYSCOMMAND, SC_CLOSE, 0);
    settle();
}

} // namespace stage
