// The dialogs' process-wide state: the cameras picked for editing, a busy flag, the log channel "qfx_ui". The
// operations on controls are members too; they work on the window and the cameras they are given. For the
// host's user-interface thread only.
#pragma once

#include "common/logger.h"
#include "common/qfx_noncopyable.h"
#include "common/window_handle.h"
#include "scene/camera_record.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo {

class UiState : public qfx_Noncopyable {
public:
    static UiState& instance();

    UiState();

    void clear_selected_cameras() { selectedCameras.clear(); }
    // Takes the name over; the argument is left empty.
    void add_selected_camera(std::wstring& name);
    std::vector<std::wstring>& selected_cameras() { return selectedCameras; }
    Logger& log_channel() { return log; }

    // Camera table (camera_table_win32.cpp). All return false, and log, when there is nothing to do.
    bool CreateCameraTableHead(WindowHandle list);
    bool CreateCameraTable(WindowHandle list, const CameraMap& cameras);
    bool UpdateCameraTable(WindowHandle list, const CameraMap& cameras);
    bool SelectAllCameras(WindowHandle dialog, CameraMap& cameras);
    bool InvertCameraSelection(WindowHandle dialog, CameraMap& cameras);

    // Rows against the camera rules; the result is CameraCheck's number.
    std::int32_t validate_cameras(WindowHandle dialog, CameraMap& cameras);

    // Fields (fields_win32.cpp). A text is read up to 259 characters.
    // Ranges, positions and first texts of the output controls.
    void InitOutputControls(WindowHandle dialog);
    // With one decimal.
    void ShowGamma(WindowHandle dialog, float value);
    // From the shown text by `delta` times `step`, kept between the limits.
    void StepFloatField(WindowHandle dialog, int id, float delta, float step, float minimum, float maximum);
    // The number at the text's beginning; 0 without one.
    double ReadFloatField(WindowHandle dialog, int id);
    // `name` is UTF-8 and shown without its last four characters. False, and nothing shown, when it is empty.
    bool SetSceneName(WindowHandle edit, std::string name);
    // UTF-8, with ".max" at its end; empty when the field is.
    std::string GetSceneName(WindowHandle edit);
    // Replaces the list; false when there are no messages.
    bool ShowWarnings(WindowHandle list, const std::vector<std::wstring>& messages);

    // Camera edit dialog (camera_edit_dialog_win32.cpp).
    // Shows the first of the cameras named by `keys`.
    void InitCameraEditDialog(const std::vector<std::wstring>& keys, WindowHandle dialog, CameraMap& cameras);
    // Takes characters of `invalid_set` out of the field and tells the user; a long name is only told of.
    void CheckCameraNameField(WindowHandle dialog, int id, const std::wstring& invalid_set);
    // Writes the fields into every selected camera; stops at the first whose frame is negative, with those
    // before it changed.
    void ApplyCameraEdits(WindowHandle dialog, CameraMap& cameras);

private:
    std::vector<std::wstring> selectedCameras;

public:
    bool sizeSyncBusy = false; // the edit dialog itself writes a size field

private:
    Logger log;
};

} // namespace tarvo
