#include "dialog/controls.h"
#include "scene/camera.h"
#include "tests/support/dialog_fixture.h"

namespace {

using namespace support;
using tarvo::CameraMap;
using tarvo::CameraRecord;
using tarvo::Text;

using Lines = std::vector<std::string>;

constexpr const char* kNothing = "[WARN] No cameras or Create camera table failed!";
constexpr const char* kUpdated = "[INFO] Update camera table successfully.";

class CameraTable : public DialogTest {
protected:
    CameraTable() {
        dialog = show(IDD_MAIN, InertDialogProc);
        list = ::GetDlgItem(dialog, IDC_MAIN_CAMERAS);
        ::SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, 37);
    }

    void add_columns() { ASSERT_TRUE(ui.CreateCameraTableHead(list)); }

    LVCOLUMNW column(int index, wchar_t* text, int size) const {
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
        column.pszText = text;
        column.cchTextMax = size;
        ::SendMessageW(list, LVM_GETCOLUMNW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&column));
        return column;
    }

    HWND dialog = nullptr;
    HWND list = nullptr;
    CameraMap cameras = {{L"One", CameraRecord()}, {L"Three", CameraRecord()}, {L"Two", CameraRecord()}};
};

TEST_F(CameraTable, HeadHasSevenCentredColumnsInOrder) {
    struct {
        unsigned text_id;
        int width;
    } const expected[] = {{32, 200}, {34, 70}, {33, 70}, {35, 60}, {83, 60}, {36, 60}, {66, 200}};
    EXPECT_TRUE(ui.CreateCameraTableHead(list));
    HWND header = reinterpret_cast<HWND>(::SendMessageW(list, LVM_GETHEADER, 0, 0));
    ASSERT_EQ(::SendMessageW(header, HDM_GETITEMCOUNT, 0, 0), 7);
    int order[7] = {};
    ::SendMessageW(list, LVM_GETCOLUMNORDERARRAY, 7, reinterpret_cast<LPARAM>(order));
    for (int index = 0; index < 7; ++index) {
        wchar_t text[64] = {};
        const LVCOLUMNW found = column(index, text, 64);
        EXPECT_FALSE(std::wstring(text).empty());
        EXPECT_EQ(text, Text(expected[index].text_id));
        EXPECT_EQ(found.cx, expected[index].width);
        EXPECT_EQ(order[index], index);
        if (index > 0) { // the control itself keeps its first column at the left
            EXPECT_EQ(found.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_CENTER);
        }
    }
    EXPECT_EQ(new_log_lines(), Lines());
}

TEST_F(CameraTable, HeadWithoutAListIsAnError) {
    EXPECT_FALSE(ui.CreateCameraTableHead(nullptr));
    EXPECT_EQ(new_log_lines(), Lines({"[ERROR] No handle result in creating camera table head failed."}));
}

TEST_F(CameraTable, ARowShowsTheRecord) {
    add_columns();
    cameras[L"Three"].image_width = 1920;
    cameras[L"Three"].image_height = 1080;
    cameras[L"Three"].start_frame = -12;
    cameras[L"Three"].image_format = L"JPG";
    cameras[L"Three"].img_output_name = L"the third";
    cameras[L"Three"].is_spherical = true;
    EXPECT_TRUE(ui.CreateCameraTable(list, cameras));
    ASSERT_EQ(row_count(list), 3);
    const std::wstring expected[] = {L"Three", L"1920", L"1080", L"-12", Text(IDS_YES), L"JPG", L"the third"};
    for (int index = 0; index < 7; ++index) {
        EXPECT_EQ(cell(list, 1, index), expected[index]);
    }
    EXPECT_EQ(cell(list, 0, 4), Text(IDS_NO));
    EXPECT_NE(Text(IDS_NO), Text(IDS_YES));
    EXPECT_EQ(new_log_lines(), Lines({"[INFO] Create camera table successfully."}));
}

TEST_F(CameraTable, RowsThatCannotBeAddedAreLogged) {
    ui.CreateCameraTable(::GetDlgItem(dialog, IDC_MAIN_GAMMA), cameras);
    EXPECT_EQ(new_log_lines(), Lines({"[ERROR] The camera table is not whole: rows with empty cells: 3",
                                      "[INFO] Create camera table successfully."}));
}

