// Filling the camera table against the same messages with nothing around them, on a real list view.
#include "bench/harness.h"
#include "bench/measurements.h"
#include "dialog/controls.h"
#include "dialog/ui_state.h"
#include "resources/resource_ids.h"
#include "tests/support/dialog_metrics.h"

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

namespace {

constexpr int kCells = 7;

tarvo::CameraMap cameras_of(int count) {
    tarvo::CameraMap cameras;
    for (int i = 0; i < count; ++i) {
        tarvo::CameraRecord camera;
        camera.image_width = 1920;
        camera.image_height = 1080;
        camera.image_format = L"JPG";
        camera.img_output_name = L"Camera" + std::to_wstring(i);
        cameras[camera.img_output_name] = camera;
    }
    return cameras;
}

// The bare loop: the texts are there already, and the messages are the table's own.
struct Row {
    std::wstring cells[kCells];
};

std::vector<Row> rows_of(const tarvo::CameraMap& cameras) {
    std::vector<Row> rows;
    for (const auto& camera : cameras) {
        rows.push_back(
            {{camera.first, L"1920", L"1080", L"0", L"No", L"JPG", camera.second.img_output_name}});
    }
    return rows;
}

void fill_bare(HWND list, std::vector<Row>& rows) {
    constexpr UINT clear_box = 0x1000;
    ::SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    ::SendMessageW(list, LVM_DELETEALLITEMS, 0, 0);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        LVITEMW item = {};
        item.iItem = static_cast<int>(i);
        item.cchTextMax = tarvo::kControlTextLimit;
        for (int cell = 0; cell < kCells; ++cell) {
            item.mask = LVIF_TEXT;
            item.iSubItem = cell;
            item.pszText = &rows[i].cells[cell][0];
            ::SendMessageW(list, cell == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0,
                           reinterpret_cast<LPARAM>(&item));
        }
        LVITEMW state = {};
        state.stateMask = LVIS_STATEIMAGEMASK;
        state.state = clear_box;
        ::SendMessageW(list, LVM_SETITEMSTATE, i, reinterpret_cast<LPARAM>(&state));
    }
    ::SendMessageW(list, WM_SETREDRAW, TRUE, 0);
}

tarvo_bench::Ratio measure(HWND list, int count, int rounds) {
    const tarvo::CameraMap cameras = cameras_of(count);
    std::vector<Row> rows = rows_of(cameras);
    return tarvo_bench::compare(
        rounds, [&] { tarvo::UiState::instance().UpdateCameraTable(list, cameras); },
        [&] { fill_bare(list, rows); });
}

} // namespace

void tarvo_bench::measure_table() {
    const support::LiveDialog dialog(IDD_MAIN, support::kEnglish);
    HWND list = dialog.control(IDC_MAIN_CAMERAS);
    if (list == nullptr) {
        report("the camera table: no window can be made", 0, 0);
        return;
    }
    ::ShowWindow(dialog.window(), SW_SHOWNOACTIVATE);
    ::SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0,
                   LVS_EX_GRIDLINES | LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    tarvo::UiState::instance().CreateCameraTableHead(list);
    const Ratio thousand = measure(list, 1000, 15);
    const Ratio ten_thousand = measure(list, 10000, 7);
    report("camera table / bare loop, 1,000 cameras", thousand.ratio(), 1.2);
    report("camera table / bare loop, 10,000 cameras", ten_thousand.ratio(), 1.2);
    report("camera table, growth of time from 1,000 to 10,000 cameras",
           ten_thousand.subject_seconds / thousand.subject_seconds, 11.0);
}
