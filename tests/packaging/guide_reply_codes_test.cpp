// Compares the guide's tables of reply codes, in both languages, with the plugin's table: one row for each
// code and no other rows.
#include "submit/client_link.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

constexpr int kLargestCode = 12000;

std::string guide_page(const std::string& language) {
    return support::read_file(support::test_data_folder() + "/../../docs/guide/" + language +
                              "/reply-codes.md");
}

std::vector<std::string> rows_of(const std::string& page) {
    std::vector<std::string> rows;
    std::istringstream lines(page);
    for (std::string line; std::getline(lines, line);) {
        if (line.size() > 2 && line[0] == '|' && line[2] >= '0' && line[2] <= '9') {
            rows.push_back(line);
        }
    }
    return rows;
}

class GuideReplyCodes : public ::testing::TestWithParam<const char*> {};

TEST_P(GuideReplyCodes, TableHasExactlyThePluginsReplyCodes) {
    const std::vector<std::string> rows = rows_of(guide_page(GetParam()));
    std::size_t next = 0;
    for (int code = 0; code <= kLargestCode; ++code) {
        const tarvo::ReplyCode* known = tarvo::FindReplyCode(code);
        if (known == nullptr) {
            continue;
        }
        ASSERT_LT(next, rows.size()) << "no row for " << code;
        const std::string& row = rows[next++];
        EXPECT_EQ(row.find("| " + std::to_string(code) + " | [" + std::to_string(known->text_id) + "]("), 0u)
            << row;
        EXPECT_NE(row.find("`[" + std::string(known->level) + "] " + known->log_text + "`"),
                  std::string::npos)
            << row;
    }
    EXPECT_GT(next, 0u);
    EXPECT_EQ(next, rows.size()) << "a row too many, or one in another place";
}

INSTANTIATE_TEST_SUITE_P(Languages, GuideReplyCodes, ::testing::Values("en", "zh"));

} // namespace
