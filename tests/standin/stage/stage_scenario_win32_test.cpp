// How the stage judges a run.
#include "standin/base/json.h"
#include "standin/stage/expectations.h"
#include "standin/stage/json_match.h"
#include "standin/stage/log_lines.h"
#include "standin/stage/soak.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using namespace stage;

class StageJudgement : public ::testing::Test {
protected:
    // "held", or the first difference.
    std::string judge(const std::string& expect, const std::string& transcript) const {
        Json::Value whole = base::parsed_or_null(transcript);
        whole["texts"]["45"] = "Sent.";
        whole["texts"]["49"] = "Caption";
        Json::Value outcomes(Json::arrayValue);
        evaluate_expectations(base::parsed_or_null(expect), whole, "expect", outcomes);
        for (const Json::Value& outcome : outcomes) {
            if (!outcome["held"].asBool()) {
                return outcome["place"].asString() + ": " + outcome["expected"].asString() + " / " +
                       outcome["got"].asString();
            }
        }
        return outcomes.empty() ? "no outcome" : "held";
    }
};

const char* const kOneBox =
    "{\"boxes\":[{\"text_numbers\":[45],\"text\":\"Sent.\",\"caption\":\"\",\"style\":0,\"answer\":\"ok\"}]}";

TEST_F(StageJudgement, BoxesAreComparedOneByOne) {
    EXPECT_EQ(judge("{\"boxes\":[{\"text\":45,\"caption\":0,\"answer\":\"ok\"}],\"told\":45}", kOneBox),
              "held");
    EXPECT_EQ(judge("{\"boxes\":[{\"text\":{\"$contains\":\"ent\"}}]}", kOneBox), "held");
    EXPECT_EQ(judge("{\"boxes\":[{\"text\":46}]}", kOneBox), "expect.boxes[0].text: 46 () / [45] (Sent.)");
    EXPECT_EQ(judge("{\"boxes\":[{\"caption\":49}]}", kOneBox),
              "expect.boxes[0].caption: \"Caption\" / \"\"");
    EXPECT_EQ(judge("{\"boxes\":[]}", kOneBox), "expect.boxes: 0 boxes / 1: [45] Sent.");
    EXPECT_EQ(judge("{\"told\":null}", kOneBox), "expect.told: no box / \"Sent.\"");
    EXPECT_EQ(judge("{\"told\":45}", "{\"boxes\":[]}"), "expect.told: text 45 / no box");
}

TEST_F(StageJudgement, RowsControlsAndCommandsAreCompared) {
    const std::string state =
        "{\"dialog_state\":{\"main\":{\"open\":true,\"rows\":[{\"name\":\"A\",\"checked\":true}],"
        "\"controls\":{\"5\":{\"text\":\"x\"}}}},"
        "\"commands\":[{\"id\":5,\"result\":1},{\"id\":2,\"result\":-1}]}";
    EXPECT_EQ(judge("{\"main\":{\"rows\":[\"A\"],\"controls\":{\"5\":{\"text\":\"x\"}}}}", state), "held");
    EXPECT_EQ(judge("{\"main\":{\"rows\":[{\"checked\":false}]}}", state),
              "expect.main.rows[0].checked: false / true");
    EXPECT_EQ(judge("{\"main\":{\"controls\":{\"6\":{\"text\":\"x\"}}}}", state),
              "expect.main.controls.6: {\"text\":\"x\"} / nothing");
    EXPECT_EQ(judge("{\"commands\":[{\"id\":5},{\"id\":2,\"result\":-1}]}", state), "held");
    EXPECT_EQ(judge("{\"commands\":[{\"id\":2},{\"id\":5}]}", state).substr(0, 20), "expect.commands[1]: ");
}

