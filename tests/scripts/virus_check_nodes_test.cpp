// The helper nodes that carry the ALC virus: which are found, deleted or left.
#include "tests/scripts/virus_check_fixture.h"

namespace {

using maxscript::Text;
using maxscript_host::SceneNode;
using support::Lines;
using support::utf8;
using support::VirusBench;

const char* const kNotSaved = "not saved: no copy of the scene's file as it is lies beside it. Save the "
                              "scene and submit it again: its file "
                              "still holds what was removed.";
const Text kLongHarmless = Text(4001, u'-') + u" rig";
const Text kLongOfFamily = Text(4001, u'-') + u" autodeskLICserStuckCleanBeta()";

struct NodeCase {
    const char* what;
    Text name;
    Text type;
    Text script;
    bool found;
    bool removed;
};

const NodeCase kNodeCases[] = {
    {"D7FA D7FA on page 936", u"\uE810\uE810", u"Point", u"", true, true},
    {"D7FE D7FA on page 936", u"\uE814\uE810", u"Point", u"", true, true},
    {"D7FE D7FC on page 936", u"\uE814\uE812", u"Point", u"", true, true},
    {"A1A1 D7FD D7FB on page 936", u"\u3000\uE813\uE811", u"Point", u"", true, true},
    {"D7FA D7FA as Latin-1", u"\u00D7\u00FA\u00D7\u00FA", u"Point", u"", true, true},
    {"D7FE D7FA as Latin-1", u"\u00D7\u00FE\u00D7\u00FA", u"Point", u"", true, true},
    {"D7FE D7FC as Latin-1", u"\u00D7\u00FE\u00D7\u00FC", u"Point", u"", true, true},
    {"A1A1 D7FD D7FB as Latin-1", u"\u00A1\u00A1\u00D7\u00FD\u00D7\u00FB", u"Point", u"", true, true},
    // EE A0 90 EE A0 90, EE A0 94 EE A0 90 and EE A0 94 EE A0 92.
    {"its UTF-8 as Latin-1 1", u"\u00EE\u00A0\u0090\u00EE\u00A0\u0090", u"Point", u"", true, true},
    {"its UTF-8 as Latin-1 2", u"\u00EE\u00A0\u0094\u00EE\u00A0\u0090", u"Point", u"", true, true},
    {"its UTF-8 as Latin-1 3", u"\u00EE\u00A0\u0094\u00EE\u00A0\u0092", u"Point", u"", true, true},
    {"its UTF-8 on page 1252 2", u"\u00EE\u00A0\u201D\u00EE\u00A0\u0090", u"Point", u"", true, true},
    {"its UTF-8 on page 1252 3", u"\u00EE\u00A0\u201D\u00EE\u00A0\u2019", u"Point", u"", true, true},
    {"its UTF-8 on page 936 1", u"\u986E\u6135\u722F", u"Point", u"", true, true},
    {"its UTF-8 on page 936 2", u"\u986E\u65D1\u722F", u"Point", u"", true, true},
    {"its UTF-8 on page 936 3", u"\u986E\u65D1\u7233", u"Point", u"", true, true},
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

TEST(VirusCheckAlcNodes, FindsCarriersByNameAndClassOrByTheirScript) {
    for (const NodeCase& one : kNodeCases) {
        SCOPED_TRACE(one.what);
        VirusBench bench("Alc");
        bench.add_node(one.name, one.type, one.script);
        bench.add_node(u"Legit", u"Point");
        const Lines lines = bench.check();
        EXPECT_EQ(lines.size(), one.removed ? 3U : one.found ? 2U : 1U);
        EXPECT_EQ(lines[0] == "removed helper " + utf8(one.name), one.removed);
        EXPECT_EQ(lines[0] == "nothing found", !one.found);
        EXPECT_EQ(bench.scene.nodes.size(), one.removed ? 1U : 2U);
        EXPECT_EQ(utf8(bench.scene.nodes.back()->name), "Legit");
    }
}

TEST(VirusCheckAlcNodes, TellsOfANodeThatIsNoHelperAndLeavesIt) {
    VirusBench bench("Alc");
    bench.add_node(u"Box001", u"Box", kLongOfFamily);
    EXPECT_EQ(
        bench.check(),
        Lines({"could not remove helper Box001: it is no helper; take the script off its scale yourself",
               "1 found, 0 removed, 1 left"}));
    EXPECT_FALSE(bench.scene.save_required);
}

TEST(VirusCheckAlcNodes, ShowsAndThawsACarrierBeforeItDeletesIt) {
    VirusBench bench("Alc");
    SceneNode& node = bench.add_node(u"RenderDialogSign", u"Point");
    node.hidden = true;
    node.frozen = true;
    EXPECT_EQ(bench.check(),
              Lines({"removed helper RenderDialogSign", "1 found, 1 removed, 0 left", kNotSaved}));
    EXPECT_TRUE(bench.scene.nodes.empty());
}

// With its name changed for good, the next check would no longer know it.
TEST(VirusCheckAlcNodes, ReportsACarrierThatStaysAndGivesItsNameBack) {
    VirusBench bench("Alc");
    bench.add_node(u"Rectangles135", u"Point").stuck = true;
    bench.add_node(u"RenderDialogSign", u"Point");
    const Lines expected = {"could not remove helper Rectangles135: it is still there",
                            "removed helper RenderDialogSign", "2 found, 1 removed, 1 left", kNotSaved};
    EXPECT_EQ(bench.check(), expected);
    EXPECT_EQ(bench.node_names(), std::vector<Text>({u"Rectangles135"}));
    EXPECT_EQ(bench.check().front(), expected.front());
}

TEST(VirusCheckAlcNodes, WalksTheSceneOnce) {
    VirusBench bench("Alc");
    for (int number = 0; number < 50; ++number) {
        bench.add_node(u"Point" + maxscript::text_from_number(number), u"Point");
    }
    bench.add_node(u"Rectangles135", u"Point").stuck = true;
    EXPECT_EQ(bench.check().back(), "1 found, 0 removed, 1 left");
    EXPECT_EQ(bench.scene.scale_reads, 51U);
}

} // namespace
