#include "dialog/ui_state.h"

#include "dialog/controls.h"

#include <exception>
#include <utility>

namespace tarvo {

namespace {

constexpr std::uint32_t kLogSizeMB = 5;
constexpr std::uint32_t kLogFiles = 2;

std::string describe_current_exception() {
    try {
        throw;
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "not a standard exception";
    }
}

} // namespace

UiState& UiState::instance() {
    static UiState state;
    return state;
}

UiState::UiState() {
    log.Open("qfx_ui");
    log.SetMaxSizeMB(kLogSizeMB);
    log.SetMaxFiles(kLogFiles);
}

void UiState::add_selected_camera(std::wstring& name) {
    selectedCameras.push_back(std::move(name));
    name.clear();
}

INT_PTR LogUncaughtException() noexcept {
    try {
        UiState::instance().log_channel().Write(
            "A dialog message was not handled to its end: " + describe_current_exception(), kError);
    } catch (...) {
        // Nothing is left that could take the news.
    }
    return 0;
}

} // namespace tarvo
