#include "dialog/dialogs.h"

#include "common/activation_context.h"
#include "common/guard.h"
#include "common/message_box.h"
#include "common/string_table.h"
#include "common/text.h"
#include "dialog/controls.h"
#include "dialog/number_step.h"
#include "dialog/ui_state.h"
#include "host/host.h"
#include "resources/resource_ids.h"
#include "scene/scene_data.h"

#include <windows.h>

#include <cwchar>
#include <memory>
#include <stdexcept>

namespace tarvo {

namespace {

constexpr float kRatioMinimum = 0.001f;
constexpr float kRatioMaximum = 2048.0f;
constexpr float kRatioStep = 0.001f;

constexpr unsigned kLargestSize = 32768; // pixels

constexpr std::size_t kLongestName = 100;

// The order of the formats in their combo box.
constexpr unsigned kFormatTexts[] = {
    IDS_FORMAT_JPG, IDS_FORMAT_BMP, IDS_FORMAT_CIN, IDS_FORMAT_DDS, IDS_FORMAT_EPS,
    IDS_FORMAT_EXR, IDS_FORMAT_HDR, IDS_FORMAT_PNG, IDS_FORMAT_RGB, IDS_FORMAT_RLA,
    IDS_FORMAT_RPF, IDS_FORMAT_TGA, IDS_FORMAT_TIF,
};
constexpr unsigned kSphericalTexts[] = {IDS_NO, IDS_YES};
constexpr WPARAM kSphericalYes = 1;

// Confirming an empty name: escapes the dialog procedure on purpose (C-07). A distinct type, so that other
// out_of_range errors are still caught.
class EmptyNameError : public std::out_of_range {
public:
    EmptyNameError() : std::out_of_range("invalid string position") {}
};

// Leading digits; the limit when out of range (_wtoi of the older C runtime would wrap round).
int read_int(HWND dialog, int id) {
    return static_cast<int>(std::wcstol(ControlText(dialog, id).c_str(), nullptr, 10));
}

void write_int(HWND dialog, int id, int value) {
    SetControlText(dialog, id, std::to_wstring(value));
}

void place_caret(HWND dialog, int id, std::size_t position) {
    ::SendDlgItemMessageW(dialog, id, EM_SETSEL, position, static_cast<LPARAM>(position));
}

void show_name_box(HWND dialog, unsigned text_id) {
    ShowBox(dialog, text_id, kBoxOk, IDS_NAME_CAPTION);
}

// While it lives, on_ratio ignores notifications: the linked field may report a value that the dialog sets
// through the spinner as if the user had typed it, and the two would then change each other without end.
class SuppressRatioNotifications {
public:
    explicit SuppressRatioNotifications(HWND dialog)
        : dialog_(dialog), before_(::SetWindowLongPtrW(dialog, DWLP_USER, TRUE)) {}
    ~SuppressRatioNotifications() { ::SetWindowLongPtrW(dialog_, DWLP_USER, before_); }
    SuppressRatioNotifications(const SuppressRatioNotifications&) = delete;
    SuppressRatioNotifications& operator=(const SuppressRatioNotifications&) = delete;

