// What the three virus checks find, take away and leave in a scene: callbacks and globals.
#include "tests/scripts/virus_check_fixture.h"

namespace {

using maxscript::Text;
using support::Lines;
using support::utf8;
using support::VirusBench;

const char* const kNotSaved = "not saved: no copy of the scene's file as it is lies beside it. Save the "
                              "scene and submit it again: its file "
                              "still holds what was removed.";
const Text kLongHarmless = Text(4001, u'-') + u" rig";

// Callbacks and persistent globals of each family, and names that only look like them.
struct Family {
    const char* name;
    std::vector<Text> callbacks;
    std::vector<Text> globals; // in the order of the report
    std::vector<Text> look_alikes;
    std::vector<Text> to_look_at; // resemble the family, in the order of the report
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
     {u"ADSL_AScript", u"ADSL_BScript", u"ADSL_BSfull", u"ADSL_WriteAScript", u"ADSL_WriteBScript"},
     {u"ADSLX_Thing", u"myADSL_AScript", u"ADSL", u"CRP_AScript", u"AutodeskLicSerStuckAlpha"},
     {u"ADSL_Authorization", u"ADSL_shotList"}},
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
     {u"SomeAlphaTool", u"AutodeskLicSerStuck", u"runMain", u"CRP_AScript"},
     {u"ImageCleanAlpha", u"MyLicAlphaTool", u"myrunMainCleanBeta"}},
    {"Crp",
     events(u"ID_CRP_"),
     {u"CRP_AScript", u"CRP_BScript", u"CRP_WriteAScript"},
     {u"CRPX_Thing", u"myCRP_AScript", u"CRP", u"ADSL_AScript"},
     {u"CRP_Authorization", u"CRP_shotList", u"CRP_WriteBScript"}},
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
    lines.push_back(count + " found, " + count + " removed, 0 left");
    lines.push_back(kNotSaved);
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
    bench.run(u"global tarvoCleanedScene");
    const std::vector<Text> before = bench.own_globals();
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
    EXPECT_FALSE(bench.scene.save_required);
    EXPECT_EQ(bench.saved_scene(), "the scene as it was");
    EXPECT_EQ(bench.scene.callbacks.size(), 2U);
    EXPECT_TRUE(bench.is_persistent(u"MyTool_Settings"));
    EXPECT_EQ(bench.node_names(), std::vector<Text>({u"Point001"}));
    EXPECT_EQ(bench.own_globals(), before); // and nothing else of the script stays behind
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

// A guard is told of and counts for nothing; the others are for a person.
TEST_P(EachFamily, NamesWhatResemblesItAndLeavesIt) {
    VirusBench bench(GetParam().name);
    Lines expected;
    for (const Text& name : GetParam().to_look_at) {
        bench.add_global(name);
        expected.push_back("look at global " + utf8(name) +
                           " yourself: its name resembles the family, so it was left");
    }
    expected.push_back("nothing else found; " + std::to_string(expected.size()) + " to look at");
    EXPECT_EQ(bench.check(), expected);
    for (const Text& name : GetParam().to_look_at) {
        EXPECT_TRUE(bench.is_persistent(name)) << utf8(name);
    }
    EXPECT_FALSE(bench.scene.save_required);
}

TEST(VirusCheckGuards, AreLeftAndToldOf) {
    for (const char* const prefix : {"ADSL", "CRP"}) {
        VirusBench bench(std::string(prefix) == "CRP" ? "Crp" : "Adsl");
        const Text name = maxscript::text_from_utf8(prefix) + u"_Authorization";
        bench.run(u"global " + name + u" = true");
        EXPECT_EQ(bench.check(),
                  Lines({"left guard global " + utf8(name) + ": cleaners set it as a protection",
                         "nothing found"}));
        EXPECT_TRUE(bench.has_global(name));
    }
}

// A user sets the variable to an empty text, so that the virus treats the scene as infected.
TEST_P(EachFamily, LeavesAGlobalThatHoldsAnEmptyText) {
    VirusBench bench(GetParam().name);
    const Text name = GetParam().globals[0];
    maxscript_host::restore_persistent_global(bench.interpreter(), name, maxscript::Value::string(u""));
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
    EXPECT_TRUE(bench.is_persistent(name));
}

