#include "dialog/main_dialog.h"

#include "common/activation_context.h"
#include "common/config_mgr.h"
#include "common/message_box.h"
#include "common/string_table.h"
#include "dialog/camera_edit_dialog.h"
#include "dialog/controls.h"
#include "dialog/help_link.h"
#include "dialog/opening_sequence.h"
#include "dialog/submit_command.h"
#include "dialog/ui_state.h"
#include "resources/resource_ids.h"
#include "scene/scene_data.h"

#include <windows.h>

#include <commctrl.h>

#include <utility>

namespace tarvo {

namespace {

constexpr INT_PTR kNotHandled = 0;
constexpr INT_PTR kHandled = 1;

// Loaded anew for every message. The second caption goes unused: the one box that carries it loads its own.
struct DialogTexts {
    std::wstring caption;
    std::wstring name_caption;
    std::wstring language_switch;
};

// One message on its way to the function that handles it.
struct Call {
    HWND dialog;
    WPARAM w_param;
    LPARAM l_param;
    const DialogTexts& texts;

    int control() const { return LOWORD(w_param); }
};

INT_PTR handled(const Call&) {
    return kHandled;
}

INT_PTR end_dialog(const Call& call) {
    ::EndDialog(call.dialog, 0);
    return kHandled;
}

INT_PTR open(const Call& call, bool first_opening) {
    return RunOpeningSequence(call.dialog, call.texts.caption, call.texts.language_switch, first_opening);
}

INT_PTR initialise(const Call& call) {
    UiState::instance().InitOutputControls(call.dialog);
    SetHelpLinkTarget(call.dialog, IDC_MAIN_LINK);
    return open(call, true);
}

INT_PTR analyse_again(const Call& call) {
    return open(call, false);
}

INT_PTR submit(const Call& call) {
    return RunSubmitCommand(call.dialog, call.texts.caption, call.texts.language_switch);
}

HWND camera_table(const Call& call) {
    return ::GetDlgItem(call.dialog, IDC_MAIN_CAMERAS);
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

// Writes the table's check marks back into the store; returns how many rows that were.
int keep_check_marks(HWND list) {
    constexpr unsigned kTickedBox = 2; // state image
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

void edit_picked_cameras(const Call& call) {
    OpenCameraEditDialog(call.dialog, reinterpret_cast<LPARAM>(&TarvoRenderingConfigMgr::instance()));
}

INT_PTR edit_selected_cameras(const Call& call) {
    HWND list = camera_table(call);
    const int count = keep_check_marks(list);
    UiState& state = UiState::instance();
    state.clear_selected_cameras();
    int index = -1;
    for (int searches = 0; searches < count; ++searches) {
        // After the last selected row the search begins again: a name may come more than once, and the edit
        // dialog does not mind.
        index = next_row(list, index, LVNI_SELECTED);
        if (index != -1 && index < count) {
            pick_camera(list, index);
        }
    }
    if (!state.selected_cameras().empty()) {
        edit_picked_cameras(call);
    }
    return kHandled;
}

void edit_clicked_camera(const Call& call) {
    if (reinterpret_cast<const NMITEMACTIVATE*>(call.l_param)->iItem < 0) {
        return;
    }
    HWND list = camera_table(call);
    const int count = keep_check_marks(list);
    const int index = next_row(list, -1, LVNI_FOCUSED | LVNI_SELECTED);
    if (index == -1 || index >= count) {
        return;
    }
    UiState::instance().clear_selected_cameras();
    pick_camera(list, index);
    edit_picked_cameras(call);
}

constexpr std::int32_t kNoBlocks = 1;
constexpr std::int32_t kMostBlocks = 64;
constexpr std::int32_t kOnlyTimeLimited = 2;

INT_PTR choose_no_blocks(const Call&) {
    SceneData::instance().set_num_blocks(kNoBlocks);
    return kHandled;
}

// On Windows a radio button that gets the focus reports a click, and a box that closes gives the focus back:
// such a click must not open the box again.
class BlockBoxOpen {
public:
    BlockBoxOpen() { is_open_ = true; }
    ~BlockBoxOpen() { is_open_ = false; }
    BlockBoxOpen(const BlockBoxOpen&) = delete;
    BlockBoxOpen& operator=(const BlockBoxOpen&) = delete;

    static bool is_open() { return is_open_; }

private:
    static bool is_open_;
};
bool BlockBoxOpen::is_open_ = false;

INT_PTR choose_blocks(const Call& call, std::int32_t blocks) {
    if (BlockBoxOpen::is_open()) {
        return kHandled;
    }
    const BlockBoxOpen open;
    SceneData& scene = SceneData::instance();
    MessageBoxes& boxes = SystemMessageBoxes();
    if (scene.is_region() == "true") {
        ShowTextBox(boxes, call.dialog, IDS_BLOCKS_WITH_REGION);
        ::CheckRadioButton(call.dialog, IDC_MAIN_BLOCKS_1, IDC_MAIN_BLOCKS_LAST, IDC_MAIN_BLOCKS_1);
        // Left on the refused button, the focus would bring the box back each time the dialog is activated.
        ::SetFocus(::GetDlgItem(call.dialog, IDC_MAIN_BLOCKS_1));
        return choose_no_blocks(call);
    }
    scene.set_num_blocks(blocks);
    const bool only_time_limited = scene.corona_limits == kOnlyTimeLimited;
    if (only_time_limited || blocks == kMostBlocks) {
        boxes.show(call.dialog, Text(only_time_limited ? IDS_BLOCKS_CORONA_HINT : IDS_BLOCKS_64_HINT),
                   Text(IDS_NAME_CAPTION), kBoxOk, BoxLanguage(call.texts.language_switch));
    }
    return kHandled;
}

INT_PTR choose_10_blocks(const Call& call) {
    return choose_blocks(call, 10);
}

INT_PTR choose_64_blocks(const Call& call) {
    return choose_blocks(call, kMostBlocks);
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

void step_field(const Call& call) {
    constexpr float kStep = 0.1f;
    const float delta = static_cast<float>(reinterpret_cast<const NMUPDOWN*>(call.l_param)->iDelta);
    for (const SteppedField& field : kSteppedFields) {
        if (field.spinner == call.w_param) {
            UiState::instance().StepFloatField(call.dialog, field.field, delta, kStep, field.minimum,
                                               field.maximum);
        }
    }
}

void open_link(const Call& call) {
    const NMLINK* link = reinterpret_cast<const NMLINK*>(call.l_param);
    OpenLinkTarget(call.dialog, link->item.szUrl);
}

struct CommandRoute {
    int control;
    INT_PTR (*handle)(const Call&);
};

constexpr CommandRoute kCommands[] = {
    {IDCANCEL, end_dialog},
    {IDC_MAIN_ANALYSE, analyse_again},
    {IDC_MAIN_SUBMIT, submit},
    {IDC_MAIN_EDIT_CAMERAS, edit_selected_cameras},
    {IDC_MAIN_INVERT, invert_cameras},
    {IDC_MAIN_SELECT_ALL, select_all_cameras},
    {IDC_MAIN_BLOCKS_1, choose_no_blocks},
    {IDC_MAIN_BLOCKS_10, choose_10_blocks},
    {IDC_MAIN_BLOCKS_64, choose_64_blocks},
};

INT_PTR route_command(const Call& call) {
    for (const CommandRoute& route : kCommands) {
        if (route.control == call.control()) {
            return route.handle(call);
        }
    }
    return kHandled;
}

struct NotificationRoute {
    WPARAM from;
    UINT code;
    void (*handle)(const Call&);
};

constexpr NotificationRoute kNotifications[] = {
    {IDC_MAIN_CAMERAS, static_cast<UINT>(NM_DBLCLK), edit_clicked_camera},
    {IDC_MAIN_GAMMA_SPIN, static_cast<UINT>(UDN_DELTAPOS), step_field},
    {IDC_MAIN_AO_RADIUS_SPIN, static_cast<UINT>(UDN_DELTAPOS), step_field},
    {IDC_MAIN_LINK, static_cast<UINT>(NM_CLICK), open_link},
};

INT_PTR route_notification(const Call& call) {
    const NMHDR* header = reinterpret_cast<const NMHDR*>(call.l_param);
    for (const NotificationRoute& route : kNotifications) {
        if (header != nullptr && route.from == call.w_param && route.code == header->code) {
            route.handle(call);
        }
    }
    return kHandled;
}

struct MessageRoute {
    UINT message;
    INT_PTR (*handle)(const Call&);
};

constexpr MessageRoute kMessages[] = {
    {WM_INITDIALOG, initialise},
    {WM_DESTROY, handled},
    {WM_CLOSE, end_dialog},
    {WM_COMMAND, route_command},
    {WM_NOTIFY, route_notification},
    // Reported as handled, so that they never reach the default procedure.
    {WM_MOUSEMOVE, handled},
    {WM_LBUTTONDOWN, handled},
    {WM_LBUTTONUP, handled},
    {kRefillCameraTable, refill_table},
};

INT_PTR route_message(UINT message, const Call& call) {
    for (const MessageRoute& route : kMessages) {
        if (route.message == message) {
            return route.handle(call);
        }
    }
    return kNotHandled;
}

} // namespace

INT_PTR CALLBACK MainDialogProc(HWND dialog, UINT message, WPARAM w_param, LPARAM l_param) {
    try {
        const DialogTexts texts = {Text(IDS_CAPTION), Text(IDS_NAME_CAPTION), Text(IDS_LANGUAGE_SWITCH)};
        return route_message(message, {dialog, w_param, l_param, texts});
    } catch (...) {
        return LogUncaughtException();
    }
}

void OpenMainDialog(HWND owner, LPARAM parameter) {
    IsolatedDialogBox(IDD_MAIN, owner, MainDialogProc, parameter);
}

} // namespace tarvo
