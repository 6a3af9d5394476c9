#include "tests/support/main_dialog_fixture.h"

namespace {

using namespace support;

using Names = std::vector<std::wstring>;

class MainDialogCameras : public MainDialog {};

TEST_F(MainDialogCameras, EditWithoutASelectedRowOnlyStoresTheTicks) {
    open();
    std::wstring stale = L"from before";
    ui.add_selected_camera(stale);
    tick(list, 2);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
    EXPECT_EQ(command(IDC_MAIN_EDIT_CAMERAS), 1);
    EXPECT_FALSE(driver.has_acted());
    EXPECT_TRUE(ui.selected_cameras().empty());
    EXPECT_EQ(stored_ticks(), "--x");
}

TEST_F(MainDialogCameras, EditChangesTheSelectedRows) {
    open();
    select(0);
    select(2);
    tick(list, 1);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND edit) {
        EXPECT_EQ(field(edit, IDC_EDIT_NAME), L"Cam A");
        type(edit, IDC_EDIT_START_FRAME, L"42");
        ::SendDlgItemMessageW(edit, IDC_EDIT_CONFIRM, BM_CLICK, 0, 0);
    });
    click(IDC_MAIN_EDIT_CAMERAS);
    EXPECT_TRUE(driver.has_acted());
    EXPECT_EQ(scene.cameras()[L"Cam A"].start_frame, 42);
    EXPECT_EQ(scene.cameras()[L"Cam B"].start_frame, 7);
    EXPECT_EQ(scene.cameras()[L"Cam C"].start_frame, 42);
    EXPECT_EQ(cell(list, 2, 3), L"42");
    EXPECT_EQ(ticks(list), "-x-");
}

TEST_F(MainDialogCameras, EverySelectedRowIsPickedAndASecondSelectionReplacesTheFirst) {
    open();
    for (int row = 0; row < 3; ++row) {
        select(row);
    }
    {
        const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
        command(IDC_MAIN_EDIT_CAMERAS);
    }
    EXPECT_EQ(ui.selected_cameras(), Names({L"Cam A", L"Cam B", L"Cam C"}));
    focus(1);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
    EXPECT_EQ(double_click(1), 1);
    EXPECT_TRUE(driver.has_acted());
    EXPECT_EQ(ui.selected_cameras(), Names({L"Cam B"}));
}

// There are as many searches as cameras; after the last selected row the search starts at the top again.
TEST_F(MainDialogCameras, ASingleSelectedRowOfThreeIsPickedTwice) {
    open();
    select(0);
    {
        const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
        command(IDC_MAIN_EDIT_CAMERAS);
        EXPECT_TRUE(driver.has_acted());
    }
    EXPECT_EQ(ui.selected_cameras(), Names({L"Cam A", L"Cam A"}));
    select(2);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
    command(IDC_MAIN_EDIT_CAMERAS);
    EXPECT_EQ(ui.selected_cameras(), Names({L"Cam A", L"Cam C"}));
}

TEST_F(MainDialogCameras, ADoubleClickBesideTheRowsDoesNothing) {
    open();
    focus(1);
    tick(list, 0);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
    EXPECT_EQ(double_click(-1), 1);
    EXPECT_FALSE(driver.has_acted());
    EXPECT_EQ(stored_ticks(), "---");
}

TEST_F(MainDialogCameras, DoubleClickWithoutAFocusedSelectedRowStoresTheTicksOnly) {
    open();
    std::wstring kept = L"Cam C";
    ui.add_selected_camera(kept);
    select(0);
    set_row_state(list, 1, LVIS_FOCUSED, LVIS_FOCUSED);
    tick(list, 0);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
    EXPECT_EQ(double_click(0), 1);
    EXPECT_FALSE(driver.has_acted());
    EXPECT_EQ(stored_ticks(), "x--");
    EXPECT_EQ(ui.selected_cameras(), Names({L"Cam C"}));
}

TEST_F(MainDialogCameras, ADoubleClickOnTheFirstRowEditsIt) {
    open();
    focus(0);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
    EXPECT_EQ(double_click(0), 1);
    EXPECT_TRUE(driver.has_acted());
    EXPECT_EQ(ui.selected_cameras(), Names({L"Cam A"}));
}

TEST_F(MainDialogCameras, ARowBeyondTheCameraCollectionIsNotEdited) {
    open();
    scene.cameras().erase(L"Cam C");
    focus(2);
    const ModalDriver driver(IDC_EDIT_CONFIRM, [](HWND) {});
    double_click(2);
    command(IDC_MAIN_EDIT_CAMERAS);
    EXPECT_FALSE(driver.has_acted());
}

TEST_F(MainDialogCameras, RowWithoutACameraIsAddedWhenTheTicksAreStored) {
    open();
    const tarvo::CameraRecord other = scene.cameras()[L"Cam C"];
    scene.cameras().erase(L"Cam A");
    scene.cameras()[L"Other"] = other;
    tick(list, 0);
    command(IDC_MAIN_EDIT_CAMERAS);
    EXPECT_TRUE(scene.cameras()[L"Cam A"].checked);
    EXPECT_EQ(scene.cameras().size(), 4u);
}

} // namespace