// Names are equal in any case, and a script that has been loaded leaves plain globals and functions.
TEST_P(EachFamily, FindsGlobalsInAnyCaseAndWithoutPersistence) {
    VirusBench bench(GetParam().name);
    Text lower = maxscript::folded(GetParam().globals[0]);
    bench.run(u"fn " + lower + u" = 1");
    const Lines lines = bench.check();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(maxscript::equal_folded(maxscript::text_from_utf8(lines[0]), u"removed global " + lower));
    EXPECT_EQ(lines[1], "1 found, 1 removed, 0 left");
    EXPECT_FALSE(bench.has_global(lower));
}

// The scene keeps the name even when it holds no value.
TEST_P(EachFamily, TakesPersistentNamesWithoutAValueAway) {
    VirusBench bench(GetParam().name);
    const Text name = GetParam().globals[0];
    maxscript_host::restore_persistent_global(bench.interpreter(), name, maxscript::Value());
    EXPECT_EQ(bench.check(),
              Lines({"removed global " + utf8(name), "1 found, 1 removed, 0 left", kNotSaved}));
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
    const std::string count = std::to_string(expected.size() - 2);
    const std::string fewer = std::to_string(expected.size() - 3);
    ASSERT_EQ(lines.size(), expected.size());
    EXPECT_EQ(lines[1].compare(0, 26 + id.size(), "could not remove callback " + utf8(id)), 0) << lines[1];
    EXPECT_NE(lines[1].find("Callback is in use: " + utf8(id)), std::string::npos) << lines[1];
    EXPECT_EQ(lines[lines.size() - 2], count + " found, " + fewer + " removed, 1 left");
    EXPECT_EQ(bench.callback_ids(), std::vector<Text>({id}));
}

TEST_P(EachFamily, ReportsAGlobalThatStaysAndGoesOn) {
    VirusBench bench(GetParam().name);
    infect(bench, GetParam());
    const Text name = GetParam().globals[0];
    bench.scene.stuck_globals.insert(maxscript::folded(name));
    const Lines lines = bench.check();
    Lines expected = removal_lines(GetParam());
    expected[GetParam().callbacks.size()] = "could not remove global " + utf8(name) + ": it is still there";
    const std::string count = std::to_string(expected.size() - 2);
    expected[expected.size() - 2] =
        count + " found, " + std::to_string(expected.size() - 3) + " removed, 1 left";
    EXPECT_EQ(lines, expected);
    EXPECT_TRUE(bench.is_persistent(name));
}

// What the file of the scene still holds is worth a word only when the scene no longer holds it.
TEST_P(EachFamily, SaysNothingOfSavingWhenAllStays) {
    VirusBench bench(GetParam().name);
    bench.add_callback(GetParam().callbacks[0]);
    bench.scene.callbacks[0].stuck = true;
    bench.add_global(GetParam().globals[0]);
    bench.scene.stuck_globals.insert(maxscript::folded(GetParam().globals[0]));
    EXPECT_EQ(bench.check().back(), "2 found, 0 removed, 2 left");
    EXPECT_FALSE(bench.scene.save_required);
    bench.add_callback(GetParam().callbacks[1]);
    EXPECT_EQ(bench.check().back(), kNotSaved);
}

// No document says that a listing shows ids.
TEST_P(EachFamily, TellsOfCallbacksInAHostWhoseListingShowsNoIds) {
    VirusBench bench(GetParam().name);
    bench.scene.lists_ids = false;
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
    bench.add_callback(u"MyTool");
    infect(bench, GetParam());
    EXPECT_EQ(bench.check(), removal_lines(GetParam()));
    EXPECT_EQ(bench.callback_ids(), std::vector<Text>({u"MyTool"}));
}

// The listing of an id without callbacks may be a line that names the id.
TEST_P(EachFamily, TakesALineAboutNoCallbacksForNone) {
    VirusBench bench(GetParam().name);
    bench.scene.tells_of_no_callbacks = true;
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
    bench.add_callback(u"MyTool");
    infect(bench, GetParam());
    EXPECT_EQ(bench.check(), removal_lines(GetParam()));
    EXPECT_EQ(bench.callback_ids(), std::vector<Text>({u"MyTool"}));
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
