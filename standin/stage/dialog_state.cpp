#include "standin/stage/dialog_state.h"

#include "standin/base/text.h"

#include <commctrl.h>

#include <cwchar>

namespace stage {

namespace {

constexpr int kCellLimit = 1024;

bool is_class(HWND window, const wchar_t* name) {
    return ::lstrcmpiW(class_name(window).c_str(), name) == 0;
}

int column_count(HWND table) {
    const auto header = reinterpret_cast<HWND>(::SendMessageW(table, LVM_GETHEADER, 0, 0));
    return header == nullptr ? 0 : static_cast<int>(::SendMessageW(header, HDM_GETITEMCOUNT, 0, 0));
}

Json::Value column_titles(HWND table) {
    Json::Value titles(Json::arrayValue);
    for (int column = 0; column < column_count(table); ++column) {
        wchar_t title[kCellLimit] = {};
        LVCOLUMNW description = {};
        description.mask = LVCF_TEXT;
        description.pszText = title;
        description.cchTextMax = kCellLimit;
        ::SendMessageW(table, LVM_GETCOLUMNW, static_cast<WPARAM>(column),
                       reinterpret_cast<LPARAM>(&description));
        titles.append(base::to_utf8(title));
    }
    return titles;
}

UINT row_state(HWND table, int row, UINT mask) {
    return static_cast<UINT>(::SendMessageW(table, LVM_GETITEMSTATE, static_cast<WPARAM>(row), mask));
}

Json::Value read_row(HWND table, int row, int columns) {
    Json::Value value(Json::objectValue);
    value["name"] = base::to_utf8(cell_text(table, row, 0));
    for (int column = 0; column < columns; ++column) {
        value["cells"].append(base::to_utf8(cell_text(table, row, column)));
    }
    value["checked"] = is_checked(table, row);
    value["selected"] = row_state(table, row, LVIS_SELECTED) != 0;
    return value;
}

void read_table(HWND table, Json::Value& dialog_state) {
    const int columns = column_count(table);
    dialog_state["columns"] = column_titles(table);
    dialog_state["row_count"] = row_count(table);
    dialog_state["rows"] = Json::Value(Json::arrayValue);
    for (int row = 0; row < row_count(table); ++row) {
        dialog_state["rows"].append(read_row(table, row, columns));
    }
}

struct ItemMessages {
    UINT count;
    UINT length;
    UINT text;
};

Json::Value read_items(HWND control, const ItemMessages& messages) {
    Json::Value items(Json::arrayValue);
    const auto count = static_cast<int>(::SendMessageW(control, messages.count, 0, 0));
    for (int i = 0; i < count; ++i) {
        const LRESULT length = ::SendMessageW(control, messages.length, static_cast<WPARAM>(i), 0);
        std::wstring text(length > 0 ? static_cast<std::size_t>(length) + 1 : 1, L'\0');
        ::SendMessageW(control, messages.text, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&text[0]));
        text.resize(std::wcslen(text.c_str()));
        items.append(base::to_utf8(text));
    }
    return items;
}

void read_button(HWND control, Json::Value& value) {
    const auto type = ::GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK;
    if (type == BS_CHECKBOX || type == BS_AUTOCHECKBOX || type == BS_RADIOBUTTON ||
        type == BS_AUTORADIOBUTTON) {
        value["checked"] = ::SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED;
    }
}

void read_list_box(HWND control, Json::Value& value) {
    value["lines"] = read_items(control, {LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT});
}

void read_combo_box(HWND control, Json::Value& value) {
    value["items"] = read_items(control, {CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT});
    value["selected"] = static_cast<Json::Int>(::SendMessageW(control, CB_GETCURSEL, 0, 0));
}

void read_up_down(HWND control, Json::Value& value) {
    value["position"] = static_cast<Json::Int>(::SendMessageW(control, UDM_GETPOS32, 0, 0));
}

struct ControlReader {
    const wchar_t* window_class;
    void (*read)(HWND control, Json::Value& value);
};

const ControlReader kReaders[] = {
    {L"Button", read_button},
    {L"ListBox", read_list_box},
    {L"ComboBox", read_combo_box},
    {L"msctls_updown32", read_up_down},
};

// The dialog's own control, also when a window inside that control has the focus.
HWND control_with_focus(HWND dialog) {
    HWND control = ::GetFocus();
    while (::IsChild(dialog, control) != FALSE && ::GetParent(control) != dialog) {
        control = ::GetParent(control);
    }
    return control;
}

Json::Value read_control(HWND control) {
    Json::Value value(Json::objectValue);
    value["text"] = base::to_utf8(window_text(control));
    value["enabled"] = ::IsWindowEnabled(control) != FALSE;
    for (const ControlReader& reader : kReaders) {
        if (is_class(control, reader.window_class)) {
            reader.read(control, value);
        }
    }
    return value;
}

} // namespace

std::wstring class_name(HWND window) {
    wchar_t name[128] = {};
    ::GetClassNameW(window, name, 128);
    return name;
}

std::wstring window_text(HWND window) {
    const auto length = static_cast<std::size_t>(::SendMessageW(window, WM_GETTEXTLENGTH, 0, 0));
    std::wstring text(length + 1, L'\0');
    ::SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(&text[0]));
    text.resize(std::wcslen(text.c_str())); // a control may report more than it returns
    return text;
}

std::wstring cell_text(HWND table, int row, int column) {
    wchar_t text[kCellLimit] = {};
    LVITEMW item = {};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = kCellLimit;
    ::SendMessageW(table, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return item.pszText == nullptr ? std::wstring() : item.pszText;
}

int row_count(HWND table) {
    return static_cast<int>(::SendMessageW(table, LVM_GETITEMCOUNT, 0, 0));
}

bool is_checked(HWND table, int row) {
    return row_state(table, row, LVIS_STATEIMAGEMASK) == INDEXTOSTATEIMAGEMASK(2);
}

HWND camera_table(HWND dialog) {
    return ::FindWindowExW(dialog, nullptr, WC_LISTVIEWW, nullptr);
}

Json::Value read_dialog_state(HWND dialog) {
    Json::Value value(Json::objectValue);
    value["open"] = dialog != nullptr;
    if (dialog == nullptr) {
        return value;
    }
    value["title"] = base::to_utf8(window_text(dialog));
    value["focus"] = ::GetDlgCtrlID(control_with_focus(dialog));
    value["controls"] = Json::Value(Json::objectValue);
    for (HWND control = ::GetWindow(dialog, GW_CHILD); control != nullptr;
         control = ::GetWindow(control, GW_HWNDNEXT)) {
        const int id = ::GetDlgCtrlID(control);
        if (id > 0 && id != 0xFFFF) {
            value["controls"][std::to_string(id)] = read_control(control);
        }
    }
    const HWND table = camera_table(dialog);
    if (table != nullptr) {
        read_table(table, value);
    }
    return value;
}

} // namespace stage