TEST_F(CameraTable, TheUpdateWritesTheSameCells) {
    add_columns();
    cameras[L"Two"].image_width = 2147483647;
    cameras[L"Two"].is_spherical = true;
    cameras[L"Two"].img_output_name = L"second";
    EXPECT_TRUE(ui.UpdateCameraTable(list, cameras));
    const std::wstring expected[] = {L"Two", L"2147483647", L"0", L"1", Text(IDS_YES), L"", L"second"};
    for (int index = 0; index < 7; ++index) {
        EXPECT_EQ(cell(list, 2, index), expected[index]);
    }
    EXPECT_EQ(new_log_lines(), Lines({kUpdated}));
}

TEST_F(CameraTable, RowsAreSortedByCodeUnits) {
    add_columns();
    cameras = {{L"cam", CameraRecord()},
               {L"Cam", CameraRecord()},
               {L"\u76f8\u673a", CameraRecord()},
               {L"Zebra", CameraRecord()}};
    ui.CreateCameraTable(list, cameras);
    const std::wstring expected[] = {L"Cam", L"Zebra", L"cam", L"\u76f8\u673a"};
    for (int row = 0; row < 4; ++row) {
        EXPECT_EQ(cell(list, row, 0), expected[row]);
    }
}

TEST_F(CameraTable, TheFirstBuildTicksNothing) {
    add_columns();
    cameras[L"One"].checked = true;
    ui.CreateCameraTable(list, cameras);
    EXPECT_EQ(ticks(list), "---");
}

TEST_F(CameraTable, UpdateTicksTheCheckedCameras) {
    add_columns();
    ui.CreateCameraTable(list, cameras);
    cameras[L"Two"].checked = true;
    EXPECT_TRUE(ui.UpdateCameraTable(list, cameras));
    EXPECT_EQ(ticks(list), "--x");
}

TEST_F(CameraTable, TheUpdateReplacesTheRows) {
    add_columns();
    ui.CreateCameraTable(list, cameras);
    EXPECT_TRUE(ui.UpdateCameraTable(list, {{L"Only", CameraRecord()}}));
    EXPECT_EQ(row_count(list), 1);
    EXPECT_EQ(cell(list, 0, 0), L"Only");
}

TEST_F(CameraTable, WithoutCamerasOneWarningIsLoggedAndTheRowsAreKept) {
    add_columns();
    ui.CreateCameraTable(list, cameras);
    new_log_lines();
    EXPECT_FALSE(ui.CreateCameraTable(list, CameraMap()));
    EXPECT_EQ(new_log_lines(), Lines({kNothing}));
    EXPECT_FALSE(ui.UpdateCameraTable(list, CameraMap()));
    EXPECT_EQ(new_log_lines(), Lines({kNothing}));
    EXPECT_EQ(row_count(list), 3);
}

TEST_F(CameraTable, WithoutAListOneWarningIsLogged) {
    EXPECT_FALSE(ui.CreateCameraTable(nullptr, cameras));
    EXPECT_FALSE(ui.UpdateCameraTable(nullptr, cameras));
    EXPECT_EQ(new_log_lines(), Lines({kNothing, kNothing}));
}

TEST_F(CameraTable, SelectAllChecksEveryCamera) {
    add_columns();
    cameras[L"One"].checked = true;
    ui.CreateCameraTable(list, cameras);
    EXPECT_TRUE(ui.SelectAllCameras(dialog, cameras));
    EXPECT_EQ(ticks(list), "xxx");
    for (const auto& entry : cameras) {
        EXPECT_TRUE(entry.second.checked);
    }
}

TEST_F(CameraTable, SelectAllWithoutCamerasOnlyWarns) {
    add_columns();
    CameraMap none;
    EXPECT_FALSE(ui.SelectAllCameras(dialog, none));
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(new_log_lines(), Lines({kNothing}));
}

TEST_F(CameraTable, InvertingReversesTheShownTicks) {
    add_columns();
    cameras[L"One"].checked = true; // not what the user sees
    ui.CreateCameraTable(list, cameras);
    tick(list, 1);
    EXPECT_TRUE(ui.InvertCameraSelection(dialog, cameras));
    EXPECT_EQ(ticks(list), "x-x");
    EXPECT_TRUE(cameras[L"One"].checked);
    EXPECT_FALSE(cameras[L"Three"].checked);
    EXPECT_TRUE(cameras[L"Two"].checked);
}

TEST_F(CameraTable, InvertingTwiceRestoresTheTicks) {
    add_columns();
    ui.CreateCameraTable(list, cameras);
    tick(list, 2);
    ui.InvertCameraSelection(dialog, cameras);
    EXPECT_EQ(ticks(list), "xx-");
    ui.InvertCameraSelection(dialog, cameras);
    EXPECT_EQ(ticks(list), "--x");
    EXPECT_EQ(cameras.size(), 3u);
}

