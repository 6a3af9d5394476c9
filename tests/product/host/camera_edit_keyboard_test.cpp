// The camera edit dialog with the host's own spinner and field, by keyboard.
#include "dialog/dialogs.h"
#include "dialog/ui_state.h"
#include "host/host.h"
#include "resources/resource_ids.h"
#include "scene/scene_data.h"
#include "tests/product/plugin/host_fixture.h"

#include <windows.h>

#include <cwchar>
#include <random>
#include <string>
#include <vector>

namespace {

using tarvo::CameraRecord;

// 8,192 random sizes, in batches that a busy machine finishes before the time limit.
constexpr int kBatches = 8;
constexpr int kOpenings = 4; // really opened in each batch
constexpr int kRandomSizes = 8192 / kBatches;
constexpr const wchar_t* kUnknownFormat = L"none"; // shown as the first format; OK writes that one

// The commands that the dialog has received.
std::vector<WPARAM> g_commands;

INT_PTR CALLBACK noting_procedure(HWND dialog, UINT message, WPARAM w_param, LPARAM l_param) {
    if (message == WM_COMMAND) {
        g_commands.push_back(w_param);
    }
    return tarvo::CameraEditDialogProc(dialog, message, w_param, l_param);
}

class CameraEditKeyboard : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        host_sdk::set_call_recorder(nullptr);
        tarvo::UiState& ui = tarvo::UiState::instance();
        ui.clear_selected_cameras();
        std::wstring name = L"Cam";
        ui.add_selected_camera(name);
    }

    void TearDown() override {
        close();
        EXPECT_EQ(0, host_sdk::live_spinner_interfaces());
        tarvo::SceneData::instance().clear_cameras();
        HostTest::TearDown();
    }

    static CameraRecord& camera() { return tarvo::SceneData::instance().cameras()[L"Cam"]; }

    static void set_camera(int width, int height) {
        CameraRecord& record = camera();
        record.image_width = width;
        record.image_height = height;
        record.image_format = kUnknownFormat;
        record.img_output_name = L"Render";
    }

    void open(int width, int height) {
        close();
        set_camera(width, height);
        dialog_ = ::CreateDialogParamW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_CAMERA_EDIT),
                                       nullptr, noting_procedure, 0);
        ASSERT_NE(nullptr, dialog_);
    }

    void close() {
        if (dialog_ != nullptr) {
            ::DestroyWindow(dialog_);
        }
        dialog_ = nullptr;
    }

    // Delivers a key as the modal loop does.
    void press(WPARAM key) const {
        for (const UINT message : {WM_KEYDOWN, WM_KEYUP}) {
            MSG event = {};
            event.hwnd = ::GetFocus();
            event.message = message;
            event.wParam = key;
            event.lParam = 1;
            if (::IsDialogMessageW(dialog_, &event) == FALSE) {
                ::DispatchMessageW(&event);
            }
        }
    }

    void type(const std::wstring& text) const {
        ::SendMessageW(::GetFocus(), EM_SETSEL, 0, -1);
        for (const wchar_t character : text) {
            ::SendMessageW(::GetFocus(), WM_CHAR, character, 1);
        }
    }

    HWND control(int id) const { return ::GetDlgItem(dialog_, id); }
    bool has_focus(int id) const {
        return ::GetFocus() == control(id) || ::IsChild(control(id), ::GetFocus()) != FALSE;
    }
    int number(int id) const { return static_cast<int>(::GetDlgItemInt(dialog_, id, nullptr, FALSE)); }

    // False when the focus does not reach it.
    bool tab_to(int id) const {
        for (int presses = 0; presses < 20 && !has_focus(id); ++presses) {
            press(VK_TAB);
        }
        return has_focus(id);
    }

    // Opens the dialog and presses OK by keyboard; g_commands then has the commands.
    void open_and_confirm(int width, int height, WPARAM key) {
        open(width, height);
        g_commands.clear();
        const HWND first = ::GetFocus();
        ::SetFocus(nullptr);
        ::SetFocus(first); // records the commands of the first focus
        ASSERT_TRUE(tab_to(IDC_EDIT_CONFIRM));
        press(key);
    }

    // The same without new windows and without moving the focus: initializes the open dialog again and
    // replays the recorded commands.
    void confirm_again(int width, int height, const std::vector<WPARAM>& commands) {
        set_camera(width, height);
        tarvo::RatioSpinnerOf(control(IDC_EDIT_RATIO_SPIN))->enable();
        tarvo::CameraEditDialogProc(dialog_, WM_INITDIALOG, 0, 0);
        for (const WPARAM command : commands) {
            tarvo::CameraEditDialogProc(dialog_, WM_COMMAND, command, 0);
        }
    }

    static bool has_size(int width, int height) {
        return camera().image_width == width && camera().image_height == height;
    }

    static bool was_confirmed() { return camera().image_format != kUnknownFormat; }

    void unlock() {
        ASSERT_TRUE(tab_to(IDC_EDIT_RATIO_LOCK));
        press(VK_SPACE);
        ASSERT_NE(FALSE, ::IsWindowEnabled(control(IDC_EDIT_RATIO)));
    }

private:
    HWND dialog_ = nullptr;
};

