#include "common/text.h"
#include "dialog/sequences.h"
#include "tests/support/dialog_fixture.h"
#include "tests/support/patched_import.h"

namespace {

using namespace support;

using Lines = std::vector<std::string>;

class Fields : public DialogTest {
protected:
    HWND dialog = show(IDD_MAIN, InertDialogProc);
    HWND name = ::GetDlgItem(dialog, IDC_MAIN_SCENE_NAME);
    HWND warnings = ::GetDlgItem(dialog, IDC_MAIN_WARNINGS);

    LRESULT ask(int control, UINT message, WPARAM w_param = 0, LPARAM l_param = 0) const {
        return ::SendDlgItemMessageW(dialog, control, message, w_param, l_param);
    }

    std::wstring step(int id, const std::wstring& text, float delta, float minimum, float maximum) {
        type(dialog, id, text);
        ui.StepFloatField(dialog, id, delta, 0.1f, minimum, maximum);
        return field(dialog, id);
    }
    std::wstring step_gamma(const std::wstring& text, float delta) {
        return step(IDC_MAIN_GAMMA, text, delta, 0.1f, 5.0f);
    }
    std::wstring step_radius(const std::wstring& text, float delta) {
        return step(IDC_MAIN_AO_RADIUS, text, delta, 10.0f, 1000000000.0f);
    }

    std::wstring warning(int index) const {
        wchar_t text[2048] = {};
        ask(IDC_MAIN_WARNINGS, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
        return text;
    }

    LRESULT measured(const std::wstring& text) const {
        HDC context = ::GetDC(warnings);
        SIZE size = {};
        ::GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
        ::ReleaseDC(warnings, context);
        return size.cx;
    }
};

TEST_F(Fields, TheOutputControlsStartWithTheirRangesAndValues) {
    ui.InitOutputControls(dialog);
    int lowest = -1;
    int highest = -1;
    ask(IDC_MAIN_AO_RADIUS_SPIN, UDM_GETRANGE32, reinterpret_cast<WPARAM>(&lowest),
        reinterpret_cast<LPARAM>(&highest));
    EXPECT_EQ(lowest, 0);
    EXPECT_EQ(highest, 707072);
    EXPECT_EQ(field(dialog, IDC_MAIN_AO_RADIUS), L"1000.0");
    EXPECT_EQ(ask(IDC_MAIN_AO_SUBDIVS_SPIN, UDM_GETRANGE), MAKELONG(1000, 1));
    EXPECT_EQ(ask(IDC_MAIN_AO_SUBDIVS_SPIN, UDM_GETPOS32), 16);
    EXPECT_EQ(field(dialog, IDC_MAIN_AO_SUBDIVS), L"16");
    EXPECT_EQ(ask(IDC_MAIN_GAMMA_SPIN, UDM_GETRANGE), MAKELONG(5, 0));
}

TEST_F(Fields, GammaIsShownWithOneDecimal) {
    ui.ShowGamma(dialog, 2.2f);
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"2.2");
    ui.ShowGamma(dialog, 0.4545f);
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"0.5");
    ui.ShowGamma(dialog, 1.0f);
    EXPECT_EQ(field(dialog, IDC_MAIN_GAMMA), L"1.0");
}

TEST_F(Fields, SteppingTheGammaStaysBetweenItsLimits) {
    EXPECT_EQ(step_gamma(L"2.2", 1), L"2.3");
    EXPECT_EQ(step_gamma(L"2.2", -3), L"1.9");
    EXPECT_EQ(step_gamma(L"4.95", 1), L"5.0");
    EXPECT_EQ(step_gamma(L"5.0", 1), L"5.0");
    EXPECT_EQ(step_gamma(L"0.1", -1), L"0.1");
    EXPECT_EQ(step_gamma(L"99", -1), L"5.0");
    EXPECT_EQ(step_gamma(L"-99", 1), L"0.1");
}

TEST_F(Fields, SteppingATextThatIsNoNumberStartsFromZero) {
    EXPECT_EQ(step_radius(L"wide", 1), L"10.0");
    EXPECT_EQ(step_radius(L"", 1), L"10.0");
    EXPECT_EQ(step_gamma(L"", 3), L"0.3");
    EXPECT_EQ(step_radius(L"20 metres", 1), L"20.1");
}

