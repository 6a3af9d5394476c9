#include "dialog/controls.h"
#include "tests/support/dialog_fixture.h"

namespace {

using namespace support;
using tarvo::CameraMap;
using tarvo::CameraRecord;
using tarvo::Text;

// Messages to the list, in short: redraw off "(" and on ")", all rows deleted "x", a row "+", its state
// "s", one of its further cells by the column's number.
std::string g_told;

struct ToldColumn {
    WPARAM index;
    LVCOLUMNW record;
    std::wstring text;
};
std::vector<ToldColumn> g_columns;

// A row or a further cell of it.
struct ToldCell {
    LVITEMW record;
    std::wstring text;
};
std::vector<ToldCell> g_cells;

struct ToldState {
    WPARAM row;
    UINT mask;
    UINT state;
};
std::vector<ToldState> g_states;

void hear_cell(UINT message, const LVITEMW& cell) {
    g_told += message == LVM_INSERTITEMW ? std::string("+") : std::to_string(cell.iSubItem);
    g_cells.push_back({cell, cell.pszText});
}

void hear(UINT message, WPARAM w_param, LPARAM l_param) {
    if (message == WM_SETREDRAW) {
        g_told += w_param == FALSE ? "(" : ")";
    } else if (message == LVM_DELETEALLITEMS) {
        g_told += "x";
    } else if (message == LVM_INSERTCOLUMNW) {
        const auto& column = *reinterpret_cast<const LVCOLUMNW*>(l_param);
        g_columns.push_back({w_param, column, column.pszText});
    } else if (message == LVM_INSERTITEMW || message == LVM_SETITEMW) {
        hear_cell(message, *reinterpret_cast<const LVITEMW*>(l_param));
    } else if (message == LVM_SETITEMSTATE) {
        const auto& item = *reinterpret_cast<const LVITEMW*>(l_param);
        g_told += "s";
        g_states.push_back({w_param, item.stateMask, item.state});
    }
}

LRESULT CALLBACK Listen(HWND window, UINT message, WPARAM w_param, LPARAM l_param, UINT_PTR, DWORD_PTR) {
    hear(message, w_param, l_param);
    return ::DefSubclassProc(window, message, w_param, l_param);
}

class CameraTableRecords : public DialogTest {
protected:
    CameraTableRecords() {
        ::SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, 37);
        g_told.clear();
        g_columns.clear();
        g_cells.clear();
        g_states.clear();
        EXPECT_TRUE(::SetWindowSubclass(list, Listen, 1, 0));
        ui.CreateCameraTableHead(list);
    }
    ~CameraTableRecords() override { ::RemoveWindowSubclass(list, Listen, 1); }

    HWND dialog = show(IDD_MAIN, InertDialogProc);
    HWND list = ::GetDlgItem(dialog, IDC_MAIN_CAMERAS);
    CameraMap cameras = {{L"One", CameraRecord()}, {L"Three", CameraRecord()}, {L"Two", CameraRecord()}};
};

TEST_F(CameraTableRecords, ColumnSetsOrderWithoutMaskBit) {
    constexpr UINT kFormatWidthTextSubItem = 15;
    constexpr int kCentred = 2;
    const struct {
        unsigned text_id;
        int width;
    } expected[] = {{32, 200}, {34, 70}, {33, 70}, {35, 60}, {83, 60}, {36, 60}, {66, 200}};
    ASSERT_EQ(g_columns.size(), 7u);
    for (int index = 0; index < 7; ++index) {
        const ToldColumn& told = g_columns[static_cast<std::size_t>(index)];
        EXPECT_EQ(told.index, static_cast<WPARAM>(index));
        EXPECT_EQ(told.record.mask, kFormatWidthTextSubItem);
        EXPECT_EQ(told.record.fmt, kCentred);
        EXPECT_EQ(told.record.cx, expected[index].width);
        EXPECT_EQ(told.record.iSubItem, 0);
        EXPECT_EQ(told.record.iOrder, index);
        EXPECT_EQ(told.text, Text(expected[index].text_id));
    }
}

TEST_F(CameraTableRecords, TheSphericalCellOfARowIsWrittenLast) {
    ui.CreateCameraTable(list, cameras);
    EXPECT_EQ(g_told, "(+123564+123564+123564)");
}

TEST_F(CameraTableRecords, UpdateSetsTheCheckBoxOfARowBeforeItsOtherCells) {
    ui.UpdateCameraTable(list, cameras);
    EXPECT_EQ(g_told, "(x+s123564+s123564+s123564)");
}

TEST_F(CameraTableRecords, CellSetsOnlyTextRowAndColumn) {
    constexpr UINT kTextOnly = 1;
    constexpr int kColumns[] = {0, 1, 2, 3, 5, 6, 4};
    cameras = {{L"One", CameraRecord()}, {L"Two", CameraRecord()}};
    cameras[L"Two"].image_width = 1920;
    ui.UpdateCameraTable(list, cameras);
    ASSERT_EQ(g_cells.size(), 14u);
    for (std::size_t index = 0; index < g_cells.size(); ++index) {
        EXPECT_EQ(g_cells[index].record.mask, kTextOnly);
        EXPECT_EQ(g_cells[index].record.iItem, static_cast<int>(index / 7));
        EXPECT_EQ(g_cells[index].record.iSubItem, kColumns[index % 7]);
        EXPECT_EQ(g_cells[index].record.cchTextMax, 260);
    }
    EXPECT_EQ(g_cells[0].text, L"One");
    EXPECT_EQ(g_cells[6].text, Text(IDS_NO));
    EXPECT_EQ(g_cells[7].text, L"Two");
    EXPECT_EQ(g_cells[8].text, L"1920");
}

TEST_F(CameraTableRecords, UpdateSetsOnlyTheStateImageOfEachRow) {
    cameras[L"Three"].checked = true;
    ui.UpdateCameraTable(list, cameras);
    const UINT expected[] = {0x1000, 0x2000, 0x1000};
    ASSERT_EQ(g_states.size(), 3u);
    for (std::size_t row = 0; row < 3; ++row) {
        EXPECT_EQ(g_states[row].row, row);
        EXPECT_EQ(g_states[row].mask, 0xF000u);
        EXPECT_EQ(g_states[row].state, expected[row]);
    }
}

TEST_F(CameraTableRecords, ListIsRedrawnOnlyAfterItIsFilled) {
    ui.UpdateCameraTable(list, CameraMap());
    EXPECT_EQ(g_told, "");
    ui.UpdateCameraTable(list, {{L"Only", CameraRecord()}});
    EXPECT_EQ(g_told, "(x+s123564)");
    EXPECT_TRUE(::GetUpdateRect(list, nullptr, FALSE));
}

} // namespace
