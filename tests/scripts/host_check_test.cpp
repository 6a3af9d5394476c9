// HostCheck.ms, made from tests/data/host_facts, in the host's stand-in: with and without V-Ray, Corona,
// scenes by reference and a provider of asset tracking it finds no difference, and a wrong expectation it
// finds.
#include "standin/maxscript_host/security_scene.h"
#include "tests/support/scripted_scene.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

namespace {

using maxscript::Text;
using maxscript::Value;

constexpr const char16_t* kFolder = u"C:\\check\\";

struct Report {
    std::vector<std::string> different;
    std::vector<std::string> skipped;
    int same = 0;
    bool whole = false;
    std::string counts;
};

Report read_report(const std::string& bytes) {
    Report report;
    std::istringstream lines(bytes);
    for (std::string line; std::getline(lines, line);) {
        line.erase(line.find_last_not_of('\r') + 1);
        const std::string verdict = line.substr(0, line.find('\t'));
        if (verdict == "same") {
            ++report.same;
        } else if (verdict == "DIFFERENT") {
            report.different.push_back(line);
        } else if (verdict == "skipped") {
            report.skipped.push_back(line);
        } else if (line.compare(0, 7, "# same ") == 0) {
            report.counts = line;
        }
        report.whole = line == "# end";
    }
    return report;
}

class HostCheck : public ::testing::Test, private maxscript::Listener {
protected:
    HostCheck() {
        script_ = support::read_file(folder() + "/HostCheck.ms");
        security_.system_startup = u"C:\\Max\\scripts\\Startup";
        security_.user_startup = u"C:\\Users\\me\\Startup";
        host_.environment_variables[u"ProgramData"] = u"C:\\ProgramData";
        host_.environment_variables[u"SystemDrive"] = u"C:";
        host_.environment_variables[u"TEMP"] = u"C:\\Temp";
    }

    static std::string folder() {
        const char* const set = std::getenv("TARVO_HOST_CHECK");
        return set == nullptr ? std::string() : set;
    }
    static Text report_path() { return Text(kFolder) + u"TarvoHostCheck.txt"; }

    Report run() {
        files_.put(Text(kFolder) + u"HostCheck.ms", script_);
        const std::vector<Text> before = files_.paths();
        maxscript::Environment environment;
        environment.files = &files_;
        environment.listener = this;
        maxscript::Interpreter interpreter(environment);
        maxscript_host::install_scene_library(interpreter, host_);
        maxscript_host::install_security(interpreter, security_);
        interpreter.run(u"x = 7; struct S (old = 1); kept_before = 3", u"");
        interpreter.run(u"fileIn @\"" + Text(kFolder) + u"HostCheck.ms\"", u"");
        // Neither a variable nor a callback stays.
        EXPECT_EQ(interpreter.globals().names(maxscript::Globals::Which::of_scripts),
                  (std::vector<Text>{u"kept_before", u"S", u"x"}));
        EXPECT_TRUE(security_.callbacks.empty());
        EXPECT_EQ(maxscript::utf8_from_text(interpreter.printed(interpreter.run(u"x", u""))), "7");
        std::string bytes;
        EXPECT_TRUE(files_.read(report_path(), bytes));
        files_.remove(report_path());
        EXPECT_EQ(files_.paths(), before);
        EXPECT_TRUE(host_.changes.empty());
        return read_report(bytes);
    }

    void expect_no_difference(std::size_t skipped) {
        const Report report = run();
        EXPECT_EQ(report.different, std::vector<std::string>());
        EXPECT_EQ(report.skipped.size(), skipped) << (report.skipped.empty() ? "" : report.skipped.front());
        EXPECT_GT(report.same, 500);
        EXPECT_TRUE(report.whole);
        EXPECT_EQ(report.counts, "# same " + std::to_string(report.same) + ", different 0, skipped " +
                                     std::to_string(skipped) + ", of " +
                                     std::to_string(report.same + static_cast<int>(skipped)));
    }

    void save_scene() {
        host_.model.path = L"C:\\scenes\\lobby.max";
        files_.put(u"C:\\scenes\\lobby.max", "scene");
    }
    void refer_to(const wchar_t* kind, const wchar_t* path) {
        host_.model.references.push_back({kind, path, path});
    }

