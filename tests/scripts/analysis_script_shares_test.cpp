// The shipped analysis script: files on shares that cannot be reached, and files that XRef'ed scenes use.
#include "tests/support/sanitized.h"
#include "tests/support/scripted_scene.h"

#include <gtest/gtest.h>

namespace {

using support::error_codes;
using support::listed;
using support::ScriptedScene;
using Strings = std::vector<std::string>;

constexpr int kFiles = support::kSanitized ? 1000 : 10000;

void add_files(ScriptedScene& scene, const std::wstring& root, bool exist) {
    for (int i = 0; i < kFiles; ++i) {
        scene.add_file(root + L"maps" + std::to_wstring(i % 10) + L"\\" + std::to_wstring(i) + L".png",
                       exist);
    }
}

Strings references(const Json::Value& root) {
    return listed(root["reference_file"], "path");
}

Strings missing(const Json::Value& root) {
    return listed(root["missing_file"], "path");
}

TEST(AnalysisScriptShares, ADeadOneIsAskedOnceAndALivingOneTwiceForEachFile) {
    for (const bool exist : {false, true}) {
        ScriptedScene scene;
        scene.model().path = L"C:\\scenes\\a.max";
        scene.files.put(u"\\\\alive\\share\\other.png", "content");
        add_files(scene, L"\\\\dead\\share\\", false);
        add_files(scene, L"\\\\alive\\share\\", exist);
        const Json::Value root = scene.analysis();
        EXPECT_EQ(missing(root).size(), static_cast<std::size_t>(exist ? kFiles : 2 * kFiles));
        const std::size_t dead = scene.files.queries_below(u"\\\\dead");
        const std::size_t alive = scene.files.queries_below(u"\\\\alive");
        RecordProperty(exist ? "alive" : "alive_missing", static_cast<int>(alive));
        EXPECT_EQ(dead, 1u);
        EXPECT_LE(alive + static_cast<std::size_t>(scene.host.map_path_queries), 2u * kFiles + 1);
        EXPECT_EQ(scene.printed(), "Tarvo analysis: \\\\dead\\share\\ cannot be reached; " +
                                       std::to_string(kFiles) + " files below it count as missing\n");
        EXPECT_EQ(error_codes(root), Strings{});
    }
}

TEST(AnalysisScriptShares, ADriveThatIsGoneIsAskedOnce) {
    ScriptedScene scene;
    scene.add_file(L"X:\\a.png", false);
    scene.add_file(L"x:/b/c.png", false);
    EXPECT_EQ(missing(scene.analysis()), (Strings{"X:\\a.png", "x:/b/c.png"}));
    EXPECT_EQ(scene.files.queries_below(u"X:\\"), 1u);
    EXPECT_EQ(scene.printed(), "Tarvo analysis: x:\\ cannot be reached; 2 files below it count as missing\n");
}

// Scenes come from other machines: the host finds such files beside the scene and in its map folders.
TEST(AnalysisScriptShares, AFileOfADriveThatIsGoneMayLieWhereTheHostLooks) {
    ScriptedScene scene;
    scene.model().path = L"C:\\scenes\\a.max";
    scene.model().references = {{L"Bitmap", L"X:\\old\\Beside.png", L""},
                                {L"Bitmap", L"X:\\old\\moved.png", L"E:\\new\\moved.png"},
                                {L"Bitmap", L"X:\\old\\gone.png", L""}};
    scene.files.put(u"C:\\scenes\\beside.png", "content");
    scene.files.put(u"E:\\new\\moved.png", "content");
    const Json::Value root = scene.analysis();
    EXPECT_EQ(references(root),
              (Strings{"C:\\scenes\\Beside.png", "E:\\new\\moved.png", "X:\\old\\gone.png"}));
    EXPECT_EQ(missing(root), Strings{"X:\\old\\gone.png"});
    EXPECT_EQ(scene.files.queries_below(u"X:\\"), 1u);
    EXPECT_EQ(scene.host.map_path_queries, 0);
}

// It takes seconds to hear that a server is gone, for each of its shares.
TEST(AnalysisScriptShares, AServerThatTakesLongIsAskedForOneShare) {
    for (const std::int32_t wait : {100, 5000}) {
        ScriptedScene scene;
        scene.host.milliseconds_a_time = wait;
        for (const wchar_t* const path :
             {L"\\\\dead\\one\\a.png", L"\\\\dead\\two\\b.png", L"\\\\DEAD\\three\\c.png"}) {
            scene.add_file(path, false);
        }
        EXPECT_EQ(missing(scene.analysis()).size(), 3u);
        EXPECT_EQ(scene.files.queries_below(u"\\\\dead"), wait > 2000 ? 1u : 3u);
    }
}

TEST(AnalysisScriptShares, NothingIsTakenForGoneWhereTheHostKnowsNoDrives) {
    ScriptedScene scene;
    scene.host.environment_variables.erase(u"SystemDrive");
    scene.add_file(L"X:\\a.png", false);
    EXPECT_EQ(missing(scene.analysis()), Strings{"X:\\a.png"});
    EXPECT_EQ(scene.printed(), "");
}

TEST(AnalysisScriptTracker, NeitherAsksForALoginNorLooksOnTheNetwork) {
    for (const bool fails : {false, true}) {
        ScriptedScene scene;
        scene.host.tracker_checks_network = true;
        if (fails) {
            scene.host.fail_query(u"ATSOps.Refresh");
        }
        EXPECT_EQ(error_codes(scene.analysis()), fails ? Strings{"1013"} : Strings{});
        EXPECT_EQ(scene.host.loud_refreshes, 0);
        EXPECT_FALSE(scene.host.tracker_is_silent);
        EXPECT_TRUE(scene.host.tracker_checks_network);
    }
}

TEST(AnalysisScriptTracker, FilesOfVideoPostAreNoReferences) {
    for (const bool tracked : {true, false}) {
        ScriptedScene scene;
        scene.host.tracks_references = tracked;
        scene.host.has_assets = tracked;
        scene.model().references = {{L"VideoPost", L"D:\\vp\\in.png", L""},
                                    {L"VideoPost", L"D:\\vp\\both.png", L""}};
        scene.add_file(L"D:\\maps\\wood.png");
        scene.add_file(L"D:\\vp\\both.png");
        const Json::Value root = scene.analysis();
        EXPECT_EQ(references(root), tracked ? (Strings{"D:\\vp\\both.png", "D:\\maps\\wood.png"})
                                            : (Strings{"D:\\maps\\wood.png", "D:\\vp\\both.png"}));
    }
}

// D:\lib\chair.max is XRef'ed; its map is beside it, and so is what its own XRef uses.
TEST(AnalysisScriptXrefs, RelativePathsLieBesideTheFileThatNamesThem) {
    ScriptedScene scene;
    scene.model().path = L"C:\\scenes\\a.max";
    scene.host.project_folder = u"P:\\job";
    scene.model().references = {{L"XRef", L"D:\\lib\\chair.max", L""},
                                {L"Bitmap", L"maps\\own.jpg", L""},
                                {L"Bitmap", L".\\maps\\project.jpg", L""}};
    scene.host.used_by[u"d:\\lib\\chair.max"] = {u"maps\\wood.jpg", u"parts\\leg.max", u"maps\\gone.jpg"};
    scene.host.used_by[u"parts\\leg.max"] = {u"maps\\steel.jpg"};
    for (const char16_t* const path :
         {u"D:\\lib\\chair.max", u"D:\\lib\\maps\\wood.jpg", u"D:\\lib\\parts\\leg.max",
          u"D:\\lib\\parts\\maps\\steel.jpg", u"C:\\scenes\\maps\\own.jpg", u"P:\\job\\maps\\own.jpg",
          u"P:\\job\\maps\\project.jpg"}) {
        scene.files.put(path, "content");
    }
    const Json::Value root = scene.analysis();
    EXPECT_EQ(references(root),
              (Strings{"D:\\lib\\chair.max", "C:\\scenes\\maps\\own.jpg", "P:\\job\\maps\\project.jpg",
                       "D:\\lib\\maps\\wood.jpg", "D:\\lib\\parts\\leg.max", "D:\\lib\\maps\\gone.jpg",
                       "D:\\lib\\parts\\maps\\steel.jpg"}));
    EXPECT_EQ(missing(root), Strings{"D:\\lib\\maps\\gone.jpg"});
    EXPECT_EQ(error_codes(root), Strings{});
}

TEST(AnalysisScriptXrefs, OneNameMayMeanTwoFiles) {
    ScriptedScene scene;
    scene.model().path = L"C:\\scenes\\a.max";
    scene.model().references = {{L"XRef", L"D:\\lib\\chair.max", L""}, {L"Bitmap", L"maps\\wood.jpg", L""}};
    scene.host.used_by[u"d:\\lib\\chair.max"] = {u"maps\\wood.jpg"};
    for (const char16_t* const path :
         {u"D:\\lib\\chair.max", u"D:\\lib\\maps\\wood.jpg", u"C:\\scenes\\maps\\wood.jpg"}) {
        scene.files.put(path, "content");
    }
    const Json::Value root = scene.analysis();
    EXPECT_EQ(references(root),
              (Strings{"D:\\lib\\chair.max", "C:\\scenes\\maps\\wood.jpg", "D:\\lib\\maps\\wood.jpg"}));
    EXPECT_EQ(missing(root), Strings{});
}

TEST(AnalysisScriptXrefs, ScenesThatReferToEachOtherEnd) {
    ScriptedScene scene;
    scene.model().references = {{L"XRef", L"D:\\a.max", L""}};
    scene.host.used_by[u"d:\\a.max"] = {u"D:\\b.max"};
    scene.host.used_by[u"d:\\b.max"] = {u"D:\\A.MAX", u"b.max", u""};
    scene.files.put(u"D:\\a.max", "content");
    scene.files.put(u"D:\\b.max", "content");
    EXPECT_EQ(references(scene.analysis()), (Strings{"D:\\a.max", "D:\\b.max"}));
}

TEST(AnalysisScriptXrefs, AHostThatCannotTellGivesACode) {
    ScriptedScene scene;
    scene.model().references = {{L"XRef", L"D:\\a.max", L""}};
    scene.files.put(u"D:\\a.max", "content");
    scene.host.fail_query(u"ATSOps.GetDependentFiles");
    const Json::Value root = scene.analysis();
    EXPECT_EQ(error_codes(root), Strings{"1017"});
    EXPECT_EQ(references(root), Strings{"D:\\a.max"});
}

} // namespace
