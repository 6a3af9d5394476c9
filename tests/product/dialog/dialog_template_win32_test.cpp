#include "tests/support/module_resources.h"
#include "tests/support/template_fixture.h"

#include "resources/resource_ids.h"
#include "tests/support/dialog_metrics.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace support {
namespace {

// What the dialogs' code requires of the templates.
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
    {IDCANCEL, L"button", kTab, WS_DISABLED},
    {IDC_MAIN_VIRUS_CHECK, L"button", BS_AUTOCHECKBOX | kTab, WS_DISABLED},
    {IDC_MAIN_ANALYSE, L"button", kTab, WS_DISABLED},
    {IDC_MAIN_SUBMIT, L"button", BS_PUSHBUTTON | kTab, WS_DISABLED},
    {IDC_MAIN_CAMERAS, L"syslistview32", LVS_REPORT | LVS_SHOWSELALWAYS | kTab,
     LVS_SINGLESEL | LVS_SORTASCENDING | LVS_SORTDESCENDING | LVS_OWNERDATA | LVS_NOCOLUMNHEADER},
    {IDC_MAIN_EDIT_CAMERAS, L"button", kTab, WS_DISABLED},
    {IDC_MAIN_WARNINGS, L"listbox", WS_HSCROLL | WS_VSCROLL | LBS_NOINTEGRALHEIGHT | kTab, LBS_SORT},
    {IDC_MAIN_INVERT, L"button", kTab, WS_DISABLED},
    {IDC_MAIN_SELECT_ALL, L"button", kTab, WS_DISABLED},
    {IDC_MAIN_BLOCKS_1, L"button", BS_AUTORADIOBUTTON | WS_GROUP | kTab, WS_DISABLED},
    {IDC_MAIN_BLOCKS_10, L"button", BS_AUTORADIOBUTTON, WS_GROUP | WS_DISABLED},
    {IDC_MAIN_BLOCKS_64, L"button", BS_AUTORADIOBUTTON, WS_GROUP | WS_DISABLED},
    {IDC_MAIN_BLOCKS_LAST, L"button", BS_AUTORADIOBUTTON | WS_DISABLED, WS_GROUP | WS_VISIBLE},
    {IDC_MAIN_SCENE_NAME, L"edit", ES_AUTOHSCROLL | kTab, ES_READONLY},
    {IDC_MAIN_AO_SUBDIVS, L"edit", ES_AUTOHSCROLL | kTab, ES_READONLY},
    {IDC_MAIN_GAMMA, L"edit", ES_AUTOHSCROLL | kTab, ES_NUMBER | ES_READONLY},
    {IDC_MAIN_AO_RADIUS, L"edit", ES_AUTOHSCROLL | kTab, ES_NUMBER | ES_READONLY},
    {IDC_MAIN_COLOR_CHANNEL, L"button", BS_AUTOCHECKBOX | kTab, WS_DISABLED},
    {IDC_MAIN_AO_CHANNEL, L"button", BS_AUTOCHECKBOX | kTab, WS_DISABLED},
    {IDC_MAIN_AO_SUBDIVS_SPIN, L"msctls_updown32", kIntegerSpin, UDS_WRAP},
    {IDC_MAIN_GAMMA_SPIN, L"msctls_updown32", kFloatSpin, UDS_SETBUDDYINT | UDS_WRAP},
    {IDC_MAIN_AO_RADIUS_SPIN, L"msctls_updown32", kFloatSpin, UDS_SETBUDDYINT | UDS_WRAP},
    {IDC_MAIN_LINK, L"syslink", kTab, WS_DISABLED},
};

// No Cancel button: the procedure does not handle IDCANCEL, such a button would do nothing.
const ExpectedControl kEditControls[] = {
    {IDC_EDIT_CONFIRM, L"button", BS_PUSHBUTTON | WS_GROUP | kTab, WS_DISABLED},
    {IDC_EDIT_WIDTH, L"edit", ES_AUTOHSCROLL | kTab, ES_NUMBER | ES_READONLY},
    {IDC_EDIT_HEIGHT, L"edit", ES_AUTOHSCROLL | kTab, ES_NUMBER | ES_READONLY},
    {IDC_EDIT_START_FRAME, L"edit", ES_AUTOHSCROLL | kTab, ES_NUMBER | ES_READONLY},
    {IDC_EDIT_FORMAT, L"combobox", CBS_DROPDOWNLIST | WS_VSCROLL | kTab, CBS_SORT},
    {IDC_EDIT_SPHERICAL, L"combobox", CBS_DROPDOWNLIST | kTab, CBS_SORT},
    {IDC_EDIT_NAME, L"edit", ES_AUTOHSCROLL | kTab, ES_READONLY},
    {IDC_EDIT_RATIO, L"custedit", kTab, WS_DISABLED},
    {IDC_EDIT_RATIO_SPIN, L"spinnercontrol", 0, WS_DISABLED | kTab},
    {IDC_EDIT_RATIO_LOCK, L"button", BS_AUTOCHECKBOX | WS_GROUP | kTab, WS_DISABLED},
};

const std::pair<DWORD, DWORD> kSpinsAndBuddies[] = {
    {IDC_MAIN_GAMMA_SPIN, IDC_MAIN_GAMMA},
    {IDC_MAIN_AO_RADIUS_SPIN, IDC_MAIN_AO_RADIUS},
    {IDC_MAIN_AO_SUBDIVS_SPIN, IDC_MAIN_AO_SUBDIVS},
};

