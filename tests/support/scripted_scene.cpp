#include "tests/support/scripted_scene.h"

#include "common/json_text.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace support {

namespace {

using maxscript::Interpreter;
using maxscript::ScriptError;
using maxscript::Text;
using maxscript::Value;

constexpr const char* kAnalysisScript = "MaxRenderGlobalsParser.ms";
constexpr const char* kStartScript = "PrepareAnalysisScript.ms";

Text script_path(const char* name) {
    return kScriptFolder + maxscript::text_from_utf8(name);
}

// Keeps what the script returned, for the check against the format's schema, where that is wanted.
void keep(const std::string& returned) {
    const char* const folder = std::getenv("TARVO_ANALYSIS_TEXTS");
    if (folder != nullptr) {
        static int number = 0;
        write_file(std::string(folder) + "/" + std::to_string(++number) + ".json", returned);
    }
}

} // namespace

std::string shipped_script(const std::string& name) {
    return read_file(test_data_folder() + "/../../scripts/" + name);
}

ScriptedScene::ScriptedScene() {
    for (const char* const name : {kAnalysisScript, kStartScript}) {
        files.put(script_path(name), shipped_script(name));
    }
    host.environment_variables[u"ProgramData"] = u"C:\\ProgramData";
    host.environment_variables[u"SystemDrive"] = u"C:";
}

Json::Value& ScriptedScene::renderer(const std::wstring& class_name) {
    render().renderer.class_name = class_name;
    return render().renderer.properties;
}

void ScriptedScene::add_file(const std::wstring& named, bool exists) {
    model().references.push_back({L"Bitmap", named, exists ? named : std::wstring()});
    if (exists) {
        files.put(maxscript::text_from_wide(named), "content");
    }
}

Text ScriptedScene::returned() {
    maxscript::Environment environment;
    environment.files = &files;
    environment.listener = this;
    Interpreter interpreter(environment);
    maxscript_host::install_scene_library(interpreter, host);
    printed_.clear();
    const std::vector<Text> paths_before = files.paths();
    Text text;
    try {
        const Value value = interpreter.run(
            u"fileIn \"" + script_path(kAnalysisScript) + u"\"\ngMax.analysis \"\" \"\"", u"");
        EXPECT_TRUE(value.is(maxscript::Kind::string));
        text = value.is(maxscript::Kind::string) ? value.as_string().text : Text();
        steps_ = interpreter.steps();
    } catch (const ScriptError& error) {
        ADD_FAILURE() << error.what();
    }
    EXPECT_TRUE(host.changes.empty()) << maxscript::utf8_from_text(host.changes.front());
    EXPECT_EQ(files.paths(), paths_before);
    keep(maxscript::utf8_from_text(text));
    return text;
}

Json::Value ScriptedScene::analysis() {
    return parsed(maxscript::utf8_from_text(returned()));
}

bool ScriptedScene::run(const Text& command, std::string& result) {
    maxscript::Environment environment;
    environment.files = &files;
    environment.listener = this;
    Interpreter interpreter(environment);
    maxscript_host::install_scene_library(interpreter, host);
    try {
        result = maxscript::utf8_from_text(interpreter.as_string(interpreter.run(command, u"")));
        return true;
    } catch (const ScriptError& error) {
        result = error.what();
        return false;
    }
}

Text ScriptedScene::run_start_script() {
    std::string result;
    printed_.clear();
    EXPECT_TRUE(run(u"fileIn @\"" + script_path(kStartScript) + u"\"", result)) << result;
    return printed_;
}

Json::Value parsed(const std::string& text) {
    Json::Value root;
    EXPECT_TRUE(tarvo::ParseJson(text, root)) << text;
    return root;
}

std::vector<std::string> listed(const Json::Value& list, const char* member) {
    std::vector<std::string> values;
    EXPECT_TRUE(list.isArray());
    for (const Json::Value& entry : list) {
        values.push_back(entry[member].asString());
    }
    return values;
}

std::vector<std::string> error_codes(const Json::Value& analysis) {
    std::vector<std::string> codes = listed(analysis["errors"]["error_code"], "code");
    if (!codes.empty()) {
        EXPECT_EQ(codes.back(), "107"); // once, behind all others
        codes.pop_back();
    }
    EXPECT_EQ(std::count(codes.begin(), codes.end(), "107"), 0);
    return codes;
}

} // namespace support
