#include "dialog/ui_state.h"

#include "common/string_table.h"
#include "dialog/controls.h"
#include "resources/resource_ids.h"

#include <windows.h>

#include <commctrl.h>

#include <cwchar>

namespace tarvo {

namespace {

enum Column { kCamera, kWidth, kHeight, kStartFrame, kSpherical, kFormat, kRenderName };

struct ColumnHead {
    Column column;
    unsigned text_id;
    int width; // pixels
};

// Texts 34 and 33 in this order (C-14).
constexpr ColumnHead kColumns[] = {
    {kCamera, IDS_COLUMN_CAMERA, 200},          {kWidth, IDS_COLUMN_WIDTH, 70},
    {kHeight, IDS_COLUMN_HEIGHT, 70},           {kStartFrame, IDS_COLUMN_START_FRAME, 60},
    {kSpherical, IDS_COLUMN_SPHERICAL, 60},     {kFormat, IDS_COLUMN_FORMAT, 60},
    {kRenderName, IDS_COLUMN_RENDER_NAME, 200},
};

constexpr unsigned kStateImageShift = 12;

constexpr const char* kNothingToShow = "No cameras or Create camera table failed!";

void insert_column(HWND list, const ColumnHead& head) {
    std::wstring text = Text(head.text_id);
    LVCOLUMNW column = {};
    column.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
    column.fmt = LVCFMT_CENTER;
    column.cx = head.width;
    column.pszText = &text[0];
    column.iOrder = head.column; // not in the mask (C-14)
    ::SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(head.column),
                   reinterpret_cast<LPARAM>(&column));
}

// Takes the text by value: the control's record has a pointer to non-const text.
bool write_cell(HWND list, UINT message, int row, Column column, std::wstring text) {
    LVITEMW item = {};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.iSubItem = column;
    item.pszText = &text[0];
    item.cchTextMax = kControlTextLimit;
    const LRESULT result = ::SendMessageW(list, message, 0, reinterpret_cast<LPARAM>(&item));
    return message == LVM_INSERTITEMW ? result == row : result != FALSE;
}

void set_box(HWND list, int row, bool ticked) {
    LVITEMW item = {};
    item.stateMask = LVIS_STATEIMAGEMASK;
    item.state = INDEXTOSTATEIMAGEMASK(ticked ? kTickedBox : kClearBox);
    ::SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

enum class Boxes { unticked, from_records };

// Whether every cell took its text.
bool add_row(HWND list, int row, const CameraMap::value_type& entry, Boxes boxes) {
    const CameraRecord& camera = entry.second;
    bool whole = write_cell(list, LVM_INSERTITEMW, row, kCamera, entry.first);
    if (boxes == Boxes::from_records) {
        set_box(list, row, camera.checked);
    }
    whole = write_cell(list, LVM_SETITEMW, row, kWidth, std::to_wstring(camera.image_width)) && whole;
    whole = write_cell(list, LVM_SETITEMW, row, kHeight, std::to_wstring(camera.image_height)) && whole;
    whole = write_cell(list, LVM_SETITEMW, row, kStartFrame, std::to_wstring(camera.start_frame)) && whole;
    whole = write_cell(list, LVM_SETITEMW, row, kFormat, camera.image_format) && whole;
    whole = write_cell(list, LVM_SETITEMW, row, kRenderName, camera.img_output_name) && whole;
    // After the cells to its right (C-15).
    return write_cell(list, LVM_SETITEMW, row, kSpherical, Text(camera.is_spherical ? IDS_YES : IDS_NO)) &&
           whole;
}

// False without a list or cameras; the list then stays as it is.
bool show_cameras(HWND list, const CameraMap& cameras, Boxes boxes, Logger& log) {
    if (list == nullptr || cameras.empty()) {
        return false;
    }
    const RedrawPause pause(list);
    if (boxes == Boxes::from_records) {
        ::SendMessageW(list, LVM_DELETEALLITEMS, 0, 0);
    }
    int row = 0;
    int broken = 0;
    for (const CameraMap::value_type& entry : cameras) {
        broken += add_row(list, row, entry, boxes) ? 0 : 1;
        ++row;
    }
    if (broken > 0 || ::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) != row) {
        log.Write("The camera table is not whole: rows with empty cells: " + std::to_string(broken), kError);
    }
    return true;
}

} // namespace

CameraRow ReadCameraRow(HWND list, int index) {
    const LRESULT state =
        ::SendMessageW(list, LVM_GETITEMSTATE, static_cast<WPARAM>(index), LVIS_STATEIMAGEMASK);
    wchar_t buffer[kControlTextLimit] = {};
    LVITEMW item = {};
    item.pszText = buffer;
    item.cchTextMax = kControlTextLimit;
    ::SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    CameraRow row;
    // The control may return a pointer to its own text instead of filling the buffer.
    if (item.pszText != nullptr) {
        row.text.assign(item.pszText, ::wcsnlen(item.pszText, kControlTextLimit - 1));
    }
    row.state_image = static_cast<unsigned>(state) >> kStateImageShift;
    return row;
}

bool UiState::CreateCameraTableHead(HWND list) {
    if (list == nullptr) {
        log.Write("No handle result in creating camera table head failed.", kError);
        return false;
    }
    for (const ColumnHead& head : kColumns) {
        insert_column(list, head);
    }
    return true;
}

bool UiState::CreateCameraTable(HWND list, const CameraMap& cameras) {
    const bool shown = show_cameras(list, cameras, Boxes::unticked, log);
    log.Write(shown ? "Create camera table successfully." : kNothingToShow, shown ? kInfo : kWarn);
    return shown;
}

bool UiState::UpdateCameraTable(HWND list, const CameraMap& cameras) {
    const bool shown = show_cameras(list, cameras, Boxes::from_records, log);
    log.Write(shown ? "Update camera table successfully." : kNothingToShow, shown ? kInfo : kWarn);
    return shown;
}

bool UiState::SelectAllCameras(HWND dialog, CameraMap& cameras) {
    for (CameraMap::value_type& entry : cameras) {
        entry.second.checked = true;
    }
    return UpdateCameraTable(DialogItem(dialog, IDC_MAIN_CAMERAS), cameras);
}

bool UiState::InvertCameraSelection(HWND dialog, CameraMap& cameras) {
    HWND list = DialogItem(dialog, IDC_MAIN_CAMERAS);
    // Take the count before the loop: an unknown row inserts a camera.
    const int count = static_cast<int>(cameras.size());
    for (int index = 0; index < count; ++index) {
        const CameraRow row = ReadCameraRow(list, index);
        cameras[row.text].checked = row.state_image == kClearBox;
    }
    return UpdateCameraTable(list, cameras);
}

std::int32_t UiState::validate_cameras(HWND dialog, CameraMap& cameras) {
    HWND list = DialogItem(dialog, IDC_MAIN_CAMERAS);
    const auto row = [list](int index) { return ReadCameraRow(list, index); };
    return static_cast<std::int32_t>(CheckCameras(row, cameras, log));
}

} // namespace tarvo