TEST_F(Fields, EveryStepStartsFromTheShownText) {
    EXPECT_EQ(step_gamma(L"1.04", 1), L"1.1");
    EXPECT_EQ(step_gamma(field(dialog, IDC_MAIN_GAMMA), 1), L"1.2"); // not 1.24
    EXPECT_EQ(step_radius(L"999999999.95", 1), L"1000000000.0");
    EXPECT_EQ(step_radius(L"1000000000.0", -1), L"999999999.9");
}

TEST_F(Fields, ANumberIsReadFromTheBeginningOfTheText) {
    struct {
        const wchar_t* text;
        double value;
    } const cases[] = {{L"16.9", 16.9}, {L"-3.7", -3.7}, {L"  2.5x", 2.5}, {L"1e3", 1000.0},
                       {L"abc", 0.0},   {L"", 0.0},      {L"x1", 0.0},     {L",5", 0.0}};
    for (const auto& one : cases) {
        type(dialog, IDC_MAIN_AO_RADIUS, one.text);
        EXPECT_EQ(ui.ReadFloatField(dialog, IDC_MAIN_AO_RADIUS), one.value);
    }
}

TEST_F(Fields, ANumberIsReadFromAtMost259Characters) {
    type(dialog, IDC_MAIN_AO_RADIUS, L"1" + std::wstring(270, L'0'));
    EXPECT_EQ(ui.ReadFloatField(dialog, IDC_MAIN_AO_RADIUS), 1e258);
}

TEST_F(Fields, TheSceneNameIsShownWithoutItsLastFourCharacters) {
    struct {
        const char* name;
        const wchar_t* shown;
    } const cases[] = {{"scene_01.max", L"scene_01"},
                       {"a.max", L"a"},
                       {".max", L""},
                       {"shot.MAX", L"shot"},
                       {"abcdef", L"ab"},
                       {"shot.v2.max", L"shot.v2"},
                       {"\xE5\x9C\xBA\xE6\x99\xAF.max", L"\u573a\u666f"}};
    for (const auto& one : cases) {
        EXPECT_TRUE(ui.SetSceneName(name, one.name));
        EXPECT_EQ(field(dialog, IDC_MAIN_SCENE_NAME), one.shown);
        EXPECT_EQ(new_log_lines(), Lines({"[INFO] Set scene name successfully."}));
    }
}

TEST_F(Fields, ASceneNameOfLessThanFourCharactersIsShownWhole) {
    for (const char* short_name : {"a", "ab", "max"}) {
        EXPECT_TRUE(ui.SetSceneName(name, short_name));
        EXPECT_EQ(field(dialog, IDC_MAIN_SCENE_NAME), tarvo::Utf8ToWide(short_name));
    }
}

TEST_F(Fields, AnEmptySceneNameChangesNothing) {
    type(dialog, IDC_MAIN_SCENE_NAME, L"as it was");
    EXPECT_FALSE(ui.SetSceneName(name, ""));
    EXPECT_EQ(field(dialog, IDC_MAIN_SCENE_NAME), L"as it was");
    EXPECT_EQ(new_log_lines(), Lines({"[WARN] The scene name is empty!"}));
}

TEST_F(Fields, TheSceneNameIsReadWithTheExtension) {
    type(dialog, IDC_MAIN_SCENE_NAME, L"\u573a\u666f 1");
    EXPECT_EQ(ui.GetSceneName(name), "\xE5\x9C\xBA\xE6\x99\xAF 1.max");
    EXPECT_EQ(new_log_lines(),
              Lines({"[INFO] Get scene name text down, it is : \xE5\x9C\xBA\xE6\x99\xAF 1.max."}));
}

TEST_F(Fields, EmptySceneFieldGivesAnEmptyName) {
    type(dialog, IDC_MAIN_SCENE_NAME, L"");
    EXPECT_EQ(ui.GetSceneName(name), "");
    EXPECT_EQ(new_log_lines(), Lines({"[INFO] Get scene name text down, it is : ."}));
}

TEST_F(Fields, TheSceneNameIsReadUpTo259Characters) {
    type(dialog, IDC_MAIN_SCENE_NAME, std::wstring(400, L'n'));
    EXPECT_EQ(ui.GetSceneName(name), std::string(259, 'n') + ".max");
}

