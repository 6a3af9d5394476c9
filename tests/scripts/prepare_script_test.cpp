// The start-up script that makes the encrypted form of the analysis script.
#include "tests/support/scripted_scene.h"

#include <gtest/gtest.h>

namespace {

using maxscript::Text;
using support::ScriptedScene;

const Text kSource = Text(support::kScriptFolder) + u"MaxRenderGlobalsParser.ms";
const Text kTarget = kSource + u"e";
const Text kStamp = kTarget + u".source";

std::string script_in(ScriptedScene& scene) {
    std::string script;
    const support::MemoryFile* const file = scene.files.find(kTarget);
    EXPECT_TRUE(file != nullptr && maxscript_host::decrypted_script(file->bytes, script));
    return script;
}

TEST(PrepareScript, MakesWhatThePluginLoads) {
    ScriptedScene scene;
    scene.model().cameras = {L"Cam"};
    EXPECT_EQ(scene.run_start_script(), Text());
    EXPECT_EQ(script_in(scene), scene.files.find(kSource)->bytes);
    EXPECT_NE(scene.files.find(kTarget)->bytes, scene.files.find(kSource)->bytes);
    std::string result;
    ASSERT_TRUE(scene.run(u"fileIn \"" + kTarget + u"\"\ngMax.analysis \"\" \"\"", result)) << result;
    EXPECT_EQ(support::listed(support::parsed(result)["cameras"], "name"), std::vector<std::string>{"Cam"});
}

TEST(PrepareScript, LeavesAFreshFileAlone) {
    ScriptedScene scene;
    scene.run_start_script();
    scene.files.find(kTarget)->bytes += "mark";
    EXPECT_EQ(scene.run_start_script(), Text());
    EXPECT_NE(scene.files.find(kTarget)->bytes.find("mark"), std::string::npos);
}

TEST(PrepareScript, MakesItAgainForAnotherSource) {
    ScriptedScene scene;
    scene.run_start_script();
    std::string& source = scene.files.find(kSource)->bytes;
    // Of the same length: neither size nor time would show it.
    source[source.find("1.3.5")] = '2';
    EXPECT_EQ(scene.run_start_script(), Text());
    EXPECT_EQ(script_in(scene), source);
    EXPECT_EQ(scene.files.find(kStamp)->bytes, source);
}

TEST(PrepareScript, MakesItAgainWhenEitherFileIsGone) {
    for (const Text& gone : {kTarget, kStamp}) {
        ScriptedScene scene;
        scene.run_start_script();
        ASSERT_TRUE(scene.files.remove(gone));
        EXPECT_EQ(scene.run_start_script(), Text());
        EXPECT_EQ(script_in(scene), scene.files.find(kSource)->bytes);
        EXPECT_NE(scene.files.find(kStamp), nullptr);
    }
}

TEST(PrepareScript, EmptyEncryptedFileIsMadeAgain) {
    ScriptedScene scene;
    scene.run_start_script();
    scene.files.find(kTarget)->bytes.clear();
    EXPECT_EQ(scene.run_start_script(), Text());
    EXPECT_EQ(script_in(scene), scene.files.find(kSource)->bytes);
}

TEST(PrepareScript, SaysSoWhenItCannotWrite) {
    const Text expected = u"Tarvo Rendering: " + kTarget + u" cannot be written.\n";
    ScriptedScene locked;
    locked.files.lock_folder(u"C:\\ProgramData\\Tarvo Rendering\\script");
    EXPECT_EQ(locked.run_start_script(), expected);
    ScriptedScene held;
    held.run_start_script();
    held.files.find(kSource)->bytes += "\n-- newer\n";
    held.files.find(kTarget)->held = true;
    EXPECT_EQ(held.run_start_script(), expected);
    // The old one still works, and the next start tries again.
    EXPECT_EQ(held.files.find(kStamp), nullptr);
    held.files.find(kTarget)->held = false;
    EXPECT_EQ(held.run_start_script(), Text());
    EXPECT_EQ(script_in(held), held.files.find(kSource)->bytes);
}

TEST(PrepareScript, KeepsWhatThereIsWhileTheSourceCannotBeRead) {
    const Text expected = u"Tarvo Rendering: " + kSource + u" cannot be read.\n";
    ScriptedScene scene;
    scene.run_start_script();
    const std::string script = script_in(scene);
    scene.files.find(kSource)->unreadable = true;
    EXPECT_EQ(scene.run_start_script(), expected);
    ASSERT_NE(scene.files.find(kTarget), nullptr);
    EXPECT_EQ(script_in(scene), script);
    EXPECT_NE(scene.files.find(kStamp), nullptr);
    // Nor is it taken for fresh when both sources are held.
    scene.files.find(kStamp)->unreadable = true;
    EXPECT_EQ(scene.run_start_script(), expected);
    EXPECT_NE(scene.files.find(kTarget), nullptr);
    ASSERT_TRUE(scene.files.remove(kTarget));
    EXPECT_EQ(scene.run_start_script(), expected);
}

TEST(PrepareScript, KeepsWhatThereIsWhileItsStampIsHeld) {
    ScriptedScene scene;
    scene.run_start_script();
    scene.files.find(kStamp)->unreadable = true;
    EXPECT_EQ(scene.run_start_script(), u"Tarvo Rendering: " + kTarget + u" cannot be written.\n");
    EXPECT_NE(scene.files.find(kTarget), nullptr);
    EXPECT_NE(scene.files.find(kStamp), nullptr);
}

TEST(PrepareScript, NeverStopsTheStart) {
    ScriptedScene nothing;
    nothing.files.remove(kSource);
    EXPECT_EQ(nothing.run_start_script(), Text());
    EXPECT_EQ(nothing.files.find(kTarget), nullptr);
    ScriptedScene nowhere;
    nowhere.host.environment_variables.clear();
    EXPECT_NE(nowhere.run_start_script().find(u"Tarvo Rendering: "), Text::npos);
    EXPECT_EQ(nowhere.files.find(kTarget), nullptr);
}

TEST(PrepareScript, APlainTextIsNoEncryptedScript) {
    ScriptedScene scene;
    scene.files.put(kTarget, "global loaded = 1\n");
    std::string result;
    EXPECT_FALSE(scene.run(u"fileIn \"" + kTarget + u"\"", result));
    EXPECT_NE(result.find("not an encrypted script"), std::string::npos) << result;
}

} // namespace
