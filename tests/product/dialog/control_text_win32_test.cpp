// Reading a control when Windows does not answer.
#include "dialog/controls.h"
#include "tests/support/patched_import.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

namespace {

constexpr int kControl = 77;

int WINAPI no_text(HWND, LPWSTR, int) {
    ::SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return 0;
}

class UnreadableControl : public ::testing::Test {
protected:
    void SetUp() override {
        support::plugin_folder();
        edit_ =
            ::CreateWindowW(L"EDIT", L"shown", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
        ASSERT_NE(nullptr, edit_);
        ::SetWindowLongPtrW(edit_, GWLP_ID, kControl);
        mark_ = support::log_mark("qfx_ui");
    }
    void TearDown() override { ::DestroyWindow(edit_); }

    HWND edit_ = nullptr;
    std::size_t mark_ = 0;
};

TEST_F(UnreadableControl, IsEmptyAndLogged) {
    const support::PatchedImport patch("USER32.dll", "GetWindowTextW", reinterpret_cast<void*>(&no_text));
    ASSERT_TRUE(patch.installed());
    EXPECT_EQ(tarvo::ControlText(edit_), L"");
    EXPECT_EQ(support::log_lines_since("qfx_ui", mark_),
              std::vector<std::string>(
                  {"[ERROR] What a control shows could not be read: control 77, system error " +
                   std::to_string(ERROR_INVALID_WINDOW_HANDLE)}));
}

TEST_F(UnreadableControl, ControlThatCannotBeSetIsLogged) {
    tarvo::SetControlText(edit_, kControl, L"new");
    const std::vector<std::string> lines = support::log_lines_since("qfx_ui", mark_);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines.front().find("[ERROR] A control could not be set: control 77, system error "), 0u)
        << lines.front();
}

TEST_F(UnreadableControl, EmptyControlIsNotLogged) {
    ::SetWindowTextW(edit_, L"");
    const support::PatchedImport patch("USER32.dll", "GetWindowTextW", reinterpret_cast<void*>(&no_text));
    EXPECT_EQ(tarvo::ControlText(edit_), L"");
    EXPECT_EQ(support::log_lines_since("qfx_ui", mark_), std::vector<std::string>());
}

} // namespace
