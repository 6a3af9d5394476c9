// What becomes of the scene's file after a virus check: it is what is sent.
#include "tests/scripts/virus_check_fixture.h"

namespace {

using maxscript::Text;
using support::Lines;
using support::utf8;
using support::VirusBench;

const char* const kSaved =
    "saved the scene without what was removed; the file as it was is D:\\jobs\\Lobby_004711.max";
const char* const kAdvice = ". Save the scene and submit it again: its file still holds what was removed.";
const char* const kNoCopy = "no copy of the scene's file as it is lies beside it";

std::string not_saved(const std::string& reason) {
    return "not saved: " + reason + kAdvice;
}

// One thing of each family that only the scene's file keeps.
struct Infection {
    const char* family;
    const char16_t* global;
};

class VirusCheckSaving : public testing::TestWithParam<Infection> {
protected:
    VirusCheckSaving() : bench_(GetParam().family) { infect(); }
    void infect() { bench_.add_global(GetParam().global); }

    VirusBench bench_;
};

void PrintTo(const Infection& one, std::ostream* stream) {
    *stream << one.family;
}

INSTANTIATE_TEST_SUITE_P(VirusCheck, VirusCheckSaving,
                         testing::Values(Infection{"Adsl", u"ADSL_AScript"},
                                         Infection{"Alc", u"AutodeskLicSerStuckAlpha"},
                                         Infection{"Crp", u"CRP_BScript"}),
                         [](const testing::TestParamInfo<Infection>& one) {
                             return std::string(one.param.family);
                         });

TEST_P(VirusCheckSaving, SavedInItsPlaceWhenACopyLiesBesideIt) {
    bench_.add_global(u"RigTool_Settings");
    bench_.back_up();
    EXPECT_EQ(bench_.check(),
              Lines({"removed global " + utf8(GetParam().global), "1 found, 1 removed, 0 left", kSaved}));
    EXPECT_EQ(bench_.saved_scene(), "saved\nglobal RigTool_Settings\n");
    EXPECT_EQ(bench_.content(VirusBench::kCopy), "the scene as it was");
    EXPECT_FALSE(bench_.scene.save_required);
    EXPECT_EQ(utf8(bench_.scene.journal.back()), "saveMaxFile D:\\jobs\\Lobby.max");
}

TEST_P(VirusCheckSaving, LeftAndMarkedAsChangedWithoutACopy) {
    EXPECT_EQ(bench_.check().back(), not_saved(kNoCopy));
    EXPECT_EQ(bench_.saved_scene(), "the scene as it was");
    EXPECT_TRUE(bench_.scene.save_required);
}

TEST_P(VirusCheckSaving, NotSavedWhenOnlyOtherFilesLieBesideIt) {
    const Text folder = u"D:\\jobs\\";
    const std::string same = "the scene as it was";
    bench_.files.put(folder + u"Lobby_004711.max", "an older scene, of another size");
    for (const char16_t* const name :
         {u"Lobby_04711.max", u"Lobby_0047112.max", u"Lobby_00471a.max", u"Lobby-004711.max",
          u"MyLobby_004711.max", u"Lobby_v2_004711.max", u"Lobby_004711.max.bak", u"Lobby_004711.mat"}) {
        bench_.files.put(folder + name, same);
    }
    EXPECT_EQ(bench_.check().back(), not_saved(kNoCopy));
    EXPECT_EQ(bench_.saved_scene(), same);
}

TEST_P(VirusCheckSaving, NotSavedWhenNothingOfTheSceneWasRemoved) {
    VirusBench bench(GetParam().family);
    bench.back_up();
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
    bench.run(u"global " + Text(GetParam().global) + u" = 1"); // of the session, not of the scene
    EXPECT_EQ(bench.check().back(), "1 found, 1 removed, 0 left");
    EXPECT_EQ(bench.saved_scene(), "the scene as it was");
    EXPECT_FALSE(bench.scene.save_required);
}

TEST_P(VirusCheckSaving, MarkedAsChangedWhenItCannotBeWritten) {
    bench_.back_up();
    bench_.files.find(VirusBench::kScene)->read_only = true;
    EXPECT_EQ(bench_.check().back(), not_saved("the scene's file cannot be written"));
    EXPECT_EQ(bench_.saved_scene(), "the scene as it was");
    EXPECT_TRUE(bench_.scene.save_required);
}

TEST_P(VirusCheckSaving, MarkedAsChangedWhenTheSceneHasNone) {
    bench_.host.model.path.clear();
    EXPECT_EQ(bench_.check().back(), not_saved("the scene has no file yet"));
    EXPECT_TRUE(bench_.scene.save_required);
}

TEST_P(VirusCheckSaving, ACopyWithAnotherSizeStopsBeingOneAfterASavingByTheUser) {
    bench_.back_up();
    EXPECT_EQ(bench_.check().back(), kSaved);
    bench_.files.put(VirusBench::kScene, "the scene with more of the user's work in it");
    infect();
    EXPECT_EQ(bench_.check().back(), not_saved(kNoCopy));
}

// The first check changes the size of the file, and the copy is still that of the file as it was.
TEST(VirusChecks, AllSaveWithOneCopy) {
    VirusBench bench("Adsl");
    for (const char16_t* const name : {u"ADSL_AScript", u"AutodeskLicSerStuckAlpha", u"CRP_AScript"}) {
        bench.add_global(name);
    }
    bench.back_up();
    for (const char* const family : {"Adsl", "Alc", "Crp"}) {
        bench.load(family);
        EXPECT_EQ(bench.check().back(), kSaved);
    }
    EXPECT_EQ(bench.saved_scene(), "saved\n");
    EXPECT_EQ(bench.content(VirusBench::kCopy), "the scene as it was");
}

TEST(VirusChecks, DoNotSaveAgainWhenTheCopyIsGone) {
    VirusBench bench("Adsl");
    bench.add_global(u"ADSL_AScript");
    bench.add_global(u"CRP_AScript");
    bench.back_up();
    EXPECT_EQ(bench.check().back(), kSaved);
    bench.files.remove(VirusBench::kCopy);
    bench.load("Crp");
    EXPECT_EQ(bench.check().back(), not_saved(kNoCopy));
}

TEST(VirusCheckAlcSaving, UndoBringsNoCarrierBack) {
    VirusBench bench("Alc");
    bench.add_node(u"Rectangles135", u"Point");
    bench.add_node(u"Legit", u"Point");
    bench.back_up();
    EXPECT_EQ(bench.check().back(), kSaved);
    bench.undo();
    EXPECT_EQ(bench.node_names(), std::vector<Text>({u"Legit"}));
    EXPECT_EQ(bench.saved_scene(), "saved\nnode Legit\n");
}

// Undo steps of the user's own are worth keeping when there was no carrier.
TEST(VirusCheckAlcSaving, LeavesTheUndoStepsOfACleanScene) {
    VirusBench bench("Alc");
    bench.scene.undo_list.push_back(std::make_shared<maxscript_host::SceneNode>());
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
    EXPECT_EQ(bench.scene.undo_list.size(), 1U);
}

const Text kExplorer =
    u"C:\\Users\\me\\plugcfg\\ExplorerConfig\\SceneExplorer\\DefaultModalSceneExplorer.ini";

TEST(VirusCheckAlcSaving, ShowsHiddenAndFrozenNodesInTheSceneExplorerAgain) {
    VirusBench bench("Alc");
    bench.add_node(u"Rectangles135", u"Point");
    bench.files.put(kExplorer,
                    "[Other]\r\nHidden=false\r\n[Explorer]\r\nHidden=false\r\nFrozen=false\r\nA=1\r\n");
    const Lines lines = bench.check();
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[1], "restored Hidden in " + utf8(kExplorer));
    EXPECT_EQ(lines[2], "restored Frozen in " + utf8(kExplorer));
    EXPECT_EQ(bench.content(kExplorer),
              "[Other]\r\nHidden=false\r\n[Explorer]\r\nHidden=true\r\nFrozen=true\r\nA=1\r\n");
}

// Without the virus it is how the user wants it.
TEST(VirusCheckAlcSaving, LeavesTheSceneExplorerOfACleanScene) {
    VirusBench bench("Alc");
    bench.files.put(kExplorer, "[Explorer]\r\nHidden=false\r\n");
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
    EXPECT_EQ(bench.content(kExplorer), "[Explorer]\r\nHidden=false\r\n");
}

} // namespace
