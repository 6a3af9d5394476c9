#include "packaging/diagnostics/cleanup.h"
#include "packaging/diagnostics/client_answer.h"
#include "packaging/diagnostics/last_submission.h"

#include "submit/scene_archive.h"

#include <gtest/gtest.h>

namespace {

using diagnostics::AnswerForm;
using diagnostics::Fate;
using diagnostics::StoredFile;

constexpr unsigned long long kDay = 24ULL * 60 * 60 * 10000000;
constexpr unsigned long long kNow = 1000 * kDay;

std::string document_name(int number) {
    return "0000000" + std::to_string(number) + "-9D2E-4C11-8A5B-0E6D2F9A7C31.json";
}

StoredFile document(int number, unsigned days_old) {
    return {document_name(number), false, kNow - days_old * kDay};
}

StoredFile archive(const char* name, unsigned days_old) {
    return {name, true, kNow - days_old * kDay};
}

TEST(LastSubmission, OnlyThePluginsFileNamePatternsAreRecognised) {
    EXPECT_TRUE(diagnostics::is_document_name("1F0C3B7A-9D2E-4C11-8A5B-0E6D2F9A7C31.json"));
    for (const char* name :
         {"1f0c3b7a-9D2E-4C11-8A5B-0E6D2F9A7C31.json", "1F0C3B7A-9D2E-4C11-8A5B-0E6D2F9A7C3.json",
          "1F0C3B7A-9D2E-4C11-8A5B-0E6D2F9A7C31.json.bak", "notes.json", ""}) {
        EXPECT_FALSE(diagnostics::is_document_name(name)) << name;
    }
    for (const char* name :
         {"Lobby_k3ZpQa.7z", "a b.c_d_k3ZpQa.7z", "场景_000000.7z", "Lobby_k3ZpQa.7z.tmp"}) {
        EXPECT_TRUE(diagnostics::is_archive_name(name)) << name;
    }
    for (const char* name : {"Lobby_k3ZpQ.7z", "Lobbyk3ZpQa.7z", "_k3ZpQa.7z", "Lobby_k3ZpQa.zip",
                             "Lobby_k3Zp-a.7z", "Lobby_k3ZpQa", ".7z", ""}) {
        EXPECT_FALSE(diagnostics::is_archive_name(name)) << name;
    }
}

TEST(LastSubmission, SceneStemEqualsThePluginsArchiveStem) {
    for (const char* scene :
         {"D:\\work\\Lobby2.max", "C:\\my.folder\\Tower", "Tower.final.max", "C:/a/b_c.max"}) {
        const std::string stem = tarvo::ArchiveStem(scene);
        EXPECT_EQ(diagnostics::scene_stem(scene), stem);
        EXPECT_EQ(diagnostics::archive_stem(stem + "_k3ZpQa.7z"), stem);
    }
}

TEST(LastSubmission, InvalidDocumentIsUnreadableAndWrongTypesReadAsEmpty) {
    diagnostics::DocumentFact fact;
    read_document("{\"name\": \"a.max\", \"cameras\": [{}, {}]}", fact);
    EXPECT_TRUE(fact.readable);
    EXPECT_EQ(fact.scene, "a.max");
    EXPECT_EQ(fact.cameras, 2U);
    for (const char* text : {"", "{\"name\": \"a.ma", "[]", "null", "7"}) {
        read_document(text, fact);
        EXPECT_FALSE(fact.readable) << text;
    }
    diagnostics::DocumentFact odd;
    read_document("{\"name\": 7, \"cameras\": \"x\"}", odd);
    EXPECT_TRUE(odd.readable);
    EXPECT_EQ(odd.scene, "");
    EXPECT_EQ(odd.cameras, 0U);
}

TEST(LastSubmission, LogLineIsSplitIntoTimeLevelAndText) {
    const diagnostics::LogLine line = diagnostics::log_line("2024-03-07 09:05:02:045 [ERROR] It is: [x] y");
    EXPECT_EQ(line.time, "2024-03-07 09:05:02:045");
    EXPECT_EQ(line.level, "ERROR");
    EXPECT_EQ(line.text, "It is: [x] y");
    EXPECT_EQ(diagnostics::log_line("rubbish").text, "rubbish");
}

TEST(LastSubmission, OnlyKnownLogLinesHaveAMeaning) {
    const struct {
        const char* channel;
        const char* text;
        const char* meaning; // a part of it
    } rows[] = {
        {"qfx_http", "Submit successfully.", "The scene has been submitted."},
        {"qfx_http", "The scene file is not exist!", "cannot find the scene file"},
        {"qfx_http", "WinHttpSendRequesterror, code is 12029", "A Windows function failed"},
        {"qfx_http", "WinHttpAddRequestHeaderserror, code is 5", "A Windows function failed"},
        {"qfx_data", "Write json file at: C:\\x successfully.", "The submit document was written"},
        {"qfx_ui", "No camera checked!", "No camera is ticked"},
    };
    for (const auto& row : rows) {
        const diagnostics::LogMeaning meaning = diagnostics::log_meaning(row.channel, row.text);
        EXPECT_NE(meaning.english.find(row.meaning), std::string::npos)
            << row.text << ": " << meaning.english;
        EXPECT_FALSE(meaning.chinese.empty()) << row.text;
    }
    for (const char* text : {"", "Submit successfully", "Submit successfully. ", "something else"}) {
        EXPECT_EQ(diagnostics::log_meaning("qfx_http", text).english, "") << text;
    }
    EXPECT_EQ(diagnostics::log_meaning("qfx_data", "Submit successfully.").english, "");
}

TEST(LastSubmission, EveryReplyCodeHasAMeaning) {
    for (int code : {10001, 10002, 10003, 10004, 10005, 10006, 10007, 10008, 10009, 11000, 11010}) {
        EXPECT_FALSE(diagnostics::code_meaning(code).english.empty()) << code;
        EXPECT_FALSE(diagnostics::code_meaning(code).chinese.empty()) << code;
    }
    EXPECT_TRUE(diagnostics::code_meaning(99999).english.empty());
}

TEST(LastSubmission, SevenZipErrorIsReportedWithoutTheFileName) {
    EXPECT_EQ(diagnostics::complaint(
                  "ERROR: Villa.7z\nVilla.7z\nOpen ERROR: Cannot open the file as [7z] archive\n\n"
                  "ERRORS:\nUnexpected end of archive\n"),
              "Unexpected end of archive");
    EXPECT_EQ(diagnostics::complaint("ERROR: Data Error : Villa.max"), "Data Error");
    EXPECT_EQ(diagnostics::complaint("Everything is Ok"), "");
}

TEST(ClientAnswer, OnlyAnObjectWithAnIntegerRetIsAReplyCode) {
    const struct {
        const char* body;
        AnswerForm form;
    } rows[] = {
        {"{\"ret\": 10005}", AnswerForm::code},
        {" {\"ret\":-1, \"x\": 2}\r\n", AnswerForm::code},
        {"{\"ret\": \"10005\"}", AnswerForm::json},
        {"{\"ret\": 1.5}", AnswerForm::json},
        {"{}", AnswerForm::json},
        {"[10005]", AnswerForm::json},
        {"null", AnswerForm::json},
        {"<html>", AnswerForm::page},
        {"\r\n<!DOCTYPE html>", AnswerForm::page},
        {"Not found", AnswerForm::text},
        {"{\"ret\": 10005", AnswerForm::text},
        {"", AnswerForm::empty},
        {" \r\n", AnswerForm::empty},
    };
    for (const auto& row : rows) {
        int code = 0;
        EXPECT_EQ(diagnostics::answer_form(row.body, code), row.form) << row.body;
    }
    int code = 0;
    diagnostics::answer_form("{\"ret\": 10005}", code);
    EXPECT_EQ(code, 10005);
}

TEST(Cleaning, OldFilesAreRemovedExceptTheNewestOfEachKind) {
    const std::vector<StoredFile> files = {
        document(1, 90),
        document(2, 40),
        archive("Lobby_aaaaaa.7z", 41),
        archive("Lobby_bbbbbb.7z", 90),
        archive("Other_cccccc.7z", 35),
        archive("Other_dddddd.7z", 60),
    };
    EXPECT_EQ(diagnostics::plan_cleaning(files, "D:\\a\\Lobby.max", kNow, 30),
              (std::vector<Fate>{Fate::removed, Fate::kept_newest, Fate::kept_newest, Fate::removed,
                                 Fate::kept_newest, Fate::removed}));
}

TEST(Cleaning, AgeCountsWholeDays) {
    const std::vector<StoredFile> files = {document(1, 0),
                                           {document_name(2), false, kNow - 30 * kDay},
                                           {document_name(3), false, kNow - 30 * kDay + 1}};
    EXPECT_EQ(diagnostics::plan_cleaning(files, "", kNow, 30),
              (std::vector<Fate>{Fate::stays, Fate::removed, Fate::stays}));
}

TEST(Cleaning, FileWithAFutureTimeIsKept) {
    const std::vector<StoredFile> files = {document(1, 0), {document_name(2), false, kNow + kDay}};
    EXPECT_EQ(diagnostics::plan_cleaning(files, "", kNow, 1), (std::vector<Fate>{Fate::stays, Fate::stays}));
}

TEST(Cleaning, FilesWithForeignNamesAreKept) {
    const std::vector<StoredFile> files = {document(1, 0),
                                           {"notes.json", false, 0},
                                           {"Lobby_aaaaaa.7z", false, 0},
                                           {document_name(2), true, 0},
                                           {"Lobby.7z", true, 0}};
    EXPECT_EQ(diagnostics::plan_cleaning(files, "", kNow, 1), std::vector<Fate>(5, Fate::stays));
}

TEST(Cleaning, UnfinishedArchiveIsNeverTheNewest) {
    const std::vector<StoredFile> files = {archive("Lobby_aaaaaa.7z.tmp", 40),
                                           archive("Lobby_bbbbbb.7z", 50)};
    EXPECT_EQ(diagnostics::plan_cleaning(files, "", kNow, 30),
              (std::vector<Fate>{Fate::removed, Fate::kept_newest}));
}

TEST(Cleaning, ArchiveNewerThanTheDocumentDoesNotBelongToIt) {
    const std::vector<StoredFile> files = {document(1, 40), archive("Lobby_aaaaaa.7z", 39),
                                           archive("Lobby_bbbbbb.7z", 41)};
    EXPECT_EQ(diagnostics::archive_of(files, files[0], "Lobby.max"), 2U);
    EXPECT_EQ(diagnostics::newest_archive(files), 1U);
}

} // namespace