class DialogTemplateIn : public TemplateTest {
protected:
    std::vector<ExpectedControl> expected() const {
        return is_main() ? std::vector<ExpectedControl>(std::begin(kMainControls), std::end(kMainControls))
                         : std::vector<ExpectedControl>(std::begin(kEditControls), std::end(kEditControls));
    }
};

INSTANTIATE_TEST_SUITE_P(Templates, DialogTemplateIn, EveryTemplate(), NameOfTemplateCase);

TEST_P(DialogTemplateIn, HasTheControlsThatTheCodeUses) {
    std::set<DWORD> ids;
    for (const ExpectedControl& wanted : expected()) {
        ids.insert(wanted.id);
        const TemplateItem* item = dialog.find(wanted.id);
        ASSERT_NE(nullptr, item) << wanted.id;
        EXPECT_EQ(wanted.kind, item->kind) << Describe(*item);
        EXPECT_EQ(wanted.present, item->style & wanted.present) << Describe(*item);
        EXPECT_EQ(0u, item->style & wanted.absent) << Describe(*item);
        if (item->kind == L"button") {
            EXPECT_EQ(wanted.present & BS_TYPEMASK, ButtonType(*item)) << Describe(*item);
        }
    }
    for (const TemplateItem& item : dialog.items) {
        EXPECT_TRUE(item.id == static_cast<DWORD>(-1) || ids.erase(item.id) == 1) << Describe(item);
    }
}

TEST_P(DialogTemplateIn, IsAModalDialogWithTheShellFont) {
    const DWORD wanted = DS_SHELLFONT | DS_MODALFRAME | DS_CENTER | WS_POPUP | WS_CAPTION | WS_SYSMENU;
    EXPECT_EQ(wanted, dialog.style & wanted);
    EXPECT_EQ(L"MS Shell Dlg", dialog.font);
    EXPECT_EQ(language() == kChinese ? 9 : 8, dialog.point_size);
    EXPECT_FALSE(dialog.caption.empty());
}

// Enter in a field would press it.
TEST_P(DialogTemplateIn, HasNoDefaultButton) {
    const auto is_default = [](const TemplateItem& item) { return ButtonType(item) == BS_DEFPUSHBUTTON; };
    EXPECT_EQ(0, std::count_if(dialog.items.begin(), dialog.items.end(), is_default));
}

TEST_P(DialogTemplateIn, GivesTheFirstFocusToTheTableOrTheRenderName) {
    const auto is_tab_stop = [](const TemplateItem& item) { return item.has(WS_TABSTOP); };
    const auto first = std::find_if(dialog.items.begin(), dialog.items.end(), is_tab_stop);
    ASSERT_NE(first, dialog.items.end());
    EXPECT_EQ(static_cast<DWORD>(is_main() ? IDC_MAIN_CAMERAS : IDC_EDIT_NAME), first->id);
}

TEST_P(DialogTemplateIn, HasTheSameShapeInBothLanguages) {
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

TEST_P(DialogTemplateIn, CreatesAllControls) {
    const LiveDialog live(name(), language());
    ASSERT_NE(nullptr, live.window());
    for (const ExpectedControl& control : expected()) {
        EXPECT_NE(nullptr, live.control(static_cast<int>(control.id))) << control.id;
    }
}

TEST(MainTemplateTest, ClosesTheRadioGroupAfterItsLastButton) {
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

TEST(MainTemplateTest, LinksToTheInstalledGuideInItsLanguage) {
    const std::pair<LANGID, const wchar_t*> links[] = {{kEnglish, L"<a href=\"Guide/en/index.html\">"},
                                                       {kChinese, L"<a href=\"Guide/zh/index.html\">"}};
    for (const auto& expected : links) {
        const DialogTemplate dialog = ReadDialogTemplate(IDD_MAIN, expected.first);
        const TemplateItem* link = dialog.find(IDC_MAIN_LINK);
        ASSERT_NE(nullptr, link);
        EXPECT_EQ(0u, link->text.find(expected.second)) << Describe(*link);
        EXPECT_FALSE(PlainText(link->text).empty());
    }
}

TEST(MainTemplateTest, AttachesEachUpDownToTheRightEndOfItsField) {
    const LiveDialog live(IDD_MAIN, kEnglish);
    ASSERT_NE(nullptr, live.window());
    const DialogTemplate dialog = ReadDialogTemplate(IDD_MAIN, kEnglish);
    for (const auto& pair : kSpinsAndBuddies) {
        const HWND spin = live.control(static_cast<int>(pair.first));
        const HWND field = live.control(static_cast<int>(pair.second));
        ASSERT_EQ(field, reinterpret_cast<HWND>(::SendMessageW(spin, UDM_GETBUDDY, 0, 0))) << pair.first;
        RECT place = {};
        ::GetWindowRect(spin, &place);
        ::MapWindowPoints(nullptr, live.window(), reinterpret_cast<POINT*>(&place), 2);
        const TemplateItem* item = dialog.find(pair.second);
        ASSERT_NE(nullptr, item) << pair.second;
        EXPECT_LE(place.right, live.to_pixels(item->right(), 0).cx + 1) << pair.first;
        EXPECT_GE(place.left, live.to_pixels(item->x + item->width / 2, 0).cx) << pair.first;
    }
}

TEST(MainTemplateTest, UpDownWritesOnlyTheSubdivisions) {
    const LiveDialog live(IDD_MAIN, kEnglish);
    ASSERT_NE(nullptr, live.window());
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
} // namespace support
