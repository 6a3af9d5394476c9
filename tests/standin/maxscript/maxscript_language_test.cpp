// Every language case in tests/data/host_facts/language. The same cases are what HostCheck.ms asks 3ds Max.
#include "common/json_text.h"
#include "tests/standin/maxscript/maxscript_fixture.h"
#include "tests/support/test_folder.h"

#include <json/json.h>

namespace {

using script_fixture::outcome_of;

const char* const kTopics[] = {"arrays", "calls", "control", "operators", "strings", "structs", "words"};

struct Group {
    std::string topic;
    std::string name;
};

// The groups are in any order, the cases of a group in the order of the file.
Json::Value cases_of(const std::string& topic) {
    Json::Value groups;
    const std::string file = support::test_data_folder() + "/host_facts/language/" + topic + ".json";
    EXPECT_TRUE(tarvo::ParseJson(support::read_file(file), groups)) << file;
    return groups;
}

std::vector<Group> all_groups() {
    std::vector<Group> groups;
    for (const char* const topic : kTopics) {
        for (const std::string& name : cases_of(topic).getMemberNames()) {
            groups.push_back({topic, name});
        }
    }
    return groups;
}

std::string expected_of(const Json::Value& one) {
    return one.isMember("prints") ? one["prints"].asString()
                                  : one["at"].asString() + " " + one["fails"].asString();
}

class MaxscriptLanguage : public ::testing::TestWithParam<Group> {};

TEST_P(MaxscriptLanguage, CasesGiveTheirExpectedResults) {
    const Json::Value cases = cases_of(GetParam().topic)[GetParam().name];
    ASSERT_GT(cases.size(), 0u);
    for (const Json::Value& one : cases) {
        maxscript::Interpreter interpreter{maxscript::Environment()};
        EXPECT_EQ(outcome_of(interpreter, one["run"].asString()), expected_of(one)) << one["run"].asString();
    }
}

INSTANTIATE_TEST_SUITE_P(Facts, MaxscriptLanguage, ::testing::ValuesIn(all_groups()),
                         [](const ::testing::TestParamInfo<Group>& group) {
                             return group.param.topic + "_" + group.param.name;
                         });

} // namespace
