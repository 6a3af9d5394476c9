// The log lines of an analysis that is damaged or incomplete.
#include "common/text.h"
#include "scene/scene_data.h"
#include "tests/support/scripted_scene.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

// The log lines of reading `text` (UTF-8) into a new store.
std::vector<std::string> lines_of(const std::string& text) {
    support::plugin_folder();
    const std::size_t mark = support::log_mark("qfx_data");
    tarvo::SceneData scene;
    std::wstring wide = tarvo::Utf8ToWide(text);
    scene.set_analysis_text(wide);
    scene.parse_analysis();
    return support::log_lines_since("qfx_data", mark);
}

TEST(AnalysisLog, ObjectWhereAListIsExpectedIsReported) {
    const std::vector<std::string> lines = lines_of(R"({"reference_file": {"path": "x"}})");
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), "[ERROR] The analysis text cannot be used: an array was expected");
}

#ifdef _WIN32
// In code page 936 the first two of the three bytes are one character, the third is an incomplete one.
// The runtime of Windows then converts nothing; the C library of the native tests stops there.
TEST(AnalysisLog, ImageFormatMissingFromTheCodePageIsReported) {
    const std::string format = "\xE4\xB8\xAD";
    const std::vector<std::string> lines =
        lines_of(R"({"cameras": [{"name": "Cam"}], "image_format": ")" + format + "\"}");
    EXPECT_NE(std::find(lines.begin(), lines.end(), "[WARN] The image format cannot be read: " + format),
              lines.end());
}
#endif

TEST(AnalysisLog, EmptyImageFormatIsNotReported) {
    for (const std::string& line : lines_of(R"({"cameras": [{"name": "Cam"}], "image_format": ""})")) {
        EXPECT_EQ(line.find("image format"), std::string::npos) << line;
    }
}

// The listener and the log use the same words, and every code has some.
TEST(AnalysisLog, CodesHaveTheListenersTexts) {
    const std::string script = support::shipped_script("MaxRenderGlobalsParser.ms");
    const std::size_t end = script.find("roots = #()");
    std::size_t count = 0;
    for (std::size_t at = script.find("#(\"1"); at < end; at = script.find("#(\"1", at + 1)) {
        const std::size_t comma = script.find("\", \"", at);
        const std::string code = script.substr(at + 3, comma - at - 3);
        const std::size_t words = comma + 4;
        EXPECT_EQ(tarvo::AnalysisCodeLine(std::stoi(code)),
                  "Analysis code " + code + ": " + script.substr(words, script.find('"', words) - words));
        ++count;
    }
    for (std::size_t at = script.find("note \"1"); at != std::string::npos;
         at = script.find("note \"1", at + 1)) {
        EXPECT_NE(script.find("#(" + script.substr(at + 5, script.find('"', at + 6) - at - 4) + ", "),
                  std::string::npos)
            << script.substr(at, 12);
    }
    EXPECT_EQ(count, 19u);
    EXPECT_EQ(tarvo::AnalysisCodeLine(4711), "Analysis code 4711: not known to this version");
}

} // namespace
