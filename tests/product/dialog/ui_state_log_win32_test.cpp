#include "dialog/ui_state.h"
#include "tests/support/log_settings.h"
#include "tests/support/own_log_folder.h"

#include <gtest/gtest.h>

namespace {

TEST(UiStateLog, DialogChannelKeepsTwoFilesOfFiveMegabytes) {
    constexpr std::size_t kFiveMegabytes = 5242880;
    const support::OwnLogFolder logs("_ui", "qfx_ui");
    tarvo::UiState state;
    support::expect_log_settings(state.log_channel(), logs, kFiveMegabytes, 2);
}

} // namespace
