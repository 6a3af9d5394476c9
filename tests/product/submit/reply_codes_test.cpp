
#include "common/string_table.h"
#include "resources/resource_ids.h"
#include "submit/client_link.h"
#include "tests/support/test_boxes.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

namespace {

using tarvo::FindReplyCode;
using tarvo::HandleClientReply;
using tarvo::ReplyCode;
using tarvo::Text;

struct Row {
    int code;
    unsigned text_id;
    bool has_caption;
    const char* line;
};

// An independent copy of the product's table, with text ids as numbers.
constexpr Row kRows[] = {
    {10001, 45, false, "[INFO] Submit successfully."},
    {10002, 54, true,
     "[ERROR] The client's current project is not a 3ds max render project, please set it up again!"},
    {10003, 46, true, "[ERROR] The client rendering version is not match!"},
    {10004, 47, true, "[ERROR] The current project is not an design sketch project!"},
    {10005, 48, true, "[ERROR] The scene file is not exist!"},
    {10006, 55, true, "[ERROR] he Analysis file is not exist!"},
    {10007, 56, true, "[ERROR] Parse the analysis file failed!"},
    {10008, 50, true,
     "[ERROR] The current submission of the scene suffix is wrong, please check for confirmation!"},
    {10009, 51, true,
     "[ERROR] The current submission scenario already exists, please do not repeat the submission!"},
    {11000, 52, true, "[ERROR] An internal error occurred. Please restart 3ds max and re-operate!"},
    {11010, 38, true, "[ERROR] Camera name can not have special characters, please modify and re-submit!"},
};

constexpr const char* kNotParsed = "[ERROR] Get response data failed: parse the data from client failed!";

// One reply and its effects.
struct Outcome {
    explicit Outcome(const std::string& reply) {
        const std::size_t mark = support::log_mark("qfx_http");
        testing::internal::CaptureStdout();
        HandleClientReply(reply, owner());
        printed = testing::internal::GetCapturedStdout();
        lines = support::log_lines_since("qfx_http", mark);
    }

    // Never used as a window, only passed through.
    static tarvo::WindowHandle owner() { return reinterpret_cast<tarvo::WindowHandle>(0x1234); }

    TestBoxes boxes;
    std::string printed;
    std::vector<std::string> lines;
};

void expect_box(const Outcome& outcome, unsigned text_id, const std::wstring& caption) {
    ASSERT_EQ(outcome.boxes.shown.size(), 1u);
    const TestBox& box = outcome.boxes.shown.front();
    EXPECT_EQ(box.owner, Outcome::owner());
    EXPECT_EQ(box.text, Text(text_id));
    EXPECT_FALSE(box.text.empty());
    EXPECT_EQ(box.caption, caption);
    EXPECT_EQ(box.style, 0u);
    EXPECT_EQ(box.language, Text(IDS_LANGUAGE_SWITCH) == L"0" ? 1033 : 1);
}

void expect_not_parsed(const std::string& reply, bool with_reason) {
    SCOPED_TRACE(reply.substr(0, 60));
    const Outcome outcome(reply);
    expect_box(outcome, IDS_REPLY_NOT_PARSED, Text(IDS_CAPTION));
    ASSERT_EQ(outcome.lines.size(), with_reason ? 2u : 1u);
    EXPECT_EQ(outcome.lines.back(), kNotParsed);
    if (with_reason) {
        EXPECT_EQ(outcome.lines.front().find("[ERROR] The client's reply cannot be used: "), 0u);
    }
    EXPECT_EQ(outcome.printed.find("Error "), 0u) << outcome.printed;
    EXPECT_NE(outcome.printed.find(" in WinHttpReadData."), std::string::npos) << outcome.printed;
    EXPECT_EQ(outcome.printed.back(), '\n');
}

void expect_nothing(const std::string& reply) {
    SCOPED_TRACE(reply);
    const Outcome outcome(reply);
    EXPECT_TRUE(outcome.boxes.shown.empty());
    EXPECT_TRUE(outcome.lines.empty());
    EXPECT_TRUE(outcome.printed.empty());
}

TEST(ReplyCodes, EveryCodeHasItsTextCaptionAndLogLine) {
    for (const Row& row : kRows) {
        const ReplyCode* found = FindReplyCode(row.code);
        ASSERT_NE(found, nullptr) << row.code;
        EXPECT_EQ(found->code, row.code);
        EXPECT_EQ(found->text_id, row.text_id) << row.code;
        EXPECT_EQ(found->caption_id, row.has_caption ? 49u : 0u) << row.code;
        EXPECT_EQ("[" + std::string(found->level) + "] " + found->log_text, row.line);
    }
}

TEST(ReplyCodes, NoOtherCodeIsKnown) {
    int known = 0;
    for (int code = -1; code <= 12000; ++code) {
        known += FindReplyCode(code) == nullptr ? 0 : 1;
    }
    EXPECT_EQ(known, static_cast<int>(sizeof kRows / sizeof kRows[0]));
    EXPECT_EQ(FindReplyCode(-10001), nullptr);
    EXPECT_EQ(FindReplyCode(99999), nullptr);
}

TEST(HandleClientReply, EveryCodeShowsItsBoxAndLogsItsLine) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.code);
        const Outcome outcome("{\"ret\": " + std::to_string(row.code) + "}");
        expect_box(outcome, row.text_id, row.has_caption ? Text(IDS_CAPTION) : std::wstring());
        EXPECT_EQ(outcome.lines, std::vector<std::string>{row.line});
        EXPECT_TRUE(outcome.printed.empty());
    }
}

TEST(HandleClientReply, OtherMembersAndWhiteSpaceAreIgnored) {
    const Outcome outcome(" {\n\t\"message\" : \"\\u6210\\u529f\",\r\n \"ret\"\t:10001 , \"data\":[{}] } \n");
    expect_box(outcome, IDS_REPLY_ACCEPTED, L"");
    EXPECT_EQ(outcome.lines, std::vector<std::string>{"[INFO] Submit successfully."});
}

TEST(HandleClientReply, UnknownCodesShowNothing) {
    for (const char* reply : {"{\"ret\": 99999}", "{\"ret\": 0}", "{\"ret\": -10001}", "{}", "null",
                              "{\"ret\": null}", "{\"Ret\": 10001}", "{\"ret\": true}"}) {
        expect_nothing(reply);
    }
}

TEST(HandleClientReply, InvalidJsonIsNotParsed) {
    for (const char* reply :
         {"", "   ", "OK", "<html></html>", "{\"ret\": 10001", "{\"ret\": 10", "{'ret': 1}"}) {
        expect_not_parsed(reply, false);
    }
}

TEST(HandleClientReply, WrongTypeIsNotParsedAndLogsTheReason) {
    for (const char* reply : {"{\"ret\": \"10001\"}", "{\"ret\": [10001]}", "{\"ret\": {}}",
                              "{\"ret\": 1e20}", "[10001]", "10001", "\"10001\"", "{\"ret\": 99999999999}"}) {
        expect_not_parsed(reply, true);
    }
}

TEST(HandleClientReply, TooDeepNestingIsNotParsed) {
    expect_not_parsed(std::string(2000, '['), true);
}

// The library fails in the middle, after it has read the code.
TEST(HandleClientReply, CodeBeforeTooDeepNestingIsIgnored) {
    expect_not_parsed("{\"ret\":10001,\"x\":" + std::string(2000, '['), true);
}

} // namespace
