#include "packaging/diagnostics/redaction.h"

#include <gtest/gtest.h>

namespace {

using diagnostics::Redactor;
using diagnostics::Secrets;

Redactor make_redactor() {
    Secrets secrets;
    secrets.user_names = {"anna", "\xE5\xBC\xA0\xE4\xBC\x9F"};
    secrets.computer = "STUDIO7";
    secrets.own_folders = {"C:\\ProgramData\\Tarvo Rendering",
                           "C:\\ProgramData\\Autodesk\\ApplicationPlugins\\TarvoRendering"};
    secrets.named_paths = {"C:\\ProgramData\\Tarvo.exe", "C:\\ProgramData\\Tarvo", "D:\\3ds Max 2019"};
    return Redactor(secrets);
}

const std::string kStamp = "2024-03-07 09:05:02:045 [INFO] ";

TEST(Redaction, SceneNameIsReplacedByTheSameTokenEverywhere) {
    Redactor redactor = make_redactor();
    EXPECT_EQ(redactor.line(kStamp + "Get scene name text down, it is : Villa Nova 2.max."),
              kStamp + "Get scene name text down, it is : <scene 1>");
    EXPECT_EQ(redactor.line(kStamp + "Get scene name text down, it is : Other.max."),
              kStamp + "Get scene name text down, it is : <scene 2>");
    EXPECT_EQ(redactor.line(kStamp + "Get scene name text down, it is : Villa Nova 2.max."),
              kStamp + "Get scene name text down, it is : <scene 1>");
}

TEST(Redaction, BothPathsOfABackupLineAreReplaced) {
    Redactor redactor = make_redactor();
    EXPECT_EQ(redactor.line(kStamp + "Backup file from D:\\jobs\\Villa to go.max to E:\\Villa.max Success!"),
              kStamp + "Backup file from <scene 1> Success!");
    EXPECT_EQ(redactor.line(kStamp + "Backup file from D:\\a.max to E:\\b.max Error! Code is \x05"),
              kStamp + "Backup file from <scene 2> Error! Code is \x05");
}

TEST(Redaction, PathsBelowTheOwnFolderAreKeptExceptArchiveNames) {
    Redactor redactor = make_redactor();
    const std::string json =
        kStamp + "Write json file at: C:\\ProgramData/Tarvo Rendering/json/1A2B.json successfully.";
    EXPECT_EQ(redactor.line(json), json);
    EXPECT_EQ(redactor.line("C:\\ProgramData/Tarvo Rendering/compress/Villa_k3ZpQa.7z"),
              "C:\\ProgramData/Tarvo Rendering/compress/<archive>");
    EXPECT_EQ(redactor.line("C:\\ProgramData\\Tarvo Rendering\\compress"),
              "C:\\ProgramData\\Tarvo Rendering\\compress");
}

TEST(Redaction, OtherPathsAreReplacedUpToAQuotationMarkOrTheLineEnd) {
    Redactor redactor = make_redactor();
    EXPECT_EQ(redactor.line("opened \"D:\\my jobs\\x.png\" twice"), "opened \"<path>\" twice");
    EXPECT_EQ(redactor.line("saw \\\\server\\share\\Villa and more"), "saw <path>");
    EXPECT_EQ(redactor.line("z:/jobs/Villa"), "<path>");
    EXPECT_EQ(redactor.line("C:\\ProgramData\\Tarvo Rendering\\json, D:\\jobs"),
              "C:\\ProgramData\\Tarvo Rendering\\json, <path>");
    EXPECT_EQ(redactor.line("https://farm.example is no path"), "https://farm.example is no path");
}

TEST(Redaction, ServerPathsWithAnySlashesAreReplaced) {
    Redactor redactor = make_redactor();
    EXPECT_EQ(redactor.line("saw //server/share/Villa and more"), "saw <path>");
    EXPECT_EQ(redactor.line("//server/share"), "<path>");
    EXPECT_EQ(redactor.line("saw \\/server/share"), "saw <path>");
    EXPECT_EQ(redactor.line("saw /\\server/share"), "saw <path>");
    EXPECT_EQ(redactor.line("saved to:\\\\server\\share"), "saved to:<path>");
    EXPECT_EQ(redactor.line("saved to://server/share"), "saved to:<path>");
    EXPECT_EQ(redactor.line("file://server/share/Villa"), "file:<path>");
    for (const char* address :
         {"HTTP://farm.example/x is no path", "http://farm.example", "and/or", "a //"}) {
        EXPECT_EQ(redactor.line(address), address);
    }
}

TEST(Redaction, FolderNameThatOnlyStartsWithTheOwnFoldersIsReplaced) {
    Redactor redactor = make_redactor();
    const std::string own = "C:\\ProgramData\\Tarvo Rendering";
    for (const char* more :
         {" Kunde\\Villa\\a.txt", " Kunde", "2\\a.txt", "-2/a.txt", ".old", "\xE5\xBC\xA0\\a.txt"}) {
        EXPECT_EQ(redactor.line("saw " + own + more), "saw <path>") << more;
    }
    for (const char* end : {"", "\\", "/json", "\" is there", "\\Kunde"}) {
        EXPECT_EQ(redactor.line("saw " + own + end), "saw " + own + end) << end;
    }
}

TEST(Redaction, FindingKeepsItsOwnPathsAndTheTextAfterThem) {
    Redactor redactor = make_redactor();
    for (const char* finding :
         {"PROBLEM  C:\\ProgramData\\Tarvo Rendering is missing: Tarvo Rendering is not installed.",
          "PROBLEM  C:\\ProgramData\\Tarvo.exe would be started in place of 7-Zip.",
          "PROBLEM  C:\\ProgramData\\Tarvo would be started in place of 7-Zip.",
          "ok       The plugin 1.3.5 is installed: "
          "C:\\ProgramData\\Autodesk\\ApplicationPlugins\\TarvoRendering\\Contents\\TarvoRendering.gup",
          "ok       3ds Max 2019 is in D:\\3ds Max 2019\\",
          "         -> Correct ip in C:\\ProgramData\\Tarvo Rendering\\script\\qfx_plugin.ini; it is "
          "usual."}) {
        EXPECT_EQ(redactor.findings(finding), finding);
    }
}

TEST(Redaction, OtherPathsAndUserNamesInAFindingAreReplaced) {
    Redactor redactor = make_redactor();
    EXPECT_EQ(redactor.findings("(port is \"D:\\jobs\\Villa\").\r\nby anna"),
              "(port is \"<path>\").\r\nby <user>");
    EXPECT_EQ(redactor.findings("C:\\ProgramData\\Tarvo_2 is there"), "<path>");
    EXPECT_EQ(redactor.findings("D:\\3ds Max 2019b"), "<path>");
}

TEST(Redaction, PathsNamedByFindingsAreReplacedInOtherTexts) {
    Redactor redactor = make_redactor();
    EXPECT_EQ(redactor.text("C:\\ProgramData\\Tarvo.exe\nD:\\3ds Max 2019\\maps\\Villa.jpg"),
              "<path>\n<path>");
}

TEST(Redaction, PathsBelowThePackageAreKept) {
    Redactor redactor = make_redactor();
    const std::string entry = "2024-03-07 09:05:02  12  C:\\ProgramData\\Autodesk\\ApplicationPlugins\\"
                              "TarvoRendering\\Contents\\PrepareAnalysisScript.ms";
    EXPECT_EQ(redactor.line(entry), entry);
}

TEST(Redaction, SceneNameWithoutAPathIsReplaced) {
    Redactor redactor = make_redactor();
    EXPECT_EQ(redactor.line(kStamp + "Villa Nova.MAX was odd"), kStamp + "<scene 1> was odd");
    EXPECT_EQ(redactor.line("the file.maximum stays"), "the file.maximum stays");
}

TEST(Redaction, JsonErrorTextIsKept) {
    Redactor redactor = make_redactor();
    const std::string reason = kStamp + "The client's reply cannot be used: Value is not convertible to Int.";
    EXPECT_EQ(redactor.line(reason), reason);
}

TEST(Redaction, UserAndComputerNamesAreReplacedAsWholeWords) {
    Redactor redactor = make_redactor();
    EXPECT_EQ(redactor.line("Anna on studio7: annals, ANNA_x"), "<user> on <computer>: annals, ANNA_x");
    EXPECT_EQ(redactor.line("by\xE5\xBC\xA0\xE4\xBC\x9F."), "by<user>.");
    Secrets nobody;
    nobody.user_names = {""};
    EXPECT_EQ(Redactor(nobody).line("nothing to hide"), "nothing to hide");
}

TEST(Redaction, LongestMatchingNameIsReplaced) {
    Secrets secrets;
    secrets.user_names = {"\xE6\x9D\x8E", "\xE6\x9D\x8E\xE5\x9B\x9B", "anna"};
    secrets.computer = "ANNA-PC";
    Redactor redactor(secrets);
    EXPECT_EQ(redactor.line("by \xE6\x9D\x8E\xE5\x9B\x9B and \xE6\x9D\x8E."), "by <user> and <user>.");
    EXPECT_EQ(redactor.line("anna on anna-pc"), "<user> on <computer>");
}

TEST(Redaction, LineBreaksAreKept) {
    Redactor redactor = make_redactor();
    EXPECT_EQ(redactor.text("anna\r\n\r\nD:\\x\nend"), "<user>\r\n\r\n<path>\nend");
    EXPECT_EQ(redactor.text(""), "");
}

} // namespace