    static bool active(HWND dialog) { return ::GetWindowLongPtrW(dialog, DWLP_USER) != FALSE; }

private:
    HWND dialog_;
    LONG_PTR before_;
};

void log_no_spinner() {
    WriteErrorLine(kUiChannel, "The host gave no spinner: width and height do not follow each other.");
}

std::unique_ptr<RatioSpinner> linked_spinner(HWND dialog) {
    std::unique_ptr<RatioSpinner> spinner = RatioSpinnerOf(DialogItem(dialog, IDC_EDIT_RATIO_SPIN));
    if (spinner) {
        spinner->link_to_edit(DialogItem(dialog, IDC_EDIT_RATIO));
    } else {
        log_no_spinner();
    }
    return spinner;
}

void show_ratio(HWND dialog, RatioSpinner& spinner) {
    spinner.set_value(static_cast<float>(read_int(dialog, IDC_EDIT_WIDTH)) /
                      static_cast<float>(read_int(dialog, IDC_EDIT_HEIGHT)));
}

bool cut_to_largest_size(HWND dialog, int id) {
    const bool too_large = static_cast<unsigned>(read_int(dialog, id)) > kLargestSize;
    if (too_large) {
        write_int(dialog, id, static_cast<int>(kLargestSize));
    }
    return too_large;
}

// Writes the other size without triggering its handler's own computation.
void write_linked_size(HWND dialog, int id, float size) {
    UiState& state = UiState::instance();
    state.sizeSyncBusy = true;
    write_int(dialog, id, TruncateToInt32(size));
    state.sizeSyncBusy = false;
}

void on_size(HWND dialog, int edited, int linked, float (*linked_size)(float size, float ratio)) {
    if (cut_to_largest_size(dialog, edited)) {
        return;
    }
    const SuppressRatioNotifications suppress(dialog);
    const std::unique_ptr<RatioSpinner> spinner = linked_spinner(dialog);
    if (!spinner) {
        return;
    }
    if (spinner->is_enabled()) { // (C-74)
        show_ratio(dialog, *spinner);
    } else if (!UiState::instance().sizeSyncBusy) {
        const float size = static_cast<float>(read_int(dialog, edited));
        write_linked_size(dialog, linked, linked_size(size, spinner->value()));
    }
}

void on_width(HWND dialog) {
    const auto height_of = [](float width, float ratio) { return width / ratio; };
    on_size(dialog, IDC_EDIT_WIDTH, IDC_EDIT_HEIGHT, height_of);
}

void on_height(HWND dialog) {
    const auto width_of = [](float height, float ratio) { return height * ratio; };
    on_size(dialog, IDC_EDIT_HEIGHT, IDC_EDIT_WIDTH, width_of);
}

void on_ratio(HWND dialog) {
    if (SuppressRatioNotifications::active(dialog)) {
        return;
    }
    const SuppressRatioNotifications suppress(dialog);
    const std::unique_ptr<RatioSpinner> spinner = linked_spinner(dialog);
    if (spinner && spinner->is_enabled()) {
        const float height = static_cast<float>(read_int(dialog, IDC_EDIT_WIDTH)) / spinner->value();
        write_int(dialog, IDC_EDIT_HEIGHT, TruncateToInt32(height));
    }
}

void on_lock(HWND dialog) {
    const SuppressRatioNotifications suppress(dialog);
    const std::unique_ptr<RatioSpinner> spinner = linked_spinner(dialog);
    if (!spinner) {
        return;
    }
    if (spinner->is_enabled()) {
        spinner->disable();
    } else {
        spinner->enable();
    }
}

void lock_ratio(HWND dialog, const CameraRecord& camera) {
    const float ratio = static_cast<float>(camera.image_width) / static_cast<float>(camera.image_height);
    const SuppressRatioNotifications suppress(dialog);
    const std::unique_ptr<RatioSpinner> spinner = SetUpRatioSpinner(
        dialog, IDC_EDIT_RATIO_SPIN, IDC_EDIT_RATIO, kRatioMinimum, kRatioMaximum, ratio, kRatioStep);
    ::SendDlgItemMessageW(dialog, IDC_EDIT_RATIO_LOCK, BM_SETCHECK, BST_CHECKED, 0);
    if (spinner) {
        spinner->disable();
    } else {
        log_no_spinner();
    }
}

void on_name(HWND dialog) {
    UiState::instance().CheckCameraNameField(dialog, IDC_EDIT_NAME, kForbiddenNameCharacters);
}

void on_confirm(HWND dialog) {
    std::wstring name = ControlText(dialog, IDC_EDIT_NAME);
    if (name.empty()) {
        throw EmptyNameError();
    }
    if (name.front() == L' ' || name.back() == L' ') {
        show_name_box(dialog, IDS_NAME_BLANKS_TRIMMED);
        name = TrimSpaces(name);
        SetControlText(dialog, IDC_EDIT_NAME, name);
        place_caret(dialog, IDC_EDIT_NAME, name.size());
    }
    if (name.empty()) {
        show_name_box(dialog, IDS_NAME_EMPTY);
        ::SetFocus(DialogItem(dialog, IDC_EDIT_NAME));
        return;
    }
    UiState::instance().ApplyCameraEdits(dialog, SceneData::instance().cameras());
    ::SendMessageW(::GetParent(dialog), kRefillCameraTable, 0, 0); // (C-73)
    ::EndDialog(dialog, 1);
}

constexpr INT_PTR kNotHandled = 0;
constexpr INT_PTR kHandled = 1;

constexpr int kAnyNotification = -1;

struct CommandRoute {
    int control;
    int notification;
    void (*handle)(HWND dialog);
};

constexpr CommandRoute kCommands[] = {
    {IDC_EDIT_CONFIRM, kAnyNotification, on_confirm}, {IDC_EDIT_WIDTH, kAnyNotification, on_width},
    {IDC_EDIT_HEIGHT, kAnyNotification, on_height},   {IDC_EDIT_NAME, EN_CHANGE, on_name},
    {IDC_EDIT_RATIO, kAnyNotification, on_ratio},     {IDC_EDIT_RATIO_LOCK, BN_CLICKED, on_lock},
};

INT_PTR route_command(HWND dialog, WPARAM w_param) {
    for (const CommandRoute& route : kCommands) {
        if (route.control == LOWORD(w_param) &&
            (route.notification == kAnyNotification || route.notification == HIWORD(w_param))) {
            route.handle(dialog);
            return kHandled;
        }
    }
    return kNotHandled;
}

void initialise(HWND dialog) {
    UiState& state = UiState::instance();
    state.InitCameraEditDialog(state.selected_cameras(), dialog, SceneData::instance().cameras());
}

INT_PTR route_message(HWND dialog, UINT message, WPARAM w_param) {
    switch (message) {
    case WM_INITDIALOG:
        initialise(dialog);
        return kHandled;
    case WM_DESTROY:
        return kHandled;
    case WM_CLOSE:
        ::EndDialog(dialog, 0);
        return kHandled;
    case WM_COMMAND:
        return route_command(dialog, w_param);
    default:
        return kNotHandled;
    }
}

template <std::size_t N>
void fill_combo(HWND combo, const unsigned (&texts)[N]) {
    for (std::size_t index = 0; index < N; ++index) {
        ::SendMessageW(combo, CB_INSERTSTRING, index, reinterpret_cast<LPARAM>(Text(texts[index]).c_str()));
    }
}

} // namespace

void UiState::InitCameraEditDialog(const std::vector<std::wstring>& keys, HWND dialog, CameraMap& cameras) {
    if (keys.empty()) {
        return;
    }
    const CameraRecord& camera = cameras[keys.front()];
    write_int(dialog, IDC_EDIT_WIDTH, camera.image_width);
    write_int(dialog, IDC_EDIT_HEIGHT, camera.image_height);
    if (camera.image_height != 0) {
        // What the host's spinner throws must not leave the other fields empty.
        RunGuarded(
            "LockRatio", [&] { lock_ratio(dialog, camera); }, kUiChannel);
    }
    write_int(dialog, IDC_EDIT_START_FRAME, camera.start_frame);
    SetControlText(dialog, IDC_EDIT_NAME, camera.img_output_name);

    HWND formats = DialogItem(dialog, IDC_EDIT_FORMAT);
    fill_combo(formats, kFormatTexts);
    const LRESULT found = ::SendMessageW(formats, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                         reinterpret_cast<LPARAM>(camera.image_format.c_str()));
    ::SendMessageW(formats, CB_SETCURSEL, static_cast<WPARAM>(found == CB_ERR ? 0 : found), 0);

    HWND spherical = DialogItem(dialog, IDC_EDIT_SPHERICAL);
    fill_combo(spherical, kSphericalTexts);
    ::SendMessageW(spherical, CB_SETCURSEL, camera.is_spherical ? kSphericalYes : 0, 0);
}

void UiState::CheckCameraNameField(HWND dialog, int id, const std::wstring& invalid_set) {
    const std::wstring name = ControlText(dialog, id);
    if (name.size() > kLongestName) {
        show_name_box(dialog, IDS_NAME_TOO_LONG);
        log.Write("You are setting camera name that its length longer than 100!", kWarn);
    } else if (ContainsAnyOf(name, invalid_set) != 0) {
        log.Write("You are setting camera name that contain invalid characters.", kWarn);
        show_name_box(dialog, IDS_NAME_CHARACTERS_REMOVED);
        SetControlText(dialog, IDC_EDIT_NAME, RemoveChars(name, invalid_set));
        log.Write("Remove invalid characters successfully.", kInfo);
        place_caret(dialog, IDC_EDIT_NAME, name.size());
    }
}

void UiState::ApplyCameraEdits(HWND dialog, CameraMap& cameras) {
    const std::wstring format = ControlText(dialog, IDC_EDIT_FORMAT);
    const std::wstring name = ControlText(dialog, IDC_EDIT_NAME);
    const int width = read_int(dialog, IDC_EDIT_WIDTH);
    const int height = read_int(dialog, IDC_EDIT_HEIGHT);
    const int start_frame = read_int(dialog, IDC_EDIT_START_FRAME);
    const LRESULT spherical = ::SendDlgItemMessageW(dialog, IDC_EDIT_SPHERICAL, CB_GETCURSEL, 0, 0);
    for (const std::wstring& key : selectedCameras) {
        CameraRecord& camera = cameras[key];
        camera.image_width = width;
        camera.image_height = height;
        camera.image_format = format;
        camera.img_output_name = name;
        if (start_frame < 0) {
            ShowBox(dialog, IDS_FRAME_TO_RENDER_NEGATIVE);
            return; // the later cameras keep their values, and the dialog closes (C-08)
        }
        camera.start_frame = start_frame;
        camera.is_spherical = spherical == static_cast<LRESULT>(kSphericalYes);
    }
}

INT_PTR CALLBACK CameraEditDialogProc(HWND dialog, UINT message, WPARAM w_param, LPARAM) {
    try {
        return route_message(dialog, message, w_param);
    } catch (const EmptyNameError&) {
        throw; // C-07
    } catch (...) {
        ReportException("CameraEditDialogProc", kUiChannel);
        return kNotHandled;
    }
}

INT_PTR OpenCameraEditDialog(HWND owner, LPARAM parameter) {
    return IsolatedDialogBox(IDD_CAMERA_EDIT, owner, CameraEditDialogProc, parameter);
}

} // namespace tarvo
