#include "tests/support/dialog_metrics.h"

#include "resources/resource_ids.h"
#include "tests/support/module_resources.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace tarvo_test {
namespace {

// Other fonts than the measured one are wider; texts have to leave this much room.
constexpr double kSlack = 1.15;
// Around everything in the dialog, and inside a group box, in dialog units.
constexpr int kMargin = 7;
// A drop-down list's height in the template counts its list.
constexpr int kComboHeight = 13;

struct ExpectedControl {
    DWORD id;
    const wchar_t* kind;
    DWORD present; // style bits
    DWORD absent;
};

constexpr DWORD kTab = WS_TABSTOP;
constexpr DWORD kFloatSpin = UDS_AUTOBUDDY | UDS_ALIGNRIGHT | UDS_ARROWKEYS;
constexpr DWORD kIntegerSpin = kFloatSpin | UDS_SETBUDDYINT | UDS_NOTHOUSANDS;

const ExpectedControl kMainControls[] = {
    {IDCANCEL, L"Button", kTab, WS_DISABLED},
    {IDC_MAIN_VIRUS_CHECK, L"Button", BS_AUTOCHECKBOX | kTab, WS_DISABLED},
    {IDC_MAIN_ANALYSE, L"Button", kTab, WS_DISABLED},
    {IDC_MAIN_SUBMIT, L"Button", BS_DEFPUSHBUTTON | kTab, WS_DISABLED},
    {IDC_MAIN_CAMERAS, L"SysListView32", LVS_REPORT | LVS_SHOWSELALWAYS | kTab,
     LVS_SINGLESEL | LVS_SORTASCENDING | LVS_SORTDESCENDING | LVS_OWNERDATA | LVS_NOCOLUMNHEADER},
    {IDC_MAIN_EDIT_CAMERAS, L"Button", kTab, WS_DISABLED},
    {IDC_MAIN_WARNINGS, L"ListBox", WS_HSCROLL | WS_VSCROLL | LBS_NOINTEGRALHEIGHT | kTab, LBS_SORT},
    {IDC_MAIN_INVERT, L"Button", kTab, WS_DISABLED},
    {IDC_MAIN_SELECT_ALL, L"Button", kTab, WS_DISABLED},
    {IDC_MAIN_BLOCKS_1, L"Button", BS_AUTORADIOBUTTON | WS_GROUP | kTab, WS_DISABLED},
    {IDC_MAIN_BLOCKS_10, L"Button", BS_AUTORADIOBUTTON, WS_GROUP | WS_DISABLED},
    {IDC_MAIN_BLOCKS_64, L"Button", BS_AUTORADIOBUTTON, WS_GROUP | WS_DISABLED},
    {IDC_MAIN_BLOCKS_LAST, L"Button", BS_AUTORADIOBUTTON | WS_DISABLED, WS_GROUP | WS_VISIBLE},
    {IDC_MAIN_SCENE_NAME, L"Edit", ES_AUTOHSCROLL | kTab, ES_READONLY},
    {IDC_MAIN_AO_SUBDIVS, L"Edit", ES_AUTOHSCROLL | kTab, ES_READONLY},
    {IDC_MAIN_GAMMA, L"Edit", ES_AUTOHSCROLL | kTab, ES_NUMBER | ES_READONLY},
    {IDC_MAIN_AO_RADIUS, L"Edit", ES_AUTOHSCROLL | kTab, ES_NUMBER | ES_READONLY},
    {IDC_MAIN_COLOR_CHANNEL, L"Button", BS_AUTOCHECKBOX | kTab, WS_DISABLED},
    {IDC_MAIN_AO_CHANNEL, L"Button", BS_AUTOCHECKBOX | kTab, WS_DISABLED},
    {IDC_MAIN_AO_SUBDIVS_SPIN, L"msctls_updown32", kIntegerSpin, UDS_WRAP},
    {IDC_MAIN_GAMMA_SPIN, L"msctls_updown32", kFloatSpin, UDS_SETBUDDYINT | UDS_WRAP},
    {IDC_MAIN_AO_RADIUS_SPIN, L"msctls_updown32", kFloatSpin, UDS_SETBUDDYINT | UDS_WRAP},
    {IDC_MAIN_LINK, L"SysLink", kTab, WS_DISABLED},
};

// No Cancel button: the procedure does not handle IDCANCEL, such a button would do nothing.
const ExpectedControl kEditControls[] = {
    {IDC_EDIT_CONFIRM, L"Button", BS_DEFPUSHBUTTON | kTab, WS_DISABLED},
    {IDC_EDIT_WIDTH, L"Edit", ES_AUTOHSCROLL | kTab, ES_NUMBER | ES_READONLY},
    {IDC_EDIT_HEIGHT, L"Edit", ES_AUTOHSCROLL | kTab, ES_NUMBER | ES_READONLY},
    {IDC_EDIT_START_FRAME, L"Edit", ES_AUTOHSCROLL | kTab, ES_NUMBER | ES_READONLY},
    {IDC_EDIT_FORMAT, L"ComboBox", CBS_DROPDOWNLIST | WS_VSCROLL | kTab, CBS_SORT},
    {IDC_EDIT_SPHERICAL, L"ComboBox", CBS_DROPDOWNLIST | kTab, CBS_SORT},
    {IDC_EDIT_NAME, L"Edit", ES_AUTOHSCROLL | kTab, ES_READONLY},
    {IDC_EDIT_RATIO, L"Edit", ES_AUTOHSCROLL | kTab, ES_NUMBER | ES_READONLY},
    {IDC_EDIT_RATIO_SPIN, L"SpinnerControl", 0, WS_DISABLED},
    {IDC_EDIT_RATIO_LOCK, L"Button", BS_AUTOCHECKBOX | kTab, WS_DISABLED},
};

const std::pair<DWORD, DWORD> kSpinsAndBuddies[] = {
    {IDC_MAIN_GAMMA_SPIN, IDC_MAIN_GAMMA},
    {IDC_MAIN_AO_RADIUS_SPIN, IDC_MAIN_AO_RADIUS},
    {IDC_MAIN_AO_SUBDIVS_SPIN, IDC_MAIN_AO_SUBDIVS},
};

// The table's columns in pixels, at every screen scale.
const std::pair<unsigned, int> kColumns[] = {
    {IDS_COLUMN_CAMERA, 200},   {IDS_COLUMN_WIDTH, 70},  {IDS_COLUMN_HEIGHT, 70},       {IDS_COLUMN_START_FRAME, 60},
    {IDS_COLUMN_SPHERICAL, 60}, {IDS_COLUMN_FORMAT, 60}, {IDS_COLUMN_RENDER_NAME, 200},
};

DWORD ButtonType(const TemplateItem& item) {
    return item.kind == L"Button" ? item.style & BS_TYPEMASK : static_cast<DWORD>(BS_TYPEMASK);
}

bool IsGroupBox(const TemplateItem& item) {
    return ButtonType(item) == BS_GROUPBOX;
}

bool IsStatic(const TemplateItem& item) {
    return item.kind == L"Static";
}

bool IsPushButton(const TemplateItem& item) {
    return ButtonType(item) == BS_PUSHBUTTON || ButtonType(item) == BS_DEFPUSHBUTTON;
}

bool IsTicked(const TemplateItem& item) {
    return ButtonType(item) == BS_AUTOCHECKBOX || ButtonType(item) == BS_AUTORADIOBUTTON;
}

bool IsSpin(const TemplateItem& item) {
    return item.kind == L"msctls_updown32";
}

// Fields have no text of their own; a label before them carries their access key.
bool IsField(const TemplateItem& item) {
    return item.kind == L"Edit" || item.kind == L"ComboBox" || item.kind == L"ListBox" ||
           item.kind == L"SysListView32";
}

bool IsPlaced(const TemplateItem& item) {
    return item.has(WS_VISIBLE) && !IsSpin(item);
}

int BottomOf(const TemplateItem& item) {
    return item.kind == L"ComboBox" ? item.y + kComboHeight : item.bottom();
}

bool Overlap(const TemplateItem& a, const TemplateItem& b) {
    return a.x < b.right() && b.x < a.right() && a.y < BottomOf(b) && b.y < BottomOf(a);
}

bool LiesWithin(const TemplateItem& item, const TemplateItem& box) {
    return item.x >= box.x + kMargin && item.right() <= box.right() - kMargin && item.y > box.y &&
           BottomOf(item) <= box.bottom() - kMargin + 1;
}

// As one reads: below, or to the right.
bool ReadsBefore(const TemplateItem& a, const TemplateItem& b) {
    return b.y >= BottomOf(a) || b.x >= a.right();
}

std::vector<TemplateItem> Select(const DialogTemplate& dialog, bool (*wanted)(const TemplateItem&)) {
    std::vector<TemplateItem> result;
    std::copy_if(dialog.items.begin(), dialog.items.end(), std::back_inserter(result), wanted);
    return result;
}

// The index of the group box that the item lies in; the number of boxes when it lies in none.
std::size_t GroupOf(const TemplateItem& item, const std::vector<TemplateItem>& boxes) {
    const auto holds = [&item](const TemplateItem& box) { return LiesWithin(item, box); };
    return static_cast<std::size_t>(std::find_if(boxes.begin(), boxes.end(), holds) - boxes.begin());
}

std::string Describe(const TemplateItem& item) {
    std::string result = "control " + std::to_string(static_cast<int>(item.id)) + " at " +
                         std::to_string(item.x) + "," + std::to_string(item.y) + " '";
    for (const wchar_t unit : item.text) {
        result.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    }
    return result + "'";
}

using Case = std::tuple<unsigned, LANGID>;

class DialogIn : public ::testing::TestWithParam<Case> {
protected:
    unsigned name() const { return std::get<0>(GetParam()); }
    LANGID language() const { return std::get<1>(GetParam()); }
    bool is_main() const { return name() == IDD_MAIN; }