TEST_F(StageJudgement, FilesLogsAndCallsAreCompared) {
    const std::string run =
        "{\"files\":[{\"name\":\"compress/L_abc123.7z\",\"size\":9},{\"name\":\"json/a.json\",\"size\":2,"
        "\"json\":{\"a\":[1,{\"b\":2,\"c\":3}]}}],"
        "\"logs\":{\"ui\":[{\"level\":\"INFO\",\"message\":\"one\"},{\"level\":\"ERROR\",\"message\":\"two\"}"
        "]},"
        "\"host_calls\":[{\"name\":\"A::Open\",\"arguments\":\"1, "
        "2\"},{\"name\":\"B::Close\",\"arguments\":\"\"}]}";
    EXPECT_EQ(judge("{\"files\":[{\"name\":\"compress/L_??????.7z\",\"count\":1,\"min_size\":9}]}", run),
              "held");
    EXPECT_EQ(judge("{\"files\":[{\"name\":\"json/*\",\"json\":{\"a\":[1,{\"b\":2}]}}]}", run), "held");
    EXPECT_EQ(judge("{\"files\":[{\"name\":\"json/*\",\"json\":{\"a\":[1,{\"b\":3}]}}]}", run),
              "expect.files[0].json.a[1].b: 3 / 2");
    EXPECT_EQ(judge("{\"files\":[{\"name\":\"json/*\",\"min_size\":3}]}", run),
              "expect.files[0].min_size: 3 / 2");
    EXPECT_EQ(judge("{\"files\":[{\"name\":\"*.txt\",\"count\":0}]}", run), "held");
    EXPECT_EQ(judge("{\"no_files\":[\"compress/*\"]}", run),
              "expect.no_files: no compress/* / compress/L_abc123.7z");
    EXPECT_EQ(judge("{\"log\":{\"ui\":{\"exact\":[\"[INFO] one\",{\"$pattern\":\"*two\"}]}}}", run), "held");
    EXPECT_EQ(judge("{\"log\":{\"ui\":{\"none_with\":[\"[ERROR]\"]}}}", run),
              "expect.log.ui.none_with: no line with [ERROR] / [ERROR] two");
    EXPECT_EQ(judge("{\"log\":{\"other\":{\"exact\":[]}}}", run), "held");
    EXPECT_EQ(judge("{\"host_calls\":{\"in_order\":[\"A::Open(*2)\",\"B::*\"],\"none_of\":[\"C::*\"]}}", run),
              "held");
    EXPECT_EQ(judge("{\"host_calls\":{\"in_order\":[\"B::Close\",\"A::Open\"]}}", run).substr(0, 28),
              "expect.host_calls.in_order: ");
    EXPECT_EQ(judge("{\"host_calls\":{\"contains\":[\"A::Open(3)\"]}}", run).substr(0, 28),
              "expect.host_calls.contains: ");
}

TEST_F(StageJudgement, LeaksExceptionsAndUnansweredBoxesAreDifferences) {
    EXPECT_EQ(judge("{\"released\":true}", "{\"leaks\":[]}"), "held");
    EXPECT_EQ(judge("{\"released\":true}", "{\"leaks\":[1]}"), "expect.released: everything released / [1]");
    Json::Value outcomes(Json::arrayValue);
    const Json::Value thrown =
        base::parsed_or_null("{\"exceptions\":[{\"what\":\"x\"}],\"boxes\":[{\"unanswered\":true}]}");
    evaluate_standing_rules(base::parsed_or_null("{}"), thrown, outcomes);
    EXPECT_EQ(outcomes.size(), 2U);
    EXPECT_EQ(judge("{\"exceptions\":[{\"$contains\":\"x\"}]}", "{\"exceptions\":[{\"what\":\"x\"}]}"),
              "held");
}

