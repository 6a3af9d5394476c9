// The texts of the three virus checks: what they promise as scripts, whatever the scene.
#include "tests/scripts/virus_check_fixture.h"
#include "tests/support/scripted_scene.h"

namespace {

using maxscript::Text;
using support::Lines;
using support::utf8;
using support::Value;
using support::virus_script;
using support::VirusBench;

class VirusScript : public testing::TestWithParam<const char*> {
protected:
    const std::string script_ = virus_script(GetParam());
};

INSTANTIATE_TEST_SUITE_P(VirusCheck, VirusScript, testing::Values("Adsl", "Alc", "Crp"),
                         [](const testing::TestParamInfo<const char*>& one) {
                             return std::string(one.param);
                         });

TEST_P(VirusScript, NamesItsFamilyInEveryLine) {
    VirusBench bench(GetParam());
    std::string family = GetParam();
    std::transform(family.begin(), family.end(), family.begin(), ::toupper);
    bench.check();
    EXPECT_EQ(bench.written(), "Tarvo check " + family + ": nothing found\n");
}

// The host guesses the encoding of a script without a byte order mark.
TEST_P(VirusScript, IsAscii) {
    ASSERT_FALSE(script_.empty());
    EXPECT_TRUE(std::all_of(script_.begin(), script_.end(),
                            [](char byte) { return byte == '\n' || (byte >= ' ' && byte <= '~'); }));
}

TEST_P(VirusScript, HasNoProblemThatShowsWithoutRunning) {
    VirusBench bench(GetParam());
    for (const maxscript::ScriptError& problem : bench.interpreter().check(script_, u"check.ms")) {
        ADD_FAILURE() << problem.what();
    }
}

bool is_word_end(char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) == 0 && letter != '_';
}

// The first time that the word stands in the script; npos: nowhere.
std::size_t first_use(const std::string& script, const std::string& word) {
    std::size_t at = script.find(word);
    while (at != std::string::npos &&
           !(is_word_end(script[at - 1]) && is_word_end(script[at + word.size()]))) {
        at = script.find(word, at + 1);
    }
    return at;
}

// Without a declaration a function of the script could become the value of a global of its name. Gives how
// many functions stand behind `indent`; members of a struct need no declaration.
std::size_t expect_declared_functions(const std::string& script, const std::string& indent) {
    const std::string begin = "\n" + indent + "fn ";
    std::size_t count = 0;
    for (std::size_t at = script.find(begin); at != std::string::npos; at = script.find(begin, at + 1)) {
        const std::size_t name_at = at + begin.size();
        const std::string name = script.substr(name_at, script.find(' ', name_at) - name_at);
        const std::size_t declared = first_use(script, name);
        const std::size_t line = script.rfind("\n" + indent + "local ", declared);
        EXPECT_LT(declared, at) << name;
        EXPECT_NE(line, std::string::npos) << name;
        EXPECT_EQ(script.substr(std::min(line, declared), declared - std::min(line, declared))
                      .find_first_of("=(-#"),
                  std::string::npos)
            << name;
        ++count;
    }
    return count;
}

TEST_P(VirusScript, DeclaresEveryFunctionBeforeItsDefinition) {
    EXPECT_GT(expect_declared_functions(script_, "    "), 15U);
}

TEST(VirusScripts, AsDoTheScriptsOfTheAnalysis) {
    EXPECT_EQ(expect_declared_functions(support::shipped_script("PrepareAnalysisScript.ms"), "    "), 3U);
    EXPECT_EQ(expect_declared_functions(support::shipped_script("MaxRenderGlobalsParser.ms"), "        "),
              2U);
}

// The words of the script's own part that can be variables.
std::vector<Text> words_of(const std::string& script, VirusBench& bench) {
    std::vector<Text> words;
    std::string word;
    for (const char letter : script.substr(script.find("local found = 0")) + " ") {
        if (std::isalnum(static_cast<unsigned char>(letter)) != 0) {
            word += letter;
            continue;
        }
        const Text name = maxscript::text_from_utf8(word);
        const bool may_be = word.size() > 2 && std::isalpha(static_cast<unsigned char>(word[0])) != 0 &&
                            !bench.has_global(name);
        word.clear();
        try {
            if (may_be) {
                bench.run(u"global " + name + u" = 7531");
                words.push_back(name);
            }
        } catch (const maxscript::ScriptError&) {
            continue; // a word of the language
        }
    }
    return words;
}

TEST_P(VirusScript, LeavesGlobalsAloneThatAreNamedLikeItsOwnVariables) {
    VirusBench bench(GetParam());
    const std::vector<Text> words = words_of(script_, bench);
    ASSERT_GT(words.size(), 30U);
    EXPECT_EQ(bench.check(), Lines({"nothing found"}));
    for (const Text& word : words) {
        Value value;
        ASSERT_TRUE(bench.interpreter().globals().get(word, value)) << utf8(word);
        EXPECT_TRUE(value.is(maxscript::Kind::integer) && value.as_integer() == 7531) << utf8(word);
    }
}

} // namespace
