// The dialogs' process-wide state: the cameras picked for editing, a busy flag, the log channel "qfx_ui". The
// operations on controls are members too; they work on the window and the cameras they are given. For the
// host's user-interface thread only. Needs windows.h.
#pragma once

#include "common/logger.h"
#include "common/qfx_noncopyable.h"
#include "scene/camera_record.h"

#include <windows.h>

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
    bool CreateCameraTableHead(HWND list);
    bool CreateCameraTable(HWND list, const CameraMap& cameras);
    bool UpdateCameraTable(HWND list, const CameraMap& cameras);
    bool SelectAllCameras(HWND dialog, CameraMap& cameras);
    bool InvertCameraSelection(HWND dialog, CameraMap& cameras);

    // Rows against the camera rules; the result is CameraCheck's number.
    std::int32_t validate_cameras(HWND dialog, CameraMap& cameras);

    // Fields (fields_win32.cpp).
    void InitOutputControls(HWND dialog);
    void ShowGamma(HWND dialog, float value);
    void StepFloatField(HWND dialog, int id, float delta, float step, float minimum, float maximum);
    double ReadFloatField(HWND dialog, int id);
    bool SetSceneName(HWND edit, std::string name);
    std::string GetSceneName(HWND edit);
    bool ShowWarnings(HWND list, const std::vector<std::wstring>& messages);

    // Camera edit dialog (camera_edit_dialog_win32.cpp).
    void InitCameraEditDialog(const std::vector<std::wstring>& keys, HWND dialog, CameraMap& cameras);
    void CheckCameraNameField(HWND dialog, int id, const std::wstring& invalid_set);
    void ApplyCameraEdits(HWND dialog, CameraMap& cameras);

private:
    std::vector<std::wstring> selectedCameras;

public:
    bool sizeSyncBusy = false; // the edit dialog itself writes a size field

private:
    Logger log;
};

} // namespace tarvo