TEST(StageMatch, MatcherStandsForAValue) {
    const Json::Value texts = base::parsed_or_null("{\"6\":\"Open\",\"31\":\"Menu\"}");
    const Matcher matcher(texts);
    EXPECT_EQ(matcher.fill_in("{31} > {6} {x} {99}!"), "Menu > Open {x} !");
    EXPECT_TRUE(matcher.matches(base::parsed_or_null("{\"$text\":6}"), Json::Value("Open")));
    EXPECT_FALSE(matcher.matches(base::parsed_or_null("{\"$text\":6}"), Json::Value("Close")));
    EXPECT_TRUE(matcher.matches(base::parsed_or_null("{\"a\":{\"$absent\":true}}"),
                                base::parsed_or_null("{\"b\":1}")));
    EXPECT_FALSE(matcher.matches(base::parsed_or_null("{\"b\":{\"$absent\":true}}"),
                                 base::parsed_or_null("{\"b\":null}")));
    EXPECT_FALSE(matcher.matches(base::parsed_or_null("{\"a\":null}"), base::parsed_or_null("{\"b\":1}")));
    EXPECT_TRUE(matcher.matches(base::parsed_or_null("{\"$at_least\":2}"), Json::Value(2)));
    EXPECT_FALSE(matcher.matches(base::parsed_or_null("{\"$at_least\":2}"), Json::Value(1)));
    EXPECT_FALSE(matcher.matches(base::parsed_or_null("{\"$at_least\":2}"), Json::Value("3")));
    EXPECT_TRUE(matcher.matches(base::parsed_or_null("5"), Json::Value(5.0)));
}

TEST(StageMatch, LanguageOfTheRunSelectsTheValue) {
    const Json::Value expected = base::parsed_or_null("{\"$language\":{\"en\":1033,\"zh\":1}}");
    const Json::Value texts;
    EXPECT_TRUE(Matcher(texts, "en").matches(expected, Json::Value(1033)));
    EXPECT_FALSE(Matcher(texts, "en").matches(expected, Json::Value(1)));
    EXPECT_TRUE(Matcher(texts, "zh").matches(expected, Json::Value(1)));
    EXPECT_FALSE(Matcher(texts, "zh").matches(expected, Json::Value(1033)));
}

SoakView view_of_main() {
    SoakView view;
    view.dialog = "main";
    view.rows = 3;
    view.controls = {{1036, "Edit"}, {1048, "msctls_updown32"}, {1018, "ComboBox"}, {1005, "Button"}};
    return view;
}

// Verb → how often a soak chose it.
std::map<std::string, int> verbs_chosen(unsigned seed, int count, std::string& all) {
    std::map<std::string, int> chosen;
    Soak soak(seed);
    for (int i = 0; i < count; ++i) {
        const Json::Value step = soak.next(view_of_main());
        ++chosen[only_key(step)];
        all += compact(step);
    }
    return chosen;
}

TEST(StageSoak, SameSeedGivesTheSameStepsOfEveryKind) {
    std::string first;
    std::string again;
    std::string other;
    const std::map<std::string, int> chosen = verbs_chosen(7, 500, first);
    verbs_chosen(7, 500, again);
    verbs_chosen(8, 500, other);
    EXPECT_EQ(first, again);
    EXPECT_NE(first, other);
    for (const char* verb :
         {"check", "uncheck", "select", "double_click", "key", "type", "spin", "choose", "click"}) {
        EXPECT_GT(chosen.count(verb), 0U) << verb;
    }
}

TEST(StageSoak, ClosedDialogIsOpenedAndAnEmptyNameIsFilled) {
    Soak soak(7);
    SoakView view;
    EXPECT_EQ(compact(soak.next(view)), "{\"menu\":{\"command\":1497}}");
    view.dialog = "edit";
    view.empty_name = true;
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(soak.next(view)["type"]["control"].asInt(), 1020);
    }
}

TEST(StageLog, LinesWithoutATimeStampContinueTheMessage) {
    const Json::Value lines = parse_log("2024-03-07 09:05:02:045 [INFO] one\r\nsecond half\n"
                                        "2024-03-07 09:05:02:046 [WARN] [x] two\n");
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0]["message"].asString(), "one\nsecond half");
    EXPECT_EQ(lines[1]["level"].asString(), "WARN");
    EXPECT_EQ(lines[1]["message"].asString(), "[x] two");
    EXPECT_EQ(lines[1]["time"].asString(), "2024-03-07 09:05:02:046");
    EXPECT_EQ(log_channel("qfx_http4.log"), "qfx_http");
    EXPECT_EQ(log_channel("qfx_ui.log"), "qfx_ui");
    EXPECT_EQ(log_channel("note.txt"), "");
}

} // namespace
