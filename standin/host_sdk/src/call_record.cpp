#include "call_record.h"

#include "menus.h"

#include <cwchar>

namespace host_sdk {

namespace {

template <class Value>
std::wstring formatted(const wchar_t* format, Value value) {
    wchar_t text[64] = {};
    std::swprintf(text, sizeof(text) / sizeof(text[0]), format, value);
    return text;
}

} // namespace

std::wstring show(const wchar_t* text) {
    return text == nullptr ? L"null" : L"\"" + std::wstring(text) + L"\"";
}

std::wstring show(const WStr& text) {
    return show(text.data());
}

std::wstring show(int value) {
    return std::to_wstring(value);
}

std::wstring show(DWORD value) {
    return formatted(L"0x%08lX", value);
}

std::wstring show(float value) {
    return formatted(L"%g", static_cast<double>(value));
}

std::wstring show(IMenu* menu) {
    return menu == nullptr ? L"null" : L"menu " + show(static_cast<Menu*>(menu)->title);
}

std::wstring show(IMenuItem* item) {
    if (item == nullptr) {
        return L"null";
    }
    const MenuItem& known = *static_cast<MenuItem*>(item);
    return known.mode == MenuItem::Mode::separator ? L"separator"
                                                   : L"item " + show(known.shown_text().c_str());
}

std::wstring show(ActionTable* table) {
    return table == nullptr ? L"null" : L"table " + show(table->GetName());
}

std::wstring show(const void* pointer) {
    return pointer == nullptr ? L"null" : L"object";
}

bool report(const char* name, const std::wstring& arguments) {
    return state().recorder->on_call(name, arguments);
}

} // namespace host_sdk
