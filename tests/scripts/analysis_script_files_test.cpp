// The shipped analysis script: the files that a scene refers to.
#include "tests/support/scripted_scene.h"

#include <gtest/gtest.h>

namespace {

using support::error_codes;
using support::listed;
using support::ScriptedScene;
using Strings = std::vector<std::string>;

struct Lists {
    Strings references;
    Strings missing;
    Strings same;
};

Lists lists_of(ScriptedScene& scene) {
    const Json::Value root = scene.analysis();
    EXPECT_EQ(error_codes(root), Strings{});
    return {listed(root["reference_file"], "path"), listed(root["missing_file"], "path"),
            listed(root["same_file"], "path")};
}

TEST(AnalysisScriptFiles, ListedOnceInTheirOrder) {
    ScriptedScene scene;
    scene.model().path = L"C:\\scenes\\a.max";
    scene.files.put(u"C:\\scenes\\a.max", "scene");
    scene.add_file(L"D:\\maps\\wood.png");
    scene.add_file(L"D:\\maps\\\u6728.png");
    scene.add_file(L"D:\\maps\\stone.png", false);
    scene.add_file(L"d:/MAPS/Wood.png");
    scene.add_file(L"D:\\maps\\a\"b.png", false);
    const Lists lists = lists_of(scene);
    EXPECT_EQ(lists.references, (Strings{"D:\\maps\\wood.png", "D:\\maps\\\xE6\x9C\xA8.png",
                                         "D:\\maps\\stone.png", "D:\\maps\\a\"b.png"}));
    EXPECT_EQ(lists.missing, (Strings{"D:\\maps\\stone.png", "D:\\maps\\a\"b.png"}));
    EXPECT_EQ(lists.same, Strings{});
}

TEST(AnalysisScriptFiles, SameNameInDifferentFolders) {
    ScriptedScene scene;
    for (const wchar_t* const path :
         {L"D:\\a\\Wood.png", L"D:\\c\\glass.png", L"D:\\b\\wood.PNG", L"d:/A/wood.png", L"D:\\a\\stone.png",
          L"D:\\a\\stone.png", L"E:\\wood.png", L"D:\\a\\wood.png.jpg"}) {
        scene.add_file(path);
    }
    EXPECT_EQ(lists_of(scene).same, (Strings{"D:\\a\\Wood.png", "D:\\b\\wood.PNG", "E:\\wood.png"}));
}

TEST(AnalysisScriptFiles, SceneAndOutputAreNoReferences) {
    ScriptedScene scene;
    scene.model().path = L"C:\\scenes\\a.max";
    scene.render().output_file = L"D:\\out\\frame.png";
    scene.add_file(L"D:\\OUT\\frame.png", false); // tracked as an output too
    Json::Value& settings = scene.renderer(L"V_Ray_Adv_3_60_03");
    settings["output_on"] = true;
    settings["output_getsetsfrommax"] = false;
    settings["output_saveFile"] = true;
    settings["output_fileName"] = "D:\\out\\own.exr";
    scene.add_file(L"D:\\out\\own.exr", false);
    const Lists lists = lists_of(scene);
    EXPECT_EQ(lists.references, Strings{});
    EXPECT_EQ(lists.missing, Strings{});
}

// Both are written when both are asked for.
TEST(AnalysisScriptFiles, TheRawFileIsNoReferenceEither) {
    for (const bool saves_picture : {false, true}) {
        ScriptedScene scene;
        Json::Value& settings = scene.renderer(L"V_Ray_Adv_3_60_03");
        settings["output_on"] = true;
        settings["output_getsetsfrommax"] = false;
        settings["output_saveFile"] = saves_picture;
        settings["output_fileName"] = "D:\\out\\own.png";
        settings["output_saveRawFile"] = true;
        settings["output_rawFileName"] = "D:\\out\\own.vrimg";
        scene.add_file(L"D:\\out\\own.png", false);
        scene.add_file(L"d:/OUT/own.vrimg", false);
        const Json::Value root = scene.analysis();
        EXPECT_EQ(listed(root["reference_file"], "path"),
                  saves_picture ? Strings{} : Strings{"D:\\out\\own.png"});
        EXPECT_EQ(root["image_format"].asString(), saves_picture ? "png" : "vrimg");
    }
}

// Outputs of elements and of the batch are told by the assets alone. A baked picture is written and read.
TEST(AnalysisScriptFiles, OutputsOfElementsAreNoReferences) {
    ScriptedScene scene;
    scene.model().references = {{L"RenderOutput", L"D:\\out\\depth.png", L""},
                                {L"BatchRender", L"D:\\out\\View.png", L""},
                                {L"Bitmap", L"d:/out/VIEW.png", L""},
                                {L"RenderOutput", L"D:\\out\\Depth.png", L""}};
    scene.add_file(L"D:\\maps\\wood.png");
    Lists lists = lists_of(scene);
    EXPECT_EQ(lists.references, (Strings{"D:\\out\\View.png", "D:\\maps\\wood.png"}));
    EXPECT_EQ(lists.missing, Strings{"D:\\out\\View.png"});
    scene.host.fail_query(u"AssetManager.GetAssetByIndex");
    const Json::Value root = scene.analysis();
    EXPECT_EQ(error_codes(root), Strings{"1014"});
    EXPECT_EQ(root["reference_file"].size(), 3u);
}

TEST(AnalysisScriptFiles, LookedForWhereTheHostLooks) {
    ScriptedScene scene;
    scene.model().path = L"C:\\scenes\\a.max";
    scene.host.project_folder = u"P:\\job";
    scene.model().references = {{L"Bitmap", L"D:\\old\\moved.png", L"E:\\new\\moved.png"},
                                {L"Bitmap", L"D:\\old\\beside.png", L""},
                                {L"Bitmap", L"D:\\old\\gone.png", L"E:\\new\\gone.png"},
                                {L"Bitmap", L".\\maps\\relative.png", L""},
                                {L"XRef", L"$scenes\\other.max", L""},
                                {L"Bitmap", L"nowhere.png", L""}};
    for (const char16_t* const path : {u"E:\\new\\moved.png", u"C:\\scenes\\beside.png",
                                       u"P:\\job\\maps\\relative.png", u"P:\\job\\scenes\\other.max"}) {
        scene.files.put(path, "content");
    }
    const Lists lists = lists_of(scene);
    EXPECT_EQ(lists.references, (Strings{"E:\\new\\moved.png", "C:\\scenes\\beside.png", "D:\\old\\gone.png",
                                         "P:\\job\\maps\\relative.png", "P:\\job\\scenes\\other.max",
                                         "C:\\scenes\\nowhere.png"}));
    EXPECT_EQ(lists.missing, (Strings{"D:\\old\\gone.png", "C:\\scenes\\nowhere.png"}));
}

TEST(AnalysisScriptFiles, ATrackerThatListsOnlyTheSceneKnowsNothing) {
    for (const bool has_assets : {true, false}) {
        ScriptedScene scene;
        scene.model().path = L"C:\\scenes\\a.max";
        scene.host.tracks_references = false;
        scene.host.has_assets = has_assets;
        scene.add_file(L"D:\\maps\\wood.png");
        EXPECT_EQ(lists_of(scene).references, Strings{"D:\\maps\\wood.png"});
    }
}

// Hosts differ in how they say that no map folder has a file.
TEST(AnalysisScriptFiles, AFileThatIsNowhereIsMissing) {
    for (const bool says_undefined : {false, true}) {
        ScriptedScene scene;
        scene.host.undefined_map_paths = says_undefined;
        scene.add_file(L"D:\\maps\\gone.png", false);
        EXPECT_EQ(lists_of(scene).missing, Strings{"D:\\maps\\gone.png"});
    }
}

TEST(AnalysisScriptFiles, TwoNamesOfOneFile) {
    ScriptedScene scene;
    scene.host.project_folder = u"P:\\job";
    scene.files.put(u"P:\\job\\maps\\a.png", "content");
    scene.model().references = {{L"Bitmap", L".\\maps\\a.png", L""},
                                {L"Bitmap", L"P:\\job\\maps\\A.png", L""}};
    const Lists lists = lists_of(scene);
    EXPECT_EQ(lists.references, Strings{"P:\\job\\maps\\a.png"});
    EXPECT_EQ(lists.same, Strings{});
}

TEST(AnalysisScriptFiles, ANameForManyTiles) {
    ScriptedScene scene;
    scene.add_file(L"D:\\maps\\wall.<UDIM>.png", false);
    scene.add_file(L"D:\\maps\\floor_<U>_<V>.png", false);
    scene.add_file(L"D:\\maps\\roof.<UDIM>.png", false);
    scene.files.put(u"D:\\maps\\wall.1001.png", "content");
    scene.files.put(u"D:\\maps\\floor_1_2.png", "content");
    const Lists lists = lists_of(scene);
    EXPECT_EQ(lists.references.size(), 3u);
    EXPECT_EQ(lists.missing, Strings{"D:\\maps\\roof.<UDIM>.png"});
}

TEST(AnalysisScriptFiles, EachOtherWayToAsk) {
    const struct {
        std::vector<const char16_t*> failing;
        Strings codes;
        Strings references;
    } kCases[] = {
        {{}, {}, {"D:\\a.png"}},
        {{u"ATSOps.GetFiles"}, {"1013"}, {"D:\\a.png"}},
        {{u"ATSOps.Refresh"}, {"1013"}, {"D:\\a.png"}},
        {{u"ATSOps.GetFiles", u"AssetManager.GetNumAssets"}, {"1013", "1014"}, {"D:\\a.png"}},
        {{u"ATSOps.GetFiles", u"AssetManager.GetAssetByIndex"}, {"1013", "1014"}, {"D:\\a.png"}},
        {{u"ATSOps.GetFiles", u"AssetManager.GetNumAssets", u"enumerateFiles"}, {"1013", "1014", "1015"}, {}},
    };
    for (const auto& each : kCases) {
        ScriptedScene scene;
        scene.model().references = {{L"RenderOutput", L"D:\\out.png", L""},
                                    {L"BatchRender", L"D:\\b.png", L""}};
        scene.add_file(L"D:\\a.png");
        for (const char16_t* const query : each.failing) {
            scene.host.fail_query(query);
        }
        const Json::Value root = scene.analysis();
        EXPECT_EQ(error_codes(root), each.codes);
        EXPECT_EQ(listed(root["reference_file"], "path"), each.references);
        EXPECT_EQ(root["missing_file"].size(), 0u);
    }
}

void fill(ScriptedScene& scene, int count) {
    for (int i = 0; i < count; ++i) {
        scene.model().cameras.push_back(L"Camera" + std::to_wstring(i));
        scene.add_file(L"D:\\\u5BA2\u5385\\maps " + std::to_wstring(i % 7) + L"\\map" +
                           std::to_wstring(i / 2) + L".png",
                       i % 10 != 0);
    }
}

TEST(AnalysisScriptFiles, ThousandsOfCamerasAndFiles) {
    ScriptedScene scene;
    fill(scene, 1000);
    const Json::Value root = scene.analysis();
    EXPECT_EQ(root["cameras"].size(), 1000u);
    EXPECT_EQ(root["reference_file"].size(), 1000u);
    EXPECT_EQ(root["missing_file"].size(), 100u);
    EXPECT_EQ(root["same_file"].size(), 1000u);
}

// In steps, since seconds depend on the machine. The sorting of names grows a little faster than the list;
// what looks at each pair of files would take a hundred times as many.
TEST(AnalysisScriptFiles, TenTimesTheFilesTakeHardlyMoreThanTenTimesTheSteps) {
    ScriptedScene small;
    fill(small, 400);
    small.returned();
    ScriptedScene large;
    fill(large, 4000);
    large.returned();
    ASSERT_GT(small.steps(), 400);
    EXPECT_LT(static_cast<double>(large.steps()) / static_cast<double>(small.steps()), 11.0);
}

// In steps of the language. It takes some six to look at a character, and as many again to write it alone.
TEST(AnalysisScriptFiles, ALongChineseNameIsWrittenInOnePiece) {
    ScriptedScene without;
    without.returned();
    ScriptedScene scene;
    scene.model().cameras = {std::wstring(10000, L'\u5BA2')};
    scene.returned();
    EXPECT_LT(static_cast<double>(scene.steps() - without.steps()) / 10000.0, 8.0);
}

} // namespace