TEST_F(Fields, WarningsAreListedInTheirOrder) {
    EXPECT_TRUE(ui.ShowWarnings(warnings, {L"second", L"first", L"first"}));
    EXPECT_TRUE(ui.ShowWarnings(warnings, {L"zebra", L"apple"}));
    ASSERT_EQ(ask(IDC_MAIN_WARNINGS, LB_GETCOUNT), 2);
    EXPECT_EQ(warning(0), L"zebra");
    EXPECT_EQ(warning(1), L"apple");
    const char* line = "[INFO] Get warnning infomation of current scene successfully.";
    EXPECT_EQ(new_log_lines(), Lines({line, line}));
}

TEST_F(Fields, WithoutWarningsTheListIsEmptied) {
    ui.ShowWarnings(warnings, {L"old"});
    new_log_lines();
    EXPECT_FALSE(ui.ShowWarnings(warnings, {}));
    EXPECT_EQ(ask(IDC_MAIN_WARNINGS, LB_GETCOUNT), 0);
    EXPECT_EQ(new_log_lines(), Lines({"[INFO] There is no warnning in this scene."}));
}

TEST_F(Fields, NoticesThatCannotBeAddedAreLogged) {
    ui.ShowWarnings(::GetDlgItem(dialog, IDC_MAIN_GAMMA), {L"lost"});
    EXPECT_EQ(new_log_lines(), Lines({"[ERROR] The list of notices is not whole.",
                                      "[INFO] Get warnning infomation of current scene successfully."}));
}

TEST_F(Fields, MissingControlOrTextIsLogged) {
    constexpr int none = 4711;
    EXPECT_EQ(tarvo::DialogItem(dialog, none), nullptr);
    EXPECT_EQ(tarvo::Text(none), L"");
    const Lines lines = new_log_lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].find("[ERROR] The dialog has no control 4711, system error "), 0u) << lines[0];
    EXPECT_EQ(lines[1].find("[ERROR] A text could not be loaded: number 4711, system error "), 0u)
        << lines[1];
}

TEST_F(Fields, TheWidestWarningSetsTheHorizontalExtent) {
    const std::wstring widest(500, L'W');
    EXPECT_TRUE(ui.ShowWarnings(warnings, {L"short", widest, std::wstring(500, L'i'), L"last"}));
    EXPECT_GT(measured(widest), measured(std::wstring(500, L'i')));
    EXPECT_EQ(ask(IDC_MAIN_WARNINGS, LB_GETHORIZONTALEXTENT), measured(widest));
}

TEST_F(Fields, NarrowerWarningsDoNotShrinkTheHorizontalExtent) {
    const std::wstring wide(500, L'W');
    ui.ShowWarnings(warnings, {wide});
    ui.ShowWarnings(warnings, {L"short", L"shorter yet"});
    EXPECT_EQ(ask(IDC_MAIN_WARNINGS, LB_GETHORIZONTALEXTENT), measured(wide));
}

TEST_F(Fields, ALongNoticeCanBeScrolledSideways) {
    ui.ShowWarnings(warnings, {std::wstring(500, L'W')});
    int lowest = -1;
    int highest = -1;
    ASSERT_TRUE(::GetScrollRange(warnings, SB_HORZ, &lowest, &highest));
    EXPECT_GE(highest, measured(std::wstring(500, L'W')) - 1);
}

int g_contexts = 0;
int WINAPI count_release(HWND window, HDC context) {
    --g_contexts;
    const auto release = reinterpret_cast<decltype(&::ReleaseDC)>(
        ::GetProcAddress(::GetModuleHandleW(L"user32.dll"), "ReleaseDC"));
    return release(window, context);
}

HDC WINAPI count_context(HWND window) {
    ++g_contexts;
    const auto get =
        reinterpret_cast<decltype(&::GetDC)>(::GetProcAddress(::GetModuleHandleW(L"user32.dll"), "GetDC"));
    return get(window);
}

TEST_F(Fields, TheDeviceContextOfTheListIsReleased) {
    const PatchedImport get("user32.dll", "GetDC", reinterpret_cast<void*>(&count_context));
    const PatchedImport release("user32.dll", "ReleaseDC", reinterpret_cast<void*>(&count_release));
    ASSERT_TRUE(get.installed());
    ASSERT_TRUE(release.installed());
    g_contexts = 0;
    EXPECT_TRUE(ui.ShowWarnings(warnings, {L"one", L"two"}));
    EXPECT_EQ(g_contexts, 0);
}

} // namespace
