// What the three virus checks find, take away and leave in a scene: callbacks, globals and helper nodes.
#include "tests/unit_portable/virus_check_bench.h"

namespace {

using maxscript::Text;
using maxscript_host::SceneNode;
using tarvo_test::Lines;
using tarvo_test::utf8;
using tarvo_test::VirusBench;

const char* const kSave = ". Save the scene now: its file still holds what was removed.";
const Text kLongHarmless = Text(4001, u'-') + u" rig";
const Text kLongOfFamily = Text(4001, u'-') + u" autodeskLICserStuckCleanBeta()";

// Callbacks and persistent globals of each family, and names that only look like them.
struct Family {
    const char* name;
    std::vector<Text> callbacks;
    std::vector<Text> globals; // in the order of the report
    std::vector<Text> look_alikes;
};

void PrintTo(const Family& family, std::ostream* stream) {
    *stream << family.name;
}

std::vector<Text> events(const Text& prefix) {
    std::vector<Text> ids;
    for (const char16_t* event : {u"filePostOpen", u"filePostMerge", u"postImport", u"preRenderP",
                                  u"filePostOpenP", u"viewportChangeP"}) {
        ids.push_back(prefix + event);
    }
    return ids;
}

const Family kFamilies[] = {
    {"Adsl",
     events(u"ID_ADSL_"),
     {u"ADSL_AScript", u"ADSL_Authorization", u"ADSL_BScript", u"ADSL_BSfull", u"ADSL_WriteAScript",
      u"ADSL_WriteBScript"},
     {u"ADSLX_Thing", u"myADSL_AScript", u"ADSL", u"CRP_AScript", u"AutodeskLicSerStuckAlpha"}},
    {"Alc",
     {u"AutodeskLicCleanBeta", u"PhysXCleanBetaRBKSysInfo", u"RenderLicCleanBeta", u"AutodeskLicences",
      u"PhysXCreateRBKSysInfo", u"RenderLicences", u"AutodeskLicCleanAlpha", u"PhysXCleanAlphaRBKSysInfo",
      u"RenderLicCleanAlpha", u"AutodeskLicAlpha", u"PhysXAlphaRBKSysInfo", u"RenderLicAlpha"},
     {u"CleanBetabaseCC64enc",
      u"CleanBetabaseCC64dec",
      u"CleanAlphabaseCC64enc",
      u"CleanAlphabaseCC64dec",
      u"AutodeskLicSerStuckAlpha",
      u"SaveLicAlpha",
      u"CalcLicDataAlpha",
      u"FindVRMtlAlpha",
      u"CalcRenderAlpha",
      u"AutodeskLicAlphaStartr",
      u"AutodeskLicAlphaKiller",
      u"AutodeskLicImageAlpha",
      u"InitiLicSetAlpha",
      u"px_SimulatorSaveAlpha",
      u"getNetUpdateAlpha",
      u"px_HiddenNodeAlpha",
      u"px_SimulatorForModifyAlpha",
      u"px_SimulatorForStateAlpha",
      u"cleanOnStartAlpha",
      u"SendSysMailMainAlpha",
      u"Alphabase64enc",
      u"getTimesChkAlpha",
      u"LicDeSenaryAlpha",
      u"DecBinAlpha",
      u"BinDecAlpha",
      u"SenaryAlpha",
      u"CheckSizeAlpha",
      u"getSerSysRemAlpha",
      u"AutodeskLicSerStuckCleanBeta",
      u"AutodeskLicSerStuckCleanAlpha",
      u"checkLicSerSubCleanBeta",
      u"checkLicSerSubCleanAlpha",
      u"checkLicSerMainCleanBeta",
      u"checkLicSerMainCleanAlpha",
      u"physXCrtRbkInfoCleanBeta",
      u"physXCrtRbkInfoCleanAlpha",
      u"runMainCleanBeta",
      u"runMainCleanAlpha",
      u"PointNodeCleanBeta",
      u"PointNodeCleanAlpha",
      u"px_HiddenNodeCleanBeta",
      u"px_HiddenNodeCleanAlpha",
      u"getNetUpdateCleanBeta",
      u"getNetUpdateCleanAlpha",
      u"px_SimulatorForModifyCleanBeta",
      u"px_SimulatorForModifyCleanAlpha",
      u"px_SimulatorForStateCleanBeta",
      u"px_SimulatorForStateCleanAlpha",
      u"px_SimulatorSaveCleanBeta",
      u"px_SimulatorSaveCleanAlpha",
      u"px_SimulatorCbaCleanBeta",
      u"px_SimulatorCbaCleanAlpha"},
     {u"SomeAlphaTool", u"ImageCleanAlpha", u"AutodeskLicSerStuck", u"runMain", u"myrunMainCleanBeta",
      u"CRP_AScript"}},
    {"Crp",
     events(u"ID_CRP_"),
     {u"CRP_AScript", u"CRP_Authorization", u"CRP_BScript", u"CRP_WriteAScript"},
     {u"CRPX_Thing", u"myCRP_AScript", u"CRP", u"ADSL_AScript"}},
};

class EachFamily : public testing::TestWithParam<Family> {};

INSTANTIATE_TEST_SUITE_P(VirusCheck, EachFamily, testing::ValuesIn(kFamilies),
                         [](const testing::TestParamInfo<Family>& one) {
                             return std::string(one.param.name);
                         });

void infect(VirusBench& bench, const Family& family) {
    for (const Text& id : family.callbacks) {
        bench.add_callback(id);
    }
    for (const Text& name : family.globals) {
        bench.add_global(name);
    }
}

Lines removal_lines(const Family& family) {
    Lines lines;
    for (const Text& id : family.callbacks) {
        lines.push_back("removed callback " + utf8(id));
    }
    for (const Text& name : family.globals) {
        lines.push_back("removed global " + utf8(name));
    }
    const std::string count = std::to_string(lines.size());
    lines.push_back(count + " found, " + count + " removed, 0 left" + kSave);
    return lines;
}

TEST_P(EachFamily, TakesItsCallbacksAndGlobalsAway) {
    VirusBench bench(GetParam().name);
    infect(bench, GetParam());
    EXPECT_EQ(bench.check(), removal_lines(GetParam()));
    EXPECT_TRUE(bench.scene.callbacks.empty());
    for (const Text& name : GetParam().globals) {
        EXPECT_FALSE(bench.has_global(name)) << utf8(name);
    }
}

TEST_P(EachFamily, FindsNothingTheSecondTime) {
    VirusBench bench(GetParam().name);
    infect(bench, GetParam());
    bench.check();
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
}

TEST_P(EachFamily, LeavesACleanSceneAsItIs) {
    VirusBench bench(GetParam().name);
    bench.add_callback(u"MyTool");
    bench.add_callback(Text());
    bench.add_global(u"MyTool_Settings");
    bench.add_node(u"Point001", u"Point", kLongHarmless);
    const std::vector<Text> before = bench.own_globals();
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
    EXPECT_EQ(bench.scene.callbacks.size(), 2U);
    EXPECT_TRUE(bench.is_persistent(u"MyTool_Settings"));
    EXPECT_EQ(bench.scene.node_names(), std::vector<Text>({u"Point001"}));
    EXPECT_EQ(bench.own_globals(), before); // and nothing of the script stays behind
}

TEST_P(EachFamily, LeavesWhatOnlyLooksLikeIt) {
    VirusBench bench(GetParam().name);
    for (const Text& name : GetParam().look_alikes) {
        bench.add_global(name);
    }
    for (const Text& id : GetParam().callbacks) {
        bench.add_callback(u"My" + id);
        bench.add_callback(id + u"2");
    }
    // Its script names an id of the virus, as a guard of the user's does.
    bench.scene.callbacks.push_back(
        {u"filePostOpen", u"Guard", u"callbacks.removeScripts id:#" + GetParam().callbacks[0], true, false});
    const std::size_t callback_count = bench.scene.callbacks.size();
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
    EXPECT_EQ(bench.scene.callbacks.size(), callback_count);
    for (const Text& name : GetParam().look_alikes) {
        EXPECT_TRUE(bench.is_persistent(name)) << utf8(name);
    }
}

// Names are equal in any case, and a script that has been loaded leaves plain globals and functions.
TEST_P(EachFamily, FindsGlobalsInAnyCaseAndWithoutPersistence) {
    VirusBench bench(GetParam().name);
    Text lower = maxscript::folded(GetParam().globals[0]);
    bench.run(u"fn " + lower + u" = 1");
    const Lines lines = bench.check();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(maxscript::equal_folded(maxscript::text_from_utf8(lines[0]), u"removed global " + lower));
    EXPECT_EQ(lines[1], "1 found, 1 removed, 0 left.");
    EXPECT_FALSE(bench.has_global(lower));
}

// The scene keeps the name even when it holds no value.
TEST_P(EachFamily, TakesPersistentNamesWithoutAValueAway) {
    VirusBench bench(GetParam().name);
    const Text name = GetParam().globals[0];
    bench.run(u"persistent global " + name);
    EXPECT_EQ(bench.check(),
              Lines({"removed global " + utf8(name), std::string("1 found, 1 removed, 0 left") + kSave}));
    EXPECT_FALSE(bench.has_global(name));
}

// A function that still runs could put back what is taken away; so callbacks go first, then all values, and
// only then the variables.
TEST_P(EachFamily, TakesAwayInTheOrderThatStopsReinfection) {
    VirusBench bench(GetParam().name);
    infect(bench, GetParam());
    bench.check();
    const auto rank = [](const Text& entry) {
        return entry.compare(0, 9, u"callbacks") == 0         ? 0
               : entry.compare(0, 14, u"globalVars.set") == 0 ? 1
               : entry.compare(0, 6, u"delete") == 0          ? 3
                                                              : 2;
    };
    const std::vector<Text>& journal = bench.scene.journal;
    EXPECT_TRUE(std::is_sorted(journal.begin(), journal.end(),
                               [&](const Text& one, const Text& other) { return rank(one) < rank(other); }));
    EXPECT_EQ(std::count_if(journal.begin(), journal.end(), [&](const Text& one) { return rank(one) == 1; }),
              static_cast<std::ptrdiff_t>(GetParam().globals.size()));
}

TEST_P(EachFamily, ReportsACallbackThatStaysAndGoesOn) {
    VirusBench bench(GetParam().name);
    infect(bench, GetParam());
    bench.scene.callbacks[1].stuck = true;
    const Text id = GetParam().callbacks[1];
    const Lines lines = bench.check();
    Lines expected = removal_lines(GetParam());
    const std::string count = std::to_string(expected.size() - 1);
    const std::string fewer = std::to_string(expected.size() - 2);
    ASSERT_EQ(lines.size(), expected.size());
    EXPECT_EQ(lines[1].compare(0, 26 + id.size(), "could not remove callback " + utf8(id)), 0) << lines[1];
    EXPECT_NE(lines[1].find("Callback is in use: " + utf8(id)), std::string::npos) << lines[1];
    EXPECT_EQ(lines.back(), count + " found, " + fewer + " removed, 1 left" + kSave);
    EXPECT_EQ(bench.scene.callback_ids(), std::vector<Text>({id}));
}

TEST_P(EachFamily, ReportsAGlobalThatStaysAndGoesOn) {
    VirusBench bench(GetParam().name);
    infect(bench, GetParam());
    const Text name = GetParam().globals[0];
    bench.scene.stuck_globals.insert(maxscript::folded(name));
    const Lines lines = bench.check();
    Lines expected = removal_lines(GetParam());
    expected[GetParam().callbacks.size()] = "could not remove global " + utf8(name) + ": it is still there";
    const std::string count = std::to_string(expected.size() - 1);
    expected.back() = count + " found, " + std::to_string(expected.size() - 2) + " removed, 1 left" + kSave;
    EXPECT_EQ(lines, expected);
    EXPECT_TRUE(bench.is_persistent(name));
}

struct NodeCase {
    const char* what;
    Text name;
    Text type;
    Text script;
    bool found;
    bool removed;
};

const NodeCase kNodeCases[] = {
    {"ideographic blank", u"\u3000\uE813\uE811", u"Point", u"", true, true},
    {"private use", u"\uE814\uE812", u"Point", u"", true, true},
    {"misread 1", u"\u00D7\u00FE\u00D7\u00FC", u"Point", u"", true, true},
    {"misread 2", u"\u00A1\u00A1\u00D7\u00FD\u00D7\u00FB", u"Point", u"", true, true},
    {"misread 3", u"\u00D7\u00FA\u00D7\u00FA", u"Point", u"", true, true},
    {"misread 4", u"\u00D7\u00FE\u00D7\u00FA", u"Point", u"", true, true},
    {"plain name", u"Rectangles135", u"Point", u"", true, true},
    {"other plain name", u"RenderDialogSign", u"Point", u"", true, true},
    {"family in a long script", u"Point001", u"Point", kLongOfFamily, true, true},
    {"family in a long script of a dummy", u"Dummy001", u"Dummy", kLongOfFamily, true, true},
    {"the name, but no point", u"Rectangles135", u"Dummy", u"", false, false},
    {"the name, but a box", u"Rectangles135", u"Box", u"", false, false},
    {"longer name", u"Rectangles1350", u"Point", u"", false, false},
    {"other case", u"rectangles135", u"Point", u"", false, false},
    {"one letter of a name", u"\uE814", u"Point", u"", false, false},
    {"long script without the family", u"Rig", u"Point", kLongHarmless, false, false},
    {"short script with the family", u"Rig", u"Point", u"AutodeskLicSerStuckCleanBeta()", false, false},
    {"family in a long script of a box", u"Box001", u"Box", kLongOfFamily, true, false},
};

TEST(VirusCheckAlc, FindsCarriersByNameAndClassOrByTheirScript) {
    for (const NodeCase& one : kNodeCases) {
        SCOPED_TRACE(one.what);
        VirusBench bench("Alc");
        bench.add_node(one.name, one.type, one.script);
        bench.add_node(u"Legit", u"Point");
        const Lines lines = bench.check();
        EXPECT_EQ(lines.size(), one.found ? 2U : 1U);
        EXPECT_EQ(lines[0] == "removed helper " + utf8(one.name), one.removed);
        EXPECT_EQ(lines[0] == "nothing found", !one.found);
        EXPECT_EQ(bench.scene.nodes.size(), one.removed ? 1U : 2U);
        EXPECT_EQ(utf8(bench.scene.nodes.back()->name), "Legit");
    }
}

TEST(VirusCheckAlc, TellsOfANodeThatIsNoHelperAndLeavesIt) {
    VirusBench bench("Alc");
    bench.add_node(u"Box001", u"Box", kLongOfFamily);
    EXPECT_EQ(
        bench.check(),
        Lines({"could not remove helper Box001: it is no helper; take the script off its scale yourself",
               "1 found, 0 removed, 1 left."}));
}

// What the file of the scene still holds is worth a word only when the scene no longer holds it.
TEST_P(EachFamily, SaysNothingOfSavingWhenAllStays) {
    VirusBench bench(GetParam().name);
    bench.add_callback(GetParam().callbacks[0]);
    bench.scene.callbacks[0].stuck = true;
    bench.add_global(GetParam().globals[0]);
    bench.scene.stuck_globals.insert(maxscript::folded(GetParam().globals[0]));
    EXPECT_EQ(bench.check().back(), "2 found, 0 removed, 2 left.");
    bench.add_callback(GetParam().callbacks[1]);
    EXPECT_EQ(bench.check().back(), std::string("3 found, 1 removed, 2 left") + kSave);
}

// Nobody promises the form of the listing: a line that names the id may be no callback.
TEST_P(EachFamily, TakesALineAboutNoCallbacksForNone) {
    VirusBench bench(GetParam().name);
    bench.scene.tells_of_no_callbacks = true;
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
    bench.add_callback(u"MyTool");
    infect(bench, GetParam());
    EXPECT_EQ(bench.check(), removal_lines(GetParam()));
    EXPECT_EQ(bench.scene.callback_ids(), std::vector<Text>({u"MyTool"}));
}

TEST(VirusCheckAlc, ShowsAndThawsACarrierBeforeItDeletesIt) {
    VirusBench bench("Alc");
    SceneNode& node = bench.add_node(u"RenderDialogSign", u"Point");
    node.hidden = true;
    node.frozen = true;
    EXPECT_EQ(bench.check(),
              Lines({"removed helper RenderDialogSign", std::string("1 found, 1 removed, 0 left") + kSave}));
    EXPECT_TRUE(bench.scene.nodes.empty());
}

// With its name changed for good, the next check would no longer know it.
TEST(VirusCheckAlc, ReportsACarrierThatStaysAndGivesItsNameBack) {
    VirusBench bench("Alc");
    bench.add_node(u"Rectangles135", u"Point").stuck = true;
    bench.add_node(u"RenderDialogSign", u"Point");
    const Lines expected = {"could not remove helper Rectangles135: it is still there",
                            "removed helper RenderDialogSign",
                            std::string("2 found, 1 removed, 1 left") + kSave};
    EXPECT_EQ(bench.check(), expected);
    EXPECT_EQ(bench.scene.node_names(), std::vector<Text>({u"Rectangles135"}));
    EXPECT_EQ(bench.check().front(), expected.front());
}

TEST(VirusCheckAlc, DeletesHelpersAfterTheGlobals) {
    VirusBench bench("Alc");
    infect(bench, kFamilies[1]);
    bench.add_node(u"Rectangles135", u"Point");
    bench.check();
    ASSERT_FALSE(bench.scene.journal.empty());
    EXPECT_EQ(utf8(bench.scene.journal.back()), "delete Tarvo_removed");
}

} // namespace
