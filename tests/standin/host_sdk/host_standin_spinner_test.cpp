#include "tests/product/plugin/host_fixture.h"
#include "tests/standin/host_sdk/spinner_dialog.h"

#include <max.h>

#include <custcont.h>

#include <limits>

namespace {

class StandinSpinner : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        spinner_ = SetupFloatSpinner(dialog_.window, 2, 1, 0.001f, 2048.0f, 1.5f, 0.001f);
        ASSERT_NE(nullptr, spinner_);
    }

    void TearDown() override {
        ReleaseISpinner(spinner_);
        EXPECT_EQ(0, host_sdk::live_spinner_interfaces());
        HostTest::TearDown();
    }

    SpinnerDialog dialog_;
    ISpinnerControl* spinner_ = nullptr;
};

TEST_F(StandinSpinner, SettingUpShowsTheValueWithoutNotifying) {
    EXPECT_EQ(L"1.5", dialog_.text());
    EXPECT_FLOAT_EQ(1.5f, spinner_->GetFVal());
    EXPECT_TRUE(dialog_.heard.empty());
}

TEST_F(StandinSpinner, TextHasUpToThreeDecimals) {
    const struct {
        float value;
        const wchar_t* text;
    } cases[] = {{3.0f, L"3.0"}, {16.0f / 9.0f, L"1.778"}, {0.25f, L"0.25"}, {2000.0f, L"2000.0"}};
    for (const auto& one : cases) {
        spinner_->SetValue(one.value, FALSE);
        EXPECT_EQ(one.text, dialog_.text());
        EXPECT_EQ(one.value, spinner_->GetFVal());
    }
}

TEST_F(StandinSpinner, ValuesStayWithinTheLimits) {
    spinner_->SetValue(0.0f, FALSE);
    EXPECT_FLOAT_EQ(0.001f, spinner_->GetFVal());
    spinner_->SetValue(std::numeric_limits<float>::infinity(), FALSE);
    EXPECT_FLOAT_EQ(2048.0f, spinner_->GetFVal());
    EXPECT_EQ(L"2048.0", dialog_.text());
    spinner_->SetValue(2.0f, FALSE);
    spinner_->SetValue(std::numeric_limits<float>::quiet_NaN(), FALSE);
    EXPECT_FLOAT_EQ(2.0f, spinner_->GetFVal());
}

TEST_F(StandinSpinner, TypedTextSetsTheValueWithinTheLimits) {
    ::SetWindowTextW(dialog_.field(), L"2.5");
    EXPECT_FLOAT_EQ(2.5f, spinner_->GetFVal());
    ::SetWindowTextW(dialog_.field(), L"5000");
    EXPECT_FLOAT_EQ(2048.0f, spinner_->GetFVal());
    ::SetWindowTextW(dialog_.field(), L"abc");
    EXPECT_FLOAT_EQ(2048.0f, spinner_->GetFVal());
    ::SetWindowTextW(dialog_.field(), L"nan");
    EXPECT_FLOAT_EQ(2048.0f, spinner_->GetFVal());
}

TEST_F(StandinSpinner, NotifyingReachesTheDialog) {
    spinner_->SetValue(2.0f, TRUE);
    ASSERT_EQ(1u, dialog_.heard.size());
    EXPECT_EQ(static_cast<UINT>(CC_SPINNER_CHANGE), dialog_.heard[0].message);
    EXPECT_EQ(2, dialog_.heard[0].id);
    EXPECT_FALSE(dialog_.heard[0].held);
    EXPECT_EQ(reinterpret_cast<LPARAM>(spinner_), dialog_.heard[0].control);
}

// Otherwise a dialog that sets the value when the field changes would never end.
TEST_F(StandinSpinner, SameTextIsNotWrittenAgain) {
    const int before = dialog_.field_changes;
    spinner_->SetValue(1.5f, TRUE);
    EXPECT_EQ(before, dialog_.field_changes);
    spinner_->SetValue(1.6f, TRUE);
    EXPECT_EQ(before + 1, dialog_.field_changes);
}