    std::string script_;
    support::MemoryFiles files_;
    maxscript_host::SceneHost host_;
    maxscript_host::SecurityScene security_;

private:
    void write(const Text&) override {}
};

constexpr std::size_t kVray = 11;
constexpr std::size_t kCorona = 3;
constexpr std::size_t kSavedScene = 3; // its path, the tracker's line for it, its dependents
constexpr std::size_t kTracker = 2;    // what a tracker that is switched off does not know
constexpr std::size_t kOutput = 1;
constexpr std::size_t kAssets = 3;
constexpr std::size_t kXrefs = 2;
constexpr std::size_t kProvider = 1;

TEST_F(HostCheck, EmptySceneLeavesOutWhatIsNotThere) {
    expect_no_difference(kVray + kCorona + kSavedScene + kOutput + kAssets + kXrefs + kProvider);
}

TEST_F(HostCheck, VraySceneWithReferencesAndAProvider) {
    save_scene();
    host_.tracker_providers = 1;
    host_.model.cameras = {L"CamWest"};
    host_.model.camera_targets = {L"CamWest.Target"};
    host_.model.render.output_file = L"C:\\out\\lobby.png";
    refer_to(L"Bitmap", L"C:\\maps\\wall.png");
    refer_to(L"XRef", L"C:\\scenes\\chairs.max");
    host_.model.render.renderer.class_name = L"V_Ray_Adv_3_60_03";
    Json::Value& settings = host_.model.render.renderer.properties;
    for (const char* const flag : {"camera_overrideFOV", "output_on", "output_getsetsfrommax",
                                   "output_saveFile", "output_saveRawFile"}) {
        settings[flag] = false;
    }
    settings["camera_fov"] = 45.5;
    for (const char* const number : {"camera_type", "output_width", "output_height"}) {
        settings[number] = 0;
    }
    settings["output_fileName"] = "";
    settings["output_rawFileName"] = Json::Value();
    expect_no_difference(kCorona);
    host_.model.render.renderer.nested = true; // the GPU renderer keeps them one level down
    expect_no_difference(kCorona);
}

TEST_F(HostCheck, CoronaSceneWithATrackerThatIsSwitchedOff) {
    save_scene();
    host_.tracker_disabled = true;
    host_.tracks_references = false;
    refer_to(L"Bitmap", L"C:\\maps\\wall.png");
    host_.model.render.renderer.class_name = L"CoronaRenderer";
    Json::Value& settings = host_.model.render.renderer.properties;
    settings["progressive_passLimit"] = 0;
    settings["progressive_timeLimit"] = 60000;
    settings["adaptivity_targetError"] = 5.5;
    expect_no_difference(kVray + kTracker + kOutput + kXrefs + kProvider);
}

TEST_F(HostCheck, WrongExpectationIsReportedWithWhatCame) {
    script_ = support::read_file(folder() + "/changed/HostCheck.ms");
    const Report report = run();
    EXPECT_EQ(report.different,
              (std::vector<std::string>{"DIFFERENT\tlanguage.operators.Arithmetic.1\t4\t3",
                                        "DIFFERENT\tsize.numbers\t#(Float, Float)\t#(Integer, Integer)"}));
    EXPECT_TRUE(report.whole);
}

// A build whose settings have other names or kinds shows.
TEST_F(HostCheck, SettingThatIsMissingIsReported) {
    host_.model.render.renderer.class_name = L"CoronaRenderer";
    host_.model.render.renderer.properties["progressive_passLimit"] = 0;
    host_.model.render.renderer.properties["progressive_timeLimit"] = 1.5;
    const Report report = run();
    ASSERT_EQ(report.different.size(), 2u);
    EXPECT_EQ(report.different[0], "DIFFERENT\tcorona.progressive_timeLimit\tInteger\tFloat");
    EXPECT_NE(report.different[1].find("corona.adaptivity_targetError\tFloat\tan error: "),
              std::string::npos);
}

TEST_F(HostCheck, WritesIntoTheTemporaryFolderWhenItsOwnTakesNoFile) {
    script_ = support::read_file(folder() + "/changed/HostCheck.ms");
    files_.lock_folder(u"C:\\check");
    files_.put(Text(kFolder) + u"HostCheck.ms", script_);
    maxscript::Environment environment;
    environment.files = &files_;
    maxscript::Interpreter interpreter(environment);
    maxscript_host::install_scene_library(interpreter, host_);
    maxscript_host::install_security(interpreter, security_);
    interpreter.run(u"fileIn @\"" + Text(kFolder) + u"HostCheck.ms\"", u"");
    std::string bytes;
    EXPECT_TRUE(files_.read(u"C:\\Temp\\TarvoHostCheck.txt", bytes));
    EXPECT_TRUE(read_report(bytes).whole);
    EXPECT_GT(read_report(bytes).same, 10);
}

} // namespace