TEST_F(CameraTable, InvertingMatchesRowsByTextAndNotByPosition) {
    add_columns();
    CameraMap shown = {{L"1 Two", CameraRecord()}, {L"2 One", CameraRecord()}};
    ui.CreateCameraTable(list, shown);
    CameraMap stored = {{L"2 One", CameraRecord()}, {L"9 other", CameraRecord()}};
    stored[L"2 One"].image_width = 5;
    tick(list, 1);
    ui.InvertCameraSelection(dialog, stored);
    EXPECT_FALSE(stored[L"2 One"].checked);
    EXPECT_EQ(stored[L"2 One"].image_width, 5);
    EXPECT_TRUE(stored[L"1 Two"].checked);
    EXPECT_FALSE(stored[L"9 other"].checked);
    EXPECT_EQ(ticks(list), "x--");
}

TEST_F(CameraTable, InvertingAddsARecordForARowWithoutACamera) {
    add_columns();
    ui.CreateCameraTable(list, {{L"Unknown", CameraRecord()}});
    CameraMap stored = {{L"Known", CameraRecord()}};
    ui.InvertCameraSelection(dialog, stored);
    ASSERT_EQ(stored.size(), 2u);
    EXPECT_TRUE(stored[L"Unknown"].checked);
    EXPECT_EQ(stored[L"Unknown"].start_frame, 1);
    EXPECT_FALSE(stored[L"Known"].checked);
    EXPECT_EQ(row_count(list), 2);
}

TEST_F(CameraTable, InvertingAddsAnUntickedCameraWithoutANameForAMissingRow) {
    add_columns();
    ui.CreateCameraTable(list, {{L"One", CameraRecord()}});
    CameraMap stored = {{L"One", CameraRecord()}, {L"Two", CameraRecord()}};
    ui.InvertCameraSelection(dialog, stored);
    ASSERT_EQ(stored.size(), 3u);
    EXPECT_TRUE(stored[L"One"].checked);
    EXPECT_FALSE(stored[L"Two"].checked);
    EXPECT_FALSE(stored[L""].checked);
}

TEST_F(CameraTable, ARowsTextIsReadUpTo259Characters) {
    add_columns();
    const std::wstring long_name(300, L'n');
    ui.CreateCameraTable(list, {{long_name, CameraRecord()}});
    EXPECT_EQ(tarvo::ReadCameraRow(list, 0).text, std::wstring(259, L'n'));
    EXPECT_EQ(tarvo::ReadCameraRow(list, 0).state_image, 1u);
}

TEST_F(CameraTable, MissingRowReadsAsEmpty) {
    EXPECT_EQ(tarvo::ReadCameraRow(list, 7).text, L"");
    EXPECT_EQ(tarvo::ReadCameraRow(list, 7).state_image, 0u);
}

TEST_F(CameraTable, ValidationCopiesTheTicksIntoTheRecords) {
    add_columns();
    cameras[L"One"].checked = true;
    ui.CreateCameraTable(list, cameras);
    tick(list, 2);
    new_log_lines();
    EXPECT_EQ(ui.validate_cameras(dialog, cameras), 0);
    EXPECT_FALSE(cameras[L"One"].checked);
    EXPECT_FALSE(cameras[L"Three"].checked);
    EXPECT_TRUE(cameras[L"Two"].checked);
    EXPECT_EQ(new_log_lines(), Lines({"[INFO] The information of cameras to be submit is valid."}));
}

TEST_F(CameraTable, ValidationReturnsTheCodeOfTheProblem) {
    add_columns();
    cameras[L"Three"].start_frame = -1;
    cameras[L"Two."] = CameraRecord();
    ui.CreateCameraTable(list, cameras);
    EXPECT_EQ(ui.validate_cameras(dialog, cameras), 3);
    tick(list, 3);
    EXPECT_EQ(ui.validate_cameras(dialog, cameras), 2);
    tick(list, 1);
    EXPECT_EQ(ui.validate_cameras(dialog, cameras), 1);
}

TEST_F(CameraTable, ValidationKeepsTheStoredTicksAfterTheFirstBadRow) {
    add_columns();
    cameras[L"One"].start_frame = -1;
    cameras[L"Two"].checked = true;
    ui.CreateCameraTable(list, cameras);
    tick(list, 0);
    EXPECT_EQ(ui.validate_cameras(dialog, cameras), 1);
    EXPECT_TRUE(cameras[L"One"].checked);
    EXPECT_TRUE(cameras[L"Two"].checked);
}

} // namespace
