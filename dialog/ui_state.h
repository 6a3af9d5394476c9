// The dialogs' process-wide state: the cameras picked for editing, a busy flag, the log channel "qfx_ui"; and
// the operations on their controls, which use only their arguments. For the host's user-interface thread
// only.
#pragma once

#include "common/logger.h"
#include "common/platform.h"
#include "scene/camera.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo {

class UiState : public qfx_Noncopyable {
public:
    static UiState& instance();

    UiState();

    void clear_selected_cameras() { selectedCameras.clear(); }
    // Moves the name in; leaves the argument empty.
    void add_selected_camera(std::wstring& name);
    std::vector<std::wstring>& selected_cameras() { return selectedCameras; }
    Logger& log_channel() { return log; }

    // Camera table (camera_table_win32.cpp). All log and return false without a list or cameras.
    bool CreateCameraTableHead(WindowHandle list);
    bool CreateCameraTable(WindowHandle list, const CameraMap& cameras);
    bool UpdateCameraTable(WindowHandle list, const CameraMap& cameras);
    bool SelectAllCameras(WindowHandle dialog, CameraMap& cameras);
    bool InvertCameraSelection(WindowHandle dialog, CameraMap& cameras);

    // Checks the rows (CheckCameras); the result is CameraCheck's number.
    std::int32_t validate_cameras(WindowHandle dialog, CameraMap& cameras);

    // Fields (fields_win32.cpp). They read at most 259 characters of a text.
    // Sets ranges, positions and initial texts of the output controls.
    void InitOutputControls(WindowHandle dialog);
    // With one decimal.
    void ShowGamma(WindowHandle dialog, float value);
    // From the shown text by `delta` times `step`, kept between the limits.
    void StepFloatField(WindowHandle dialog, int id, float delta, float step, float minimum, float maximum);
    // The number at the beginning of the text; 0 without one.
    double ReadFloatField(WindowHandle dialog, int id);
    // Shows `name` (UTF-8) without its last four characters. False when it is empty.
    bool SetSceneName(WindowHandle edit, std::string name);
    // UTF-8, with ".max" at its end; empty when the field is.
    std::string GetSceneName(WindowHandle edit);
    // Replaces the list; false when there are no messages.
    bool ShowWarnings(WindowHandle list, const std::vector<std::wstring>& messages);

    // Camera edit dialog (camera_edit_dialog_win32.cpp). Shows the first of the cameras named by `keys`.
    void InitCameraEditDialog(const std::vector<std::wstring>& keys, WindowHandle dialog, CameraMap& cameras);
    // Removes the characters of `invalid_set` from the field. Tells the user of them, or of a long name.
    void CheckCameraNameField(WindowHandle dialog, int id, const std::wstring& invalid_set);
    // Writes the fields into every selected camera; a negative start frame stops it at the first (C-08).
    void ApplyCameraEdits(WindowHandle dialog, CameraMap& cameras);

private:
    std::vector<std::wstring> selectedCameras;

public:
    bool sizeSyncBusy = false; // the edit dialog is writing a size field

private:
    Logger log;
};

} // namespace tarvo