TEST_F(StandinSpinner, ArrowsStep) {
    dialog_.click(true);
    EXPECT_EQ(L"1.501", dialog_.text());
    dialog_.click(false);
    dialog_.click(false);
    EXPECT_EQ(L"1.499", dialog_.text());
    ASSERT_EQ(9u, dialog_.heard.size());
    EXPECT_EQ(static_cast<UINT>(CC_SPINNER_BUTTONDOWN), dialog_.heard[0].message);
    EXPECT_EQ(static_cast<UINT>(CC_SPINNER_CHANGE), dialog_.heard[1].message);
    EXPECT_TRUE(dialog_.heard[1].held);
    EXPECT_EQ(static_cast<UINT>(CC_SPINNER_BUTTONUP), dialog_.heard[2].message);
}

TEST_F(StandinSpinner, DisablingDisablesTheField) {
    spinner_->Disable();
    EXPECT_FALSE(spinner_->IsEnabled());
    EXPECT_FALSE(::IsWindowEnabled(dialog_.spinner()));
    EXPECT_FALSE(::IsWindowEnabled(dialog_.field()));
    spinner_->Enable();
    EXPECT_TRUE(spinner_->IsEnabled());
    EXPECT_TRUE(::IsWindowEnabled(dialog_.field()));
}

TEST_F(StandinSpinner, EveryInterfaceIsTheSameControl) {
    ISpinnerControl* second = GetISpinner(dialog_.spinner());
    ASSERT_NE(nullptr, second);
    EXPECT_EQ(2, host_sdk::live_spinner_interfaces());
    second->LinkToEdit(dialog_.field(), EDITTYPE_FLOAT);
    second->SetValue(4.0f, FALSE);
    EXPECT_FLOAT_EQ(4.0f, spinner_->GetFVal());
    ReleaseISpinner(second);
    EXPECT_EQ(1, host_sdk::live_spinner_interfaces());
}

TEST_F(StandinSpinner, OtherWindowsHaveNoSpinner) {
    EXPECT_EQ(nullptr, GetISpinner(dialog_.field()));
    EXPECT_EQ(nullptr, GetISpinner(nullptr));
    EXPECT_EQ(nullptr, SetupFloatSpinner(dialog_.window, 9, 1, 0.0f, 1.0f, 0.5f));
    EXPECT_NE(nullptr, ::GetDlgItem(dialog_.window, 3)); // the host's edit class is there as well
}

TEST_F(StandinSpinner, InterfaceOutlivesItsWindow) {
    ::DestroyWindow(dialog_.spinner());
    spinner_->SetValue(2.0f, TRUE);
    EXPECT_FLOAT_EQ(2.0f, spinner_->GetFVal());
    EXPECT_FALSE(spinner_->IsEnabled());
    EXPECT_TRUE(dialog_.heard.empty());
}

// What the dialog received from its CustEdit.
std::vector<UINT> g_received;

INT_PTR CALLBACK FieldDialogProc(HWND, UINT message, WPARAM w_param, LPARAM) {
    if (message == WM_COMMAND && w_param == MAKEWPARAM(3, EN_CHANGE)) {
        g_received.push_back(message);
    }
    return FALSE;
}

TEST_F(StandinSpinner, HostFieldNotifiesOnEnterAndOnLosingTheFocus) {
    ::SetWindowLongPtrW(dialog_.window, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(&FieldDialogProc));
    const HWND field = ::GetDlgItem(dialog_.window, 3);
    const auto type = [](wchar_t character) { ::SendMessageW(::GetFocus(), WM_CHAR, character, 1); };
    g_received.clear();
    ::SetFocus(field);
    type(L'2');
    type(L'5');
    EXPECT_EQ(std::vector<UINT>(), g_received);
    ::SendMessageW(::GetFocus(), WM_KEYDOWN, VK_RETURN, 1);
    EXPECT_EQ(std::vector<UINT>({WM_COMMAND}), g_received);
    g_received.clear();
    type(L'1');
    ::SetFocus(dialog_.field());
    EXPECT_EQ(std::vector<UINT>({WM_COMMAND}), g_received);
    g_received.clear();
    ::SetFocus(field);
    ::SetFocus(dialog_.field());
    EXPECT_EQ(std::vector<UINT>(), g_received); // nothing was typed
    wchar_t text[16] = {};
    ::GetWindowTextW(field, text, 16);
    EXPECT_STREQ(L"251", text);
}

} // namespace
