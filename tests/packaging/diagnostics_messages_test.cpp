#include "packaging/diagnostics/messages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace {

using diagnostics::Argument;
using diagnostics::Language;
using diagnostics::Message;
using diagnostics::Origin;

std::set<char> places(const std::string& pattern) {
    std::set<char> found;
    for (std::size_t at = pattern.find('{'); at != std::string::npos; at = pattern.find('{', at + 1)) {
        found.insert(pattern.at(at + 1));
        EXPECT_EQ(pattern.at(at + 2), '}') << pattern;
    }
    return found;
}

TEST(DiagnosticsMessages, BothLanguagesHaveTheSamePlaceholders) {
    for (std::size_t i = 1; i < diagnostics::message_count(); ++i) {
        const std::string english = diagnostics::pattern(static_cast<Message>(i), Language::english);
        const std::string chinese = diagnostics::pattern(static_cast<Message>(i), Language::chinese);
        EXPECT_FALSE(english.empty()) << i;
        EXPECT_EQ(places(english), places(chinese)) << english;
    }
}

// "Windows {0}" needs no translation.
TEST(DiagnosticsMessages, ChineseMessagesAreTranslatedAndEnglishOnesAreAscii) {
    const std::set<std::string> same = {"Windows {0}"};
    for (std::size_t i = 1; i < diagnostics::message_count(); ++i) {
        const std::string english = diagnostics::pattern(static_cast<Message>(i), Language::english);
        const std::string chinese = diagnostics::pattern(static_cast<Message>(i), Language::chinese);
        const auto beyond_ascii = [](char character) { return static_cast<unsigned char>(character) > 0x7F; };
        EXPECT_TRUE(std::none_of(english.begin(), english.end(), beyond_ascii)) << english;
        EXPECT_TRUE(same.count(english) != 0 || std::any_of(chinese.begin(), chinese.end(), beyond_ascii))
            << english;
    }
}

TEST(DiagnosticsMessages, PlaceholdersAreReplacedInAnyOrder) {
    EXPECT_EQ(diagnostics::text(Message::file_cut, Language::english, {{"a"}, {"1"}, {"2"}}),
              "a is damaged: 1 of 2 bytes are there.");
    EXPECT_EQ(diagnostics::text(Message::file_cut, Language::chinese, {{"a"}, {"1"}, {"2"}}),
              "a 已损坏：应有 2 字节，实际只有 1 字节。");
}

TEST(DiagnosticsMessages, PlaceholdersInsideAnArgumentAreNotReplaced) {
    EXPECT_EQ(diagnostics::text(Message::file_cut, Language::english, {{"{1}"}, {"{2}"}, {"{"}}),
              "{1} is damaged: {2} of { bytes are there.");
}

TEST(DiagnosticsMessages, HiddenArgumentsAreReplacedAndTranslatedOnesAreNot) {
    const auto hide = [](const Argument& argument) {
        return argument.origin == Origin::ours ? argument.text : std::string("<hidden>");
    };
    const diagnostics::Sentence sentence = {
        Message::channel_means, {{"a"}, {"b"}, {"C:\\x", Origin::user}, {"word", Origin::ours, "词"}}};
    EXPECT_EQ(diagnostics::rendered(sentence, Language::english, hide),
              "a.log ends at b with: <hidden> That means: word");
    EXPECT_EQ(diagnostics::rendered(sentence, Language::chinese, hide),
              "a.log 的最后一行（b）为：<hidden> 含义：词");
}

} // namespace