TEST_F(CameraEditKeyboard, TheRenderNameHasTheFirstFocus) {
    open(1500, 1000);
    EXPECT_TRUE(has_focus(IDC_EDIT_NAME));
}

// A locked ratio recomputes a size on any notification of the other one, and may lose a pixel.
class CameraEditSizesByKeyboard : public CameraEditKeyboard, public ::testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Batches, CameraEditSizesByKeyboard, ::testing::Range(0, kBatches));

TEST_P(CameraEditSizesByKeyboard, OpeningAndConfirmingChangesNoSize) {
    std::mt19937 random(20190315u + static_cast<unsigned>(GetParam()));
    std::uniform_int_distribution<int> size(1, 32768);
    std::vector<WPARAM> way;
    for (int i = 0; i < kOpenings; ++i) {
        const int width = size(random);
        const int height = size(random);
        open_and_confirm(width, height, i % 2 == 0 ? VK_SPACE : VK_RETURN);
        EXPECT_TRUE(was_confirmed());
        EXPECT_TRUE(has_size(width, height)) << width << " x " << height;
        way = g_commands;
    }
    for (const int unneeded : {IDC_EDIT_FORMAT, IDC_EDIT_SPHERICAL, IDC_EDIT_START_FRAME}) {
        ::DestroyWindow(control(unneeded)); // filling them takes time
    }
    int confirmed = 0;
    int changed = 0;
    for (int i = 0; i < kRandomSizes; ++i) {
        const int width = size(random);
        const int height = size(random);
        confirm_again(width, height, way);
        confirmed += was_confirmed() ? 1 : 0;
        changed += has_size(width, height) ? 0 : 1;
    }
    EXPECT_EQ(kRandomSizes, confirmed);
    EXPECT_EQ(0, changed) << "of " << kRandomSizes << " sizes";
}

// Arrow keys move the focus between the buttons of a group.
TEST_F(CameraEditKeyboard, ArrowKeysDoNotMoveTheFocusFromAButton) {
    for (const int button : {IDC_EDIT_CONFIRM, IDC_EDIT_RATIO_LOCK}) {
        for (const WPARAM arrow : {VK_UP, VK_DOWN, VK_LEFT, VK_RIGHT}) {
            open(1920, 817);
            ASSERT_TRUE(tab_to(button));
            press(arrow);
            EXPECT_TRUE(has_focus(button)) << button << " " << arrow;
        }
    }
}

TEST_F(CameraEditKeyboard, EnterInAFieldDoesNotConfirm) {
    const int fields[] = {IDC_EDIT_NAME,  IDC_EDIT_START_FRAME, IDC_EDIT_FORMAT, IDC_EDIT_SPHERICAL,
                          IDC_EDIT_WIDTH, IDC_EDIT_HEIGHT,      IDC_EDIT_RATIO,  IDC_EDIT_RATIO_LOCK};
    open(1500, 1000);
    unlock();
    for (const int field : fields) {
        ::SetFocus(control(field));
        ASSERT_TRUE(has_focus(field)) << field;
        press(VK_RETURN);
        EXPECT_FALSE(was_confirmed()) << field;
        EXPECT_TRUE(has_focus(field)) << field;
    }
    ASSERT_TRUE(tab_to(IDC_EDIT_CONFIRM));
    press(VK_RETURN);
    EXPECT_TRUE(was_confirmed());
}

TEST_F(CameraEditKeyboard, ATypedRatioMovesTheHeightOnEnterAndNotBefore) {
    open(1920, 1000);
    unlock();
    ::SetFocus(control(IDC_EDIT_RATIO));
    type(L"2.35");
    EXPECT_EQ(1000, number(IDC_EDIT_HEIGHT));
    press(VK_RETURN);
    EXPECT_EQ(817, number(IDC_EDIT_HEIGHT)); // 817.02, truncated
    EXPECT_EQ(1920, number(IDC_EDIT_WIDTH));
    EXPECT_TRUE(has_focus(IDC_EDIT_RATIO));
}

TEST_F(CameraEditKeyboard, ATypedRatioMovesTheHeightOnLeavingTheField) {
    open(1920, 1000);
    unlock();
    ::SetFocus(control(IDC_EDIT_RATIO));
    type(L"1.7778");
    EXPECT_EQ(1000, number(IDC_EDIT_HEIGHT));
    press(VK_TAB);
    EXPECT_EQ(1079, number(IDC_EDIT_HEIGHT)); // 1079.99, truncated
    EXPECT_FALSE(has_focus(IDC_EDIT_RATIO));
}

TEST_F(CameraEditKeyboard, TypedRatioSetsTheHeight) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> thousandths(123, 9999);
    for (int i = 0; i < 50; ++i) {
        open(4000, 1000);
        unlock();
        ::SetFocus(control(IDC_EDIT_RATIO));
        const int ratio = thousandths(random);
        wchar_t text[16] = {};
        std::swprintf(text, 16, L"%d.%03d", ratio / 1000, ratio % 1000);
        type(text);
        press(VK_RETURN);
        const int height = static_cast<int>(4000.0f / (static_cast<float>(ratio) / 1000.0f));
        EXPECT_NEAR(height, number(IDC_EDIT_HEIGHT), 1) << ratio;
    }
}

} // namespace
