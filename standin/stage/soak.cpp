#include "standin/stage/soak.h"

#include "resources/resource_ids.h"

namespace stage {

namespace {

constexpr int kOpenDialog = 1497;
constexpr int kCancel = 2; // IDCANCEL
constexpr unsigned kTableClicksInTen = 3;
constexpr unsigned kKeysInTen = 2;
// Packing and sending take seconds, and closing starts over: both are rare.
constexpr unsigned kSlowOneIn = 12;

// Numbers and names of all kinds, good and bad.
const char* const kTexts[] = {
    "",
    "0",
    "-5",
    "16",
    "1,000",
    "32768",
    "32769",
    "2147483648",
    "99999999999999999999",
    "0.1",
    "4.95",
    "1e9",
    "NaN",
    "a:b",
    "\"<>|",
    "  blanks  ",
    "   ",
    "end.",
    "\xE7\x9B\xB8\xE6\x9C\xBA", // a Chinese word
    "\xD0\xBA\xD0\xB0\xD0\xBC", // a Cyrillic one
    "\xF0\x9F\x8E\xA5",         // a film camera, two UTF-16 units
    "a name with more than the hundred characters that a camera's name may have, as some artists' names have",
};

const char* const kKeys[] = {"tab",  "enter", "escape",  "space",     "up",     "down",     "left",
                             "home", "end",   "page_up", "page_down", "delete", "backspace"};

Json::Value step(const char* verb, const Json::Value& arguments) {
    Json::Value value(Json::objectValue);
    value[verb] = arguments;
    return value;
}

Json::Value step_with(const char* verb, const char* key, const Json::Value& value) {
    Json::Value arguments(Json::objectValue);
    arguments[key] = value;
    return step(verb, arguments);
}

bool is_slow(const std::string& dialog, int id) {
    return dialog == "main" && (id == IDC_MAIN_SUBMIT || id == kCancel);
}

} // namespace

Json::Value Soak::next(const SoakView& view) {
    if (view.dialog.empty()) {
        return step_with("menu", "command", kOpenDialog);
    }
    if (view.empty_name) {
        return type_into(IDC_EDIT_NAME);
    }
    const unsigned kind = below(10);
    if (kind < kTableClicksInTen && view.rows > 0) {
        return use_row(view);
    }
    if (kind < kTableClicksInTen + kKeysInTen || view.controls.empty()) {
        return press_key();
    }
    return use_control(view);
}

Json::Value Soak::use_row(const SoakView& view) {
    const int row = static_cast<int>(below(static_cast<unsigned>(view.rows)));
    Json::Value rows(Json::arrayValue);
    rows.append(row);
    switch (below(4)) {
    case 0:
        return step_with("check", "rows", rows);
    case 1:
        return step_with("uncheck", "rows", rows);
    case 2:
        return step_with("select", "rows", rows);
    default:
        return step_with("double_click", "row", row);
    }
}

Json::Value Soak::press_key() {
    return step_with("key", "press", kKeys[below(sizeof kKeys / sizeof kKeys[0])]);
}

Json::Value Soak::type_into(int id) {
    Json::Value arguments(Json::objectValue);
    arguments["control"] = id;
    arguments["text"] = kTexts[below(sizeof kTexts / sizeof kTexts[0])];
    arguments["how"] = below(3) == 0 ? "keys" : "set";
    return step("type", arguments);
}

Json::Value Soak::use_control(const SoakView& view) {
    const SoakControl& control = view.controls[below(static_cast<unsigned>(view.controls.size()))];
    if (is_slow(view.dialog, control.id) && below(kSlowOneIn) != 0) {
        return press_key();
    }
    Json::Value arguments(Json::objectValue);
    arguments["control"] = control.id;
    if (control.window_class == "Edit") {
        return type_into(control.id);
    }
    if (control.window_class == "ComboBox") {
        arguments["item"] = below(2);
        return step("choose", arguments);
    }
    if (control.window_class == "msctls_updown32") {
        arguments["direction"] = below(2) == 0 ? "up" : "down";
        arguments["times"] = 1 + below(3);
        return step("spin", arguments);
    }
    return step("click", arguments);
}

} // namespace stage
