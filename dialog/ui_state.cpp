#include "dialog/ui_state.h"

#include <utility>

namespace tarvo {

UiState& UiState::instance() {
    static UiState state;
    return state;
}

UiState::UiState() {
    log.Open(kUiChannel.name);
    log.SetMaxSizeMB(kUiChannel.max_size_mb);
    log.SetMaxFiles(kUiChannel.max_files);
}

void UiState::add_selected_camera(std::wstring& name) {
    selectedCameras.push_back(std::move(name));
    name.clear();
}

} // namespace tarvo
