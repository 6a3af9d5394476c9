#include "tests/support/dialog_metrics.h"

#include "resources/resource_ids.h"
#include "tests/support/module_resources.h"
#include "tests/support/template_fixture.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace support {
namespace {

// Other fonts than the measured one are wider; texts have to leave this much room.
constexpr double kSlack = 1.15;
// Around everything in the dialog, and inside a group box, in dialog units.
constexpr int kMargin = 7;
// A drop-down list's height in the template counts its list.
constexpr int kComboHeight = 13;

// The table's columns in pixels, at every screen scale.
const std::pair<unsigned, int> kColumns[] = {
    {IDS_COLUMN_CAMERA, 200},      {IDS_COLUMN_WIDTH, 70},     {IDS_COLUMN_HEIGHT, 70},
    {IDS_COLUMN_START_FRAME, 60},  {IDS_COLUMN_SPHERICAL, 60}, {IDS_COLUMN_FORMAT, 60},
    {IDS_COLUMN_RENDER_NAME, 200},
};

bool IsGroupBox(const TemplateItem& item) {
    return ButtonType(item) == BS_GROUPBOX;
}

bool IsStatic(const TemplateItem& item) {
    return item.kind == L"static";
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
    return item.kind == L"edit" || item.kind == L"custedit" || item.kind == L"combobox" ||
           item.kind == L"listbox" || item.kind == L"syslistview32";
}

bool IsPlaced(const TemplateItem& item) {
    return item.has(WS_VISIBLE) && !IsSpin(item);
}

int BottomOf(const TemplateItem& item) {
    return item.kind == L"combobox" ? item.y + kComboHeight : item.bottom();
}

bool Overlap(const TemplateItem& a, const TemplateItem& b) {
    return a.x < b.right() && b.x < a.right() && a.y < BottomOf(b) && b.y < BottomOf(a);
}

bool LiesWithin(const TemplateItem& item, const TemplateItem& box) {
    return item.x >= box.x + kMargin && item.right() <= box.right() - kMargin && item.y > box.y &&
           BottomOf(item) <= box.bottom() - kMargin + 1;
}

// In reading order: below, or to the right.
bool ReadsBefore(const TemplateItem& a, const TemplateItem& b) {
    return b.y >= BottomOf(a) || b.x >= a.right();
}

std::vector<TemplateItem> Select(const DialogTemplate& dialog, bool (*wanted)(const TemplateItem&)) {
    std::vector<TemplateItem> result;
    std::copy_if(dialog.items.begin(), dialog.items.end(), std::back_inserter(result), wanted);
    return result;
}

// The index of the group box that the item lies in; the number of boxes when no box contains it.
std::size_t GroupOf(const TemplateItem& item, const std::vector<TemplateItem>& boxes) {
    const auto holds = [&item](const TemplateItem& box) { return LiesWithin(item, box); };
    return static_cast<std::size_t>(std::find_if(boxes.begin(), boxes.end(), holds) - boxes.begin());
}

class DialogLayoutIn : public TemplateTest {};

INSTANTIATE_TEST_SUITE_P(Templates, DialogLayoutIn, EveryTemplate(), NameOfTemplateCase);

TEST_P(DialogLayoutIn, GivesEachAccessKeyOnce) {
    std::map<wchar_t, std::string> owners;
    for (const TemplateItem& item : dialog.items) {
        const wchar_t key = AccessKey(item.text);
        if (key != 0) {
            EXPECT_TRUE(owners.emplace(key, Describe(item)).second)
                << static_cast<char>(key) << ": " << Describe(item) << " and " << owners[key];
        }
    }
}

// Close has Esc; the link control supports no access keys.
TEST_P(DialogLayoutIn, GivesEveryButtonAndFieldAnAccessKey) {
    const TemplateItem* previous = nullptr;
    for (const TemplateItem& item : dialog.items) {
        if ((IsPushButton(item) || IsTicked(item)) && item.has(WS_VISIBLE) && item.id != IDCANCEL) {
            EXPECT_NE(0, AccessKey(item.text)) << Describe(item);
        }
        if (IsField(item)) {
            const bool labelled = previous != nullptr && (IsStatic(*previous) || IsGroupBox(*previous));
            EXPECT_TRUE(labelled && AccessKey(previous->text) != 0) << Describe(item);
        }
        previous = &item;
    }
}

TEST_P(DialogLayoutIn, KeepsAMarginAroundEverything) {
    for (const TemplateItem& item : Select(dialog, &IsPlaced)) {
        EXPECT_GE(item.x, kMargin) << Describe(item);
        EXPECT_GE(item.y, kMargin) << Describe(item);
        EXPECT_LE(item.right(), dialog.width - kMargin) << Describe(item);
        EXPECT_LE(BottomOf(item), dialog.height - kMargin) << Describe(item);
    }
}

// Group boxes keep apart from each other, and everything else is wholly inside one or wholly outside.
TEST_P(DialogLayoutIn, HasNoOverlappingControls) {
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

// The tab order is a ring. It is read from the topmost group on, wherever the first focus is.
std::vector<TemplateItem> RingFromTheTop(const DialogTemplate& dialog) {
    std::vector<TemplateItem> items = Select(dialog, &IsPlaced);
    const auto higher = [](const TemplateItem& a, const TemplateItem& b) { return a.y < b.y; };
    std::rotate(items.begin(), std::min_element(items.begin(), items.end(), higher), items.end());
    return items;
}

TEST_P(DialogLayoutIn, TabsInReadingOrder) {
    const std::vector<TemplateItem> items = RingFromTheTop(dialog);
    std::vector<TemplateItem> boxes;
    std::copy_if(items.begin(), items.end(), std::back_inserter(boxes), &IsGroupBox);
    for (std::size_t i = 1; i < boxes.size(); ++i) {
        EXPECT_TRUE(ReadsBefore(boxes[i - 1], boxes[i])) << Describe(boxes[i]);
    }
    std::vector<std::size_t> groups; // in the order in which they are entered
    const TemplateItem* previous = nullptr;
    for (const TemplateItem& item : items) {
        if (IsGroupBox(item)) {
            continue;
        }
        const std::size_t own = GroupOf(item, boxes);
        const bool same = !groups.empty() && groups.back() == own;
        if (!same && own < boxes.size()) {
            EXPECT_EQ(0, std::count(groups.begin(), groups.end(), own))
                << Describe(item) << " is left behind";
        }
        if (same && previous != nullptr) {
            EXPECT_TRUE(ReadsBefore(*previous, item)) << Describe(item);
        }
        groups.push_back(own);
        previous = &item;
    }
    const auto end = std::remove(groups.begin(), groups.end(), boxes.size());
    EXPECT_TRUE(std::is_sorted(groups.begin(), end)) << "groups are not entered in their order";
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

TEST_P(DialogLayoutIn, HasRoomForItsTexts) {
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

// SimSun, the dialog font of Chinese Windows, has cells of 6 x 12 pixels with Chinese characters two cells
// wide, so the room is known without it: a cell is four dialog units, a line eight.
TEST(ChineseLayoutTest, TextsFitInSimSun) {
    for (const unsigned name : {IDD_MAIN, IDD_CAMERA_EDIT}) {
        for (const TemplateItem& item : ReadDialogTemplate(name, kChinese).items) {
            int cells = 0;
            for (const wchar_t unit : PlainText(item.text)) {
                cells += unit < 0x80 ? 1 : 2;
            }
            const int lines = IsStatic(item) ? item.height / 8 : 1;
            const double needed = cells * 4 * (lines > 1 ? kSlack : 1.0) + FrameWidth(item) * 4 / 6;
            EXPECT_TRUE(cells == 0 || item.width * lines >= needed) << Describe(item);
        }
    }
}

TEST(MainLayoutTest, ShowsTheWholeCameraTableAtTheUsualScale) {
    constexpr int kColumnsScrollBarAndEdges = 720 + 17 + 4;
    constexpr int kCellWidth = 6; // of the usual 8-point dialog font; four dialog units
    const DialogTemplate dialog = ReadDialogTemplate(IDD_MAIN, kEnglish);
    const TemplateItem* list = dialog.find(IDC_MAIN_CAMERAS);
    ASSERT_NE(nullptr, list);
    EXPECT_GE(list->width * kCellWidth / 4, kColumnsScrollBarAndEdges);
}

// A run at another scale sets TARVO_EXPECTED_SCALE; the measurements must use that scale.
TEST(MainLayoutTest, IsMeasuredAtTheExpectedScale) {
    constexpr int kUsualDotsPerInch = 96;
    const char* wanted = std::getenv("TARVO_EXPECTED_SCALE");
    const int percent = wanted == nullptr ? 100 : std::atoi(wanted);
    const LiveDialog live(IDD_MAIN, kEnglish);
    ASSERT_NE(nullptr, live.window());
    EXPECT_EQ(kUsualDotsPerInch * percent / 100, live.dots_per_inch());
}

// The widths are pixels at every scale: at larger ones a heading is cut until its column is dragged wider.
TEST(MainLayoutTest, HasRoomForTheColumnHeadingsAtTheUsualScale) {
    constexpr int kHeadingEdges = 12;
    constexpr int kUsualDotsPerInch = 96;
    for (const LANGID language : {kEnglish, kChinese}) {
        const LiveDialog live(IDD_MAIN, language);
        ASSERT_NE(nullptr, live.window());
        if (live.dots_per_inch() != kUsualDotsPerInch) {
            GTEST_SKIP() << "measured at " << live.dots_per_inch() << " dots per inch";
        }
        const std::map<unsigned, std::wstring> texts = StringTable(language);
        for (const auto& column : kColumns) {
            EXPECT_LE(live.text_width(texts.at(column.first)) + kHeadingEdges, column.second)
                << "text " << column.first << " in language " << language;
        }
    }
}

} // namespace
} // namespace support
