#include "dialog/dialogs.h"

#include "common/activation_context.h"
#include "common/guard.h"
#include "common/message_box.h"
#include "dialog/controls.h"
#include "dialog/sequences.h"
#include "dialog/ui_state.h"
#include "scene/scene_data.h"

#include <windows.h>

#include <commctrl.h>

#include <utility>

namespace tarvo {

namespace {

constexpr INT_PTR kNotHandled = 0;
constexpr INT_PTR kHandled = 1;

struct Call {
    HWND dialog;
    UINT message;
    WPARAM w_param;
    LPARAM l_param;
};

INT_PTR handled(const Call&) {
    return kHandled;
}

INT_PTR end_dialog(const Call& call) {
    ::EndDialog(call.dialog, 0);
    return kHandled;
}

INT_PTR initialise(const Call& call) {
    UiState::instance().InitOutputControls(call.dialog);
    SetHelpLinkTarget(call.dialog, IDC_MAIN_LINK);
    return RunOpeningSequence(call.dialog, true);
}

INT_PTR analyse_again(const Call& call) {
    return RunOpeningSequence(call.dialog, false);
}

INT_PTR submit(const Call& call) {
    return RunSubmitSequence(call.dialog);
}

HWND camera_table(const Call& call) {
    return DialogItem(call.dialog, IDC_MAIN_CAMERAS);
}

INT_PTR refill_table(const Call& call) {
    UiState::instance().UpdateCameraTable(camera_table(call), SceneData::instance().cameras());
    return kHandled;
}

INT_PTR invert_cameras(const Call& call) {
    UiState::instance().InvertCameraSelection(call.dialog, SceneData::instance().cameras());
    return kHandled;
}

INT_PTR select_all_cameras(const Call& call) {
    UiState::instance().SelectAllCameras(call.dialog, SceneData::instance().cameras());
    return kHandled;
}

// Writes the table's check marks into the store; returns the number of rows. A row that no camera belongs to
// adds one (C-67).
int store_check_marks(HWND list) {
    CameraMap& cameras = SceneData::instance().cameras();
    CameraMap marked = cameras;
    const int count = static_cast<int>(cameras.size());
    for (int index = 0; index < count; ++index) {
        const CameraRow row = ReadCameraRow(list, index);
        marked[row.text].checked = row.state_image == kTickedBox;
    }
    cameras = std::move(marked);
    return count;
}

int next_row(HWND list, int after, unsigned flags) {
    return static_cast<int>(
        ::SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(after), static_cast<LPARAM>(flags)));
}

void pick_camera(HWND list, int index) {
    std::wstring name = ReadCameraRow(list, index).text;
    UiState::instance().add_selected_camera(name);
}

INT_PTR edit_picked_cameras(const Call& call) {
    if (!UiState::instance().selected_cameras().empty()) {
        OpenCameraEditDialog(call.dialog, reinterpret_cast<LPARAM>(&TarvoRenderingConfigMgr::instance()));
    }
    return kHandled;
}

INT_PTR edit_selected_cameras(const Call& call) {
    HWND list = camera_table(call);
    const int count = store_check_marks(list);
    UiState::instance().clear_selected_cameras();
    int index = -1;
    for (int searches = 0; searches < count; ++searches) {
        // The search wraps round after the last selected row: a name may come more than once, without harm.
        index = next_row(list, index, LVNI_SELECTED);
        if (index != -1 && index < count) {
            pick_camera(list, index);
        }
    }
    return edit_picked_cameras(call);
}

INT_PTR edit_clicked_camera(const Call& call) {
    if (reinterpret_cast<const NMITEMACTIVATE*>(call.l_param)->iItem < 0) {
        return kHandled;
    }
    HWND list = camera_table(call);
    const int count = store_check_marks(list);
    const int index = next_row(list, -1, LVNI_FOCUSED | LVNI_SELECTED);
    if (index == -1 || index >= count) {
        return kHandled;
    }
    UiState::instance().clear_selected_cameras();
    pick_camera(list, index);
    return edit_picked_cameras(call);
}

constexpr std::int32_t kNoBlocks = 1;
constexpr std::int32_t kSomeBlocks = 10;
constexpr std::int32_t kMostBlocks = 64;
constexpr std::int32_t kOnlyTimeLimited = 2;

INT_PTR choose_no_blocks(const Call&) {
    SceneData::instance().set_num_blocks(kNoBlocks);
    return kHandled;
}

INT_PTR choose_blocks(const Call& call) {
    // On Windows a radio button that gets the focus reports a click, and a box that closes gives the focus
    // back: that click must not open the box again.
    static bool box_is_open = false;
    struct Closing {
        ~Closing() { box_is_open = false; }
    };
    if (box_is_open) {
        return kHandled;
    }
    box_is_open = true;
    Closing closing;
    SceneData& scene = SceneData::instance();
    if (scene.is_region() == "true") {
        ShowBox(call.dialog, IDS_BLOCKS_WITH_REGION);
        CheckNoBlocks(call.dialog);
        // On the refused button the focus would show the box again each time the dialog is activated.
        ::SetFocus(DialogItem(call.dialog, IDC_MAIN_BLOCKS_1));
        return choose_no_blocks(call);
    }
    const std::int32_t blocks = LOWORD(call.w_param) == IDC_MAIN_BLOCKS_10 ? kSomeBlocks : kMostBlocks;
    scene.set_num_blocks(blocks);
    const bool only_time_limited = scene.corona_limits == kOnlyTimeLimited;
    if (only_time_limited || blocks == kMostBlocks) {
        ShowBox(call.dialog, only_time_limited ? IDS_BLOCKS_CORONA_HINT : IDS_BLOCKS_64_HINT, kBoxOk,
                IDS_NAME_CAPTION);
    }
    return kHandled;
}

struct SteppedField {
    WPARAM spinner;
    int field;
    float minimum;
    float maximum;
};

constexpr SteppedField kSteppedFields[] = {
    {IDC_MAIN_GAMMA_SPIN, IDC_MAIN_GAMMA, 0.1f, 5.0f},
    {IDC_MAIN_AO_RADIUS_SPIN, IDC_MAIN_AO_RADIUS, 10.0f, 1000000000.0f},
};

INT_PTR step_field(const Call& call) {
    constexpr float kStep = 0.1f;
    const float delta = static_cast<float>(reinterpret_cast<const NMUPDOWN*>(call.l_param)->iDelta);
    for (const SteppedField& field : kSteppedFields) {
        if (field.spinner == call.w_param) {
            UiState::instance().StepFloatField(call.dialog, field.field, delta, kStep, field.minimum,
                                               field.maximum);
        }
    }
    return kHandled;
}

INT_PTR open_link(const Call& call) {
    const NMLINK* link = reinterpret_cast<const NMLINK*>(call.l_param);
    OpenLinkTarget(call.dialog, link->item.szUrl);
    return kHandled;
}

constexpr int kAny = -1;
constexpr UINT kNoCode = 0;

struct Route {
    UINT message;
    int control; // of a command or notification
    UINT code;   // of a notification; a command's code is not tested
    INT_PTR (*handle)(const Call&);
};

// The first matching row counts. A message without a row is not handled.
constexpr Route kRoutes[] = {
    {WM_INITDIALOG, kAny, kNoCode, initialise},
    {WM_COMMAND, IDCANCEL, kNoCode, end_dialog},
    {WM_COMMAND, IDC_MAIN_ANALYSE, kNoCode, analyse_again},
    {WM_COMMAND, IDC_MAIN_SUBMIT, kNoCode, submit},
    {WM_COMMAND, IDC_MAIN_EDIT_CAMERAS, kNoCode, edit_selected_cameras},
    {WM_COMMAND, IDC_MAIN_INVERT, kNoCode, invert_cameras},
    {WM_COMMAND, IDC_MAIN_SELECT_ALL, kNoCode, select_all_cameras},
    {WM_COMMAND, IDC_MAIN_BLOCKS_1, kNoCode, choose_no_blocks},
    {WM_COMMAND, IDC_MAIN_BLOCKS_10, kNoCode, choose_blocks},
    {WM_COMMAND, IDC_MAIN_BLOCKS_64, kNoCode, choose_blocks},
    {WM_COMMAND, kAny, kNoCode, handled},
    {WM_NOTIFY, IDC_MAIN_CAMERAS, static_cast<UINT>(NM_DBLCLK), edit_clicked_camera},
    {WM_NOTIFY, IDC_MAIN_GAMMA_SPIN, static_cast<UINT>(UDN_DELTAPOS), step_field},
    {WM_NOTIFY, IDC_MAIN_AO_RADIUS_SPIN, static_cast<UINT>(UDN_DELTAPOS), step_field},
    {WM_NOTIFY, IDC_MAIN_LINK, static_cast<UINT>(NM_CLICK), open_link},
    {WM_NOTIFY, kAny, kNoCode, handled},
    {kRefillCameraTable, kAny, kNoCode, refill_table},
    {WM_CLOSE, kAny, kNoCode, end_dialog},
    {WM_DESTROY, kAny, kNoCode, handled},
    // Handled: they never reach the default procedure (C-09).
    {WM_MOUSEMOVE, kAny, kNoCode, handled},
    {WM_LBUTTONDOWN, kAny, kNoCode, handled},
    {WM_LBUTTONUP, kAny, kNoCode, handled},
};

bool matches(const Route& route, const Call& call) {
    if (route.message != call.message || route.control == kAny) {
        return route.message == call.message;
    }
    if (call.message == WM_COMMAND) {
        return route.control == LOWORD(call.w_param);
    }
    const NMHDR* header = reinterpret_cast<const NMHDR*>(call.l_param);
    return header != nullptr && static_cast<WPARAM>(route.control) == call.w_param &&
           route.code == header->code;
}

} // namespace

INT_PTR CALLBACK MainDialogProc(HWND dialog, UINT message, WPARAM w_param, LPARAM l_param) {
    const Call call = {dialog, message, w_param, l_param};
    const auto route_message = [&call] {
        for (const Route& route : kRoutes) {
            if (matches(route, call)) {
                return route.handle(call);
            }
        }
        return kNotHandled;
    };
    return Guarded("MainDialogProc", kNotHandled, route_message, kUiChannel);
}

void OpenMainDialog(HWND owner, LPARAM parameter) {
    IsolatedDialogBox(IDD_MAIN, owner, MainDialogProc, parameter);
}

} // namespace tarvo
