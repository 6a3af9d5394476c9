// Steps in the camera table.
#include "standin/base/text.h"
#include "standin/stage/dialog_state.h"
#include "standin/stage/steps.h"

#include <commctrl.h>

namespace stage {

namespace {

RECT label_of(HWND list, int row) {
    RECT area = {};
    area.left = LVIR_LABEL;
    ::SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&area));
    return area;
}

// A point of the row's check box, left of its label: the list's hit test finds it.
bool check_box_point(HWND list, int row, POINT& point) {
    ::SendMessageW(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
    const RECT label = label_of(list, row);
    for (LONG x = 1; x < label.right; ++x) {
        LVHITTESTINFO hit = {};
        hit.pt = {x, (label.top + label.bottom) / 2};
        ::SendMessageW(list, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
        if (hit.iItem == row && (hit.flags & LVHT_ONITEM) == LVHT_ONITEMSTATEICON) {
            point = hit.pt;
            return true;
        }
    }
    return false;
}

POINT label_point(HWND list, int row) {
    ::SendMessageW(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
    const RECT label = label_of(list, row);
    return {(label.left + label.right) / 2, (label.top + label.bottom) / 2};
}

// Below the last row; false when rows fill the list.
bool empty_point(HWND list, POINT& point) {
    RECT area = {};
    ::GetClientRect(list, &area);
    LVHITTESTINFO hit = {};
    hit.pt = {area.right / 2, area.bottom - 2};
    point = hit.pt;
    return ::SendMessageW(list, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)) == -1;
}

void select_row(HWND list, int row, UINT state) {
    LVITEMW item = {};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    item.state = state;
    ::SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

} // namespace

// Clicks into the check boxes of the rows that are not yet as wanted.
void Steps::set_marks(const Json::Value& arguments, bool wanted) {
    const HWND list = table();
    for (int row : rows_of(arguments["rows"])) {
        POINT point = {};
        bool as_wanted = false;
        bool found = false;
        call([&] {
            as_wanted = is_checked(list, row) == wanted;
            found = check_box_point(list, row, point);
        });
        if (!found) {
            throw StepFailure{"a check box in row " + std::to_string(row), "there is none"};
        }
        if (!as_wanted) {
            click_at(list, point);
            call([&] { as_wanted = is_checked(list, row) == wanted; });
        }
        if (!as_wanted) {
            throw StepFailure{"row " + std::to_string(row) + (wanted ? " checked" : " unchecked"),
                              "it is not"};
        }
    }
}

// These rows and no others; the first one gets the focus.
void Steps::select(const Json::Value& arguments) {
    const HWND list = table();
    const std::vector<int> rows = rows_of(arguments["rows"]);
    call([&] {
        select_row(list, -1, 0);
        for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
            select_row(list, *row, LVIS_SELECTED | LVIS_FOCUSED);
        }
    });
    settle();
}

void Steps::double_click(const Json::Value& arguments) {
    const HWND list = table();
    const bool on_row = arguments.isMember("row");
    const int row = on_row ? row_of(arguments["row"]) : -1;
    POINT point = {};
    bool found = true;
    call([&] {
        if (on_row) {
            point = label_point(list, row);
        } else {
            found = empty_point(list, point);
        }
    });
    if (!found) {
        throw StepFailure{"empty space in the camera table", "rows fill it"};
    }
    const LPARAM place = MAKELPARAM(point.x, point.y);
    click_at(list, point);
    ::PostMessageW(list, WM_LBUTTONDBLCLK, MK_LBUTTON, place);
    ::PostMessageW(list, WM_LBUTTONUP, 0, place);
    settle();
}

} // namespace stage