    std::vector<ExpectedControl> expected() const {
        return is_main()
                   ? std::vector<ExpectedControl>(std::begin(kMainControls), std::end(kMainControls))
                   : std::vector<ExpectedControl>(std::begin(kEditControls), std::end(kEditControls));
    }

    void SetUp() override { ASSERT_FALSE(dialog.items.empty()) << "no such template"; }

    const DialogTemplate dialog = ReadDialogTemplate(std::get<0>(GetParam()), std::get<1>(GetParam()));
};

INSTANTIATE_TEST_SUITE_P(Templates, DialogIn,
                         ::testing::Combine(::testing::Values(IDD_MAIN, IDD_CAMERA_EDIT),
                                            ::testing::Values(kEnglish, kChinese)),
                         [](const ::testing::TestParamInfo<Case>& which) {
                             const bool main = std::get<0>(which.param) == IDD_MAIN;
                             const bool english = std::get<1>(which.param) == kEnglish;
                             return std::string(main ? "Main" : "Edit") + (english ? "English" : "Chinese");
                         });

TEST_P(DialogIn, HasTheControlsThatTheCodeWorksWith) {
    std::set<DWORD> ids;
    for (const ExpectedControl& wanted : expected()) {
        ids.insert(wanted.id);
        const TemplateItem* item = dialog.find(wanted.id);
        ASSERT_NE(nullptr, item) << wanted.id;
        EXPECT_EQ(wanted.kind, item->kind) << Describe(*item);
        EXPECT_EQ(wanted.present, item->style & wanted.present) << Describe(*item);
        EXPECT_EQ(0u, item->style & wanted.absent) << Describe(*item);
        if (item->kind == L"Button") {
            EXPECT_EQ(wanted.present & BS_TYPEMASK, ButtonType(*item)) << Describe(*item);
        }
    }
    for (const TemplateItem& item : dialog.items) {
        EXPECT_TRUE(item.id == static_cast<DWORD>(-1) || ids.erase(item.id) == 1) << Describe(item);
    }
}

TEST_P(DialogIn, IsAModalDialogWithTheShellFont) {
    const DWORD wanted = DS_SHELLFONT | DS_MODALFRAME | DS_CENTER | WS_POPUP | WS_CAPTION | WS_SYSMENU;
    EXPECT_EQ(wanted, dialog.style & wanted);
    EXPECT_EQ(L"MS Shell Dlg", dialog.font);
    EXPECT_EQ(language() == kChinese ? 9 : 8, dialog.point_size);
    EXPECT_FALSE(dialog.caption.empty());
}

TEST_P(DialogIn, HasOneDefaultButton) {
    const auto is_default = [](const TemplateItem& item) { return ButtonType(item) == BS_DEFPUSHBUTTON; };
    EXPECT_EQ(1, std::count_if(dialog.items.begin(), dialog.items.end(), is_default));
}

TEST_P(DialogIn, GivesEachAccessKeyOnce) {
    std::map<wchar_t, std::string> owners;
    for (const TemplateItem& item : dialog.items) {
        const wchar_t key = AccessKey(item.text);
        if (key != 0) {
            EXPECT_TRUE(owners.emplace(key, Describe(item)).second)
                << static_cast<char>(key) << ": " << Describe(item) << " and " << owners[key];
        }
    }
}

// Close answers to Esc and OK to Enter; the link control has no access keys.
TEST_P(DialogIn, GivesEveryButtonAndFieldAnAccessKey) {
    const TemplateItem* previous = nullptr;
    for (const TemplateItem& item : dialog.items) {
        const bool by_key = item.id == IDCANCEL || (!is_main() && item.id == IDC_EDIT_CONFIRM);
        if ((IsPushButton(item) || IsTicked(item)) && item.has(WS_VISIBLE) && !by_key) {
            EXPECT_NE(0, AccessKey(item.text)) << Describe(item);
        }
        if (IsField(item)) {
            const bool labelled = previous != nullptr && (IsStatic(*previous) || IsGroupBox(*previous));
            EXPECT_TRUE(labelled && AccessKey(previous->text) != 0) << Describe(item);
        }
        previous = &item;
    }
}

TEST_P(DialogIn, HasTheSameShapeInBothLanguages) {
    const DialogTemplate english = ReadDialogTemplate(name(), kEnglish);
    ASSERT_EQ(english.items.size(), dialog.items.size());
    for (std::size_t i = 0; i < dialog.items.size(); ++i) {
        const TemplateItem& here = dialog.items[i];
        const TemplateItem& there = english.items[i];
        EXPECT_EQ(std::tie(there.id, there.kind, there.style, there.ex_style),
                  std::tie(here.id, here.kind, here.style, here.ex_style))
            << Describe(there);
        EXPECT_EQ(std::tie(there.x, there.y, there.width, there.height),
                  std::tie(here.x, here.y, here.width, here.height))
            << Describe(there);
        EXPECT_EQ(AccessKey(there.text), AccessKey(here.text)) << Describe(there);
        EXPECT_EQ(there.text.empty(), here.text.empty()) << Describe(there);
    }
}

TEST_P(DialogIn, KeepsAMarginAroundEverything) {
    for (const TemplateItem& item : Select(dialog, &IsPlaced)) {
        EXPECT_GE(item.x, kMargin) << Describe(item);
        EXPECT_GE(item.y, kMargin) << Describe(item);
        EXPECT_LE(item.right(), dialog.width - kMargin) << Describe(item);
        EXPECT_LE(BottomOf(item), dialog.height - kMargin) << Describe(item);
    }
}

// Group boxes keep apart from each other, and everything else is wholly inside one or wholly outside.
TEST_P(DialogIn, LetsNothingOverlap) {
    const std::vector<TemplateItem> items = Select(dialog, &IsPlaced);
    for (std::size_t i = 0; i < items.size(); ++i) {
        for (std::size_t j = i + 1; j < items.size(); ++j) {
            const bool inside = (IsGroupBox(items[i]) && LiesWithin(items[j], items[i])) ||
                                (IsGroupBox(items[j]) && LiesWithin(items[i], items[j]));
            EXPECT_TRUE(inside || !Overlap(items[i], items[j]))
                << Describe(items[i]) << " and " << Describe(items[j]);
        }
    }
}

TEST_P(DialogIn, FollowsTheEyeInTabOrder) {
    const std::vector<TemplateItem> boxes = Select(dialog, &IsGroupBox);
    for (std::size_t i = 1; i < boxes.size(); ++i) {
        EXPECT_TRUE(ReadsBefore(boxes[i - 1], boxes[i])) << Describe(boxes[i]);
    }
    std::size_t group = 0;
    const TemplateItem* previous = nullptr;
    for (const TemplateItem& item : dialog.items) {
        if (!IsPlaced(item) || IsGroupBox(item)) {
            continue;
        }
        const std::size_t own = GroupOf(item, boxes);
        EXPECT_TRUE(own == group || own == group + 1) << Describe(item) << " leaves its group's order";
        if (own == group && previous != nullptr) {
            EXPECT_TRUE(ReadsBefore(*previous, item)) << Describe(item);
        }
        group = own;
        previous = &item;
    }
}

TEST_P(DialogIn, ComesToLife) {
    const LiveDialog live(name(), language());
    ASSERT_NE(nullptr, live.window());
    for (const ExpectedControl& control : expected()) {
        EXPECT_NE(nullptr, live.control(static_cast<int>(control.id))) << control.id;
    }
}

// What the control itself draws beside its text: glyph and gap, button edges, a group box's corners.
int FrameWidth(const TemplateItem& item) {
    constexpr int kGlyphGap = 5;
    constexpr int kButtonEdges = 12;
    constexpr int kGroupCorners = 20;
    if (IsTicked(item)) {
        return ::GetSystemMetrics(SM_CXMENUCHECK) + kGlyphGap;
    }
    if (IsPushButton(item)) {
        return kButtonEdges;
    }
    return IsGroupBox(item) ? kGroupCorners : 0;
}

TEST_P(DialogIn, HasRoomForItsTexts) {
    const LiveDialog live(name(), language());
    ASSERT_NE(nullptr, live.window());
    for (const TemplateItem& item : dialog.items) {
        if (item.text.empty()) {
            continue;
        }
        const SIZE room = live.to_pixels(item.width, item.height);
        EXPECT_GE(room.cy, live.line_height()) << Describe(item);
        if (IsStatic(item) && room.cy >= 2 * live.line_height()) {
            const int width = static_cast<int>(room.cx / kSlack);
            EXPECT_GE(room.cy, live.text_height(item.text, width)) << Describe(item);
        } else {
            const double needed = live.text_width(item.text) * kSlack + FrameWidth(item);
            EXPECT_GE(room.cx, needed) << Describe(item);
        }
    }
}

// SimSun, the dialog font of Chinese Windows, has cells of 6 x 12 pixels with Chinese characters two cells wide, so
// the room is known without it: a cell is four dialog units.
TEST_P(DialogIn, HasRoomForItsChineseTextsInSimSun) {
    if (language() != kChinese) {
        GTEST_SKIP() << "only for Chinese";
    }
    for (const TemplateItem& item : dialog.items) {
        int cells = 0;
        for (const wchar_t unit : PlainText(item.text)) {
            cells += unit < 0x80 ? 1 : 2;
        }
        const int lines = IsStatic(item) ? std::max(1, item.height / 8) : 1;
        EXPECT_GE(item.width * lines, cells * 4 * (lines > 1 ? kSlack : 1.0) + FrameWidth(item) * 4 / 6)
            << Describe(item);
    }
}

TEST(MainDialogTest, ClosesTheRadioGroupAfterItsLastButton) {
    const DialogTemplate dialog = ReadDialogTemplate(IDD_MAIN, kEnglish);
    const auto is_last = [](const TemplateItem& item) { return item.id == IDC_MAIN_BLOCKS_LAST; };
    const auto last = std::find_if(dialog.items.begin(), dialog.items.end(), is_last);
    ASSERT_GE(dialog.items.end() - last, 2);
    ASSERT_GE(last - dialog.items.begin(), 3);
    EXPECT_EQ(static_cast<DWORD>(IDC_MAIN_BLOCKS_1), (last - 3)->id);
    EXPECT_EQ(static_cast<DWORD>(IDC_MAIN_BLOCKS_10), (last - 2)->id);
    EXPECT_EQ(static_cast<DWORD>(IDC_MAIN_BLOCKS_64), (last - 1)->id);
    EXPECT_TRUE((last + 1)->has(WS_GROUP));
}

TEST(MainDialogTest, ShowsTheWholeCameraTableAtTheUsualScale) {
    constexpr int kColumnsScrollBarAndEdges = 720 + 17 + 4;
    constexpr int kCellWidth = 6; // of the usual 8-point dialog font; four dialog units
    const DialogTemplate dialog = ReadDialogTemplate(IDD_MAIN, kEnglish);
    const TemplateItem* list = dialog.find(IDC_MAIN_CAMERAS);
    ASSERT_NE(nullptr, list);
    EXPECT_GE(list->width * kCellWidth / 4, kColumnsScrollBarAndEdges);
}

TEST(MainDialogTest, HasRoomForTheColumnHeadings) {
    constexpr int kHeadingEdges = 12;
    for (const LANGID language : {kEnglish, kChinese}) {
        const LiveDialog live(IDD_MAIN, language);
        const std::map<unsigned, std::wstring> texts = StringTable(language);
        for (const auto& column : kColumns) {
            EXPECT_LE(live.text_width(texts.at(column.first)) + kHeadingEdges, column.second)
                << "text " << column.first << " in language " << language;
        }
    }
}

TEST(MainDialogTest, LinksToASecurePage) {
    for (const LANGID language : {kEnglish, kChinese}) {
        const DialogTemplate dialog = ReadDialogTemplate(IDD_MAIN, language);
        const TemplateItem* link = dialog.find(IDC_MAIN_LINK);
        ASSERT_NE(nullptr, link);
        EXPECT_EQ(0u, link->text.find(L"<a href=\"https://")) << Describe(*link);
        EXPECT_FALSE(PlainText(link->text).empty());
    }
}

TEST(MainDialogTest, AttachesEachUpDownToTheRightEndOfItsField) {
    const LiveDialog live(IDD_MAIN, kEnglish);
    const DialogTemplate dialog = ReadDialogTemplate(IDD_MAIN, kEnglish);
    for (const auto& pair : kSpinsAndBuddies) {
        const HWND spin = live.control(static_cast<int>(pair.first));
        const HWND field = live.control(static_cast<int>(pair.second));
        ASSERT_EQ(field, reinterpret_cast<HWND>(::SendMessageW(spin, UDM_GETBUDDY, 0, 0))) << pair.first;
        RECT place = {};
        ::GetWindowRect(spin, &place);
        ::MapWindowPoints(nullptr, live.window(), reinterpret_cast<POINT*>(&place), 2);
        const TemplateItem* item = dialog.find(pair.second);
        EXPECT_LE(place.right, live.to_pixels(item->right(), 0).cx + 1) << pair.first;
        EXPECT_GE(place.left, live.to_pixels(item->x + item->width / 2, 0).cx) << pair.first;
    }
}

TEST(MainDialogTest, WritesOnlyTheSubdivisionsByUpDown) {
    const LiveDialog live(IDD_MAIN, kEnglish);
    ::SetDlgItemTextW(live.window(), IDC_MAIN_GAMMA, L"2.2");
    ::SendDlgItemMessageW(live.window(), IDC_MAIN_GAMMA_SPIN, UDM_SETPOS, 0, 3);
    ::SendDlgItemMessageW(live.window(), IDC_MAIN_AO_SUBDIVS_SPIN, UDM_SETRANGE, 0, MAKELPARAM(1000, 1));
    ::SendDlgItemMessageW(live.window(), IDC_MAIN_AO_SUBDIVS_SPIN, UDM_SETPOS, 0, 1000);
    wchar_t text[32] = {};
    ::GetDlgItemTextW(live.window(), IDC_MAIN_GAMMA, text, 32);
    EXPECT_STREQ(L"2.2", text);
    ::GetDlgItemTextW(live.window(), IDC_MAIN_AO_SUBDIVS, text, 32);
    EXPECT_STREQ(L"1000", text); // a thousands separator would be read back as 1
}

} // namespace
} // namespace tarvo_test
