#include "packaging/diagnostics/findings.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using diagnostics::Connection;
using diagnostics::Facts;
using diagnostics::FileFact;
using diagnostics::FileState;
using diagnostics::Finding;
using diagnostics::Language;
using diagnostics::ManifestState;
using diagnostics::Message;
using diagnostics::Severity;

FileFact file(const char* path) {
    FileFact fact;
    fact.path = path;
    fact.exists = true;
    fact.size = 10;
    fact.written = 100;
    return fact;
}

Facts everything_fine() {
    Facts facts;
    facts.windows = "10.0.19045";
    facts.host = "C:\\Max";
    facts.data_folder = "C:\\Data";
    facts.has_data_folder = true;
    facts.module = file("module");
    facts.module_version = "1.3.5";
    facts.package_contents = file("package");
    facts.prepare_script = file("prepare");
    facts.analysis_source = file("source");
    facts.analysis_encrypted = file("encrypted");
    facts.virus_scripts = {file("adsl"), file("alc"), file("crp")};
    facts.ini = file("ini");
    facts.ip = "127.0.0.1";
    facts.port_text = "8080";
    facts.port = 8080;
    facts.lower_version = "1.3.5";
    facts.seven_zip = file("7z.exe");
    facts.seven_zip_library = file("7z.dll");
    facts.seven_zip_run.started = facts.seven_zip_run.ended = true;
    facts.seven_zip_run.first_line = "7-Zip 26";
    facts.written_folders.resize(1);
    facts.written_folders[0].path = "json";
    facts.written_folders[0].exists = facts.written_folders[0].writable = true;
    facts.client.connection = Connection::reached;
    facts.client.answered = true;
    facts.client.body = "{\"ret\": 10006}";
    facts.installed.manifest = ManifestState::read;
    facts.installed.count = 22;
    facts.module_image.whole = true;
    facts.module_image.imports = {"core.dll", "kernel32.dll"};
    facts.free_bytes = 6000ULL * 1024 * 1024;
    return facts;
}

struct Fault {
    const char* name;
    std::function<void(Facts&)> make;
    Severity severity;
    const char* part; // of the finding's text
};

std::vector<Fault> faults() {
    const Severity problem = Severity::problem;
    const Severity warning = Severity::warning;
    return {
        {"no host", [](Facts& f) { f.host.clear(); }, warning, "3ds Max 2019 is not registered"},
        {"no module", [](Facts& f) { f.module.exists = false; }, problem, "module is missing"},
        {"no package", [](Facts& f) { f.package_contents.exists = false; }, problem, "package is missing"},
        {"no start-up script", [](Facts& f) { f.prepare_script.exists = false; }, problem,
         "prepare is missing"},
        {"no source", [](Facts& f) { f.analysis_source.exists = false; }, problem, "source is missing"},
        {"not yet encrypted", [](Facts& f) { f.analysis_encrypted.exists = false; }, warning,
         "not there yet"},
        {"stale", [](Facts& f) { f.analysis_is_stale = true; }, problem, "another version of the script"},
        {"no virus script", [](Facts& f) { f.virus_scripts[1].exists = false; }, problem, "alc is missing"},
        {"no ini", [](Facts& f) { f.ini.exists = false; }, problem, "ini is missing"},
        {"no ip", [](Facts& f) { f.ip.clear(); }, problem, "no address"},
        {"port zero", [](Facts& f) { f.port = 0; }, problem, "no usable port"},
        {"port too high", [](Facts& f) { f.port = 65536; }, problem, "no usable port"},
        {"no version", [](Facts& f) { f.lower_version.clear(); }, problem, "lowerversion"},
        {"too old", [](Facts& f) { f.lower_version = "1.4"; }, problem, "wants the plugin in version 1.4"},
        {"refused", [](Facts& f) { f.client.connection = Connection::refused; }, problem,
         "No program listens at 127.0.0.1 port"},
        {"timed out", [](Facts& f) { f.client.connection = Connection::timed_out; }, problem,
         "Nothing answers"},
        {"unknown name", [](Facts& f) { f.client.connection = Connection::unknown_name; }, problem,
         "is not known"},
        {"no 7-Zip", [](Facts& f) { f.seven_zip.exists = false; }, problem, "7z.exe is missing"},
        {"no library", [](Facts& f) { f.seven_zip_library.exists = false; }, problem, "7z.dll is missing"},
        {"blocked", [](Facts& f) { f.seven_zip_run.started = false; }, problem, "cannot be started"},
        {"hangs", [](Facts& f) { f.seven_zip_run.ended = false; }, problem, "does not come to an end"},
        {"fails", [](Facts& f) { f.seven_zip_run.exit_code = 7; }, problem, "ends with code 7"},
        {"in the way", [](Facts& f) { f.in_the_way = {"Tarvo.exe"}; }, problem, "Tarvo.exe would be started"},
        {"folder gone", [](Facts& f) { f.written_folders[0].exists = false; }, warning, "json is not there"},
        {"folder locked", [](Facts& f) { f.written_folders[0].writable = false; }, problem,
         "cannot be written"},
        {"open to all", [](Facts& f) { f.open_to_all = {"7z.exe"}; }, problem, "changed by every user"},
        {"folder is a file",
         [](Facts& f) {
             f.written_folders[0].exists = false;
             f.written_folders[0].is_file = true;
         },
         problem, "json is a file"},
        {"empty prepared script", [](Facts& f) { f.analysis_encrypted.size = 0; }, problem, "is empty"},
        {"no list", [](Facts& f) { f.installed.manifest = ManifestState::missing; }, problem,
         "cannot be recognised"},
        {"damaged list", [](Facts& f) { f.installed.manifest = ManifestState::damaged; }, problem,
         "cannot be recognised"},
        {"no module at all", [](Facts& f) { f.module_image.whole = false; }, problem, "no complete Windows"},
        {"rehearsal", [](Facts& f) { f.module_image.imports.push_back("host_standin.dll"); }, problem,
         "is a rehearsal"},
        {"client silent", [](Facts& f) { f.client.answered = false; }, problem, "gives no answer"},
        {"foreign server", [](Facts& f) { f.client.body = "<html>"; }, problem, "with a web page"},
        {"no answer's text", [](Facts& f) { f.client.body.clear(); }, problem, "without a text"},
        {"another JSON", [](Facts& f) { f.client.body = "[]"; }, problem, "holds no code"},
        {"no JSON", [](Facts& f) { f.client.body = "hello"; }, problem, "a text that is no JSON"},
        {"accepts", [](Facts& f) { f.client.body = "{\"ret\": 10001}"; }, warning, "accepted a request"},
        {"another project", [](Facts& f) { f.client.body = "{\"ret\": 10002}"; }, warning, "code 10002"},
        {"full", [](Facts& f) { f.free_bytes = 499ULL << 20; }, problem, "Only 499 MB"},
        {"damaged document", [](Facts& f) { f.last.document.exists = true; }, problem, "no whole JSON"},
        {"archive gone", [](Facts& f) { f.last.document.exists = f.last.document.readable = true; }, warning,
         "packed scene that belongs to it is not there"},
        {"damaged archive",
         [](Facts& f) {
             f.last.archive.exists = true;
             f.last.archive.test = diagnostics::ArchiveTest::damaged;
         },
         problem, "is damaged: 7-Zip"},
        {"archive too long",
         [](Facts& f) {
             f.last.archive.exists = true;
             f.last.archive.test = diagnostics::ArchiveTest::not_ended;
         },
         warning, "within 600 seconds"},
        {"error at the end of a log",
         [](Facts& f) {
             f.last.channels = {{"qfx_http", "2024-03-07 09:05:02:045 [ERROR] Http read data failed! 12002"}};
         },
         warning, "qfx_http.log ends at 2024-03-07 09:05:02:045"},
        {"nearly full", [](Facts& f) { f.free_bytes = 4999ULL << 20; }, warning, "Only 4999 MB"},
    };
}

std::string said(const Finding& finding, Language language = Language::english) {
    return diagnostics::rendered(finding.what, language);
}

std::vector<Finding> worse_than_fine(const Facts& facts) {
    std::vector<Finding> found;
    for (const Finding& finding : diagnostics::judge(facts)) {
        if (finding.severity != Severity::fine) {
            found.push_back(finding);
        }
    }
    return found;
}

TEST(Findings, CompleteInstallationHasNoWarningOrProblem) {
    EXPECT_TRUE(worse_than_fine(everything_fine()).empty());
    EXPECT_FALSE(diagnostics::has_problem(diagnostics::judge(everything_fine())));
}

TEST(Findings, EachFaultGivesOneFindingWithACure) {
    for (const Fault& fault : faults()) {
        Facts facts = everything_fine();
        fault.make(facts);
        const std::vector<Finding> found = worse_than_fine(facts);
        ASSERT_EQ(found.size(), 1U) << fault.name;
        EXPECT_EQ(found[0].severity, fault.severity) << fault.name;
        EXPECT_NE(said(found[0]).find(fault.part), std::string::npos) << fault.name << ": " << said(found[0]);
        EXPECT_NE(found[0].cure.message, Message::nothing) << fault.name;
    }
}

TEST(Findings, MissingDataFolderHidesFindingsAboutItsContent) {
    Facts facts;
    facts.data_folder = "C:\\Data";
    facts.host = "C:\\Max";
    facts.module = file("module");
    facts.module_image.whole = true;
    facts.package_contents = file("package");
    facts.free_bytes = 6000ULL << 20;
    const std::vector<Finding> found = worse_than_fine(facts);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(said(found[0]), "C:\\Data is missing: Tarvo Rendering is not installed.");
}

TEST(Findings, EachKindOfFileDamageGivesOneFinding) {
    const struct {
        FileState state;
        const char* said;
    } rows[] = {
        {FileState::missing, "licence is missing."},
        {FileState::unreadable, "licence cannot be read."},
        {FileState::empty, "licence is empty: 0 of 10 bytes are there."},
        {FileState::cut, "licence is damaged: 5 of 10 bytes are there."},
        {FileState::changed, "licence is not as it was released: its content was changed or damaged."},
    };
    for (const auto& row : rows) {
        Facts facts = everything_fine();
        facts.installed.damaged = {{"licence", row.state, 5, 10}};
        const std::vector<Finding> found = worse_than_fine(facts);
        ASSERT_EQ(found.size(), 1U) << row.said;
        EXPECT_EQ(said(found[0]), row.said);
    }
}

TEST(Findings, DamagedModuleIsNotReportedAsInstalled) {
    Facts facts = everything_fine();
    facts.installed.damaged = {{"module", FileState::changed, 10, 10}};
    for (const Finding& finding : diagnostics::judge(facts)) {
        EXPECT_NE(finding.what.message, Message::module);
    }
}

TEST(Findings, SummaryBeginsWithTheProblemsInBothLanguages) {
    const std::vector<Finding> findings = {
        {Severity::fine, {Message::prepared, {}}, {}},
        {Severity::warning, {Message::folder_absent, {{"json"}}}, {Message::cure_folder_absent, {}}},
        {Severity::problem, {Message::ip_missing, {}}, {Message::cure_rights, {}}}};
    EXPECT_EQ(
        diagnostics::summary_text(findings, Language::english),
        "PROBLEM  The settings name no address of the desktop client (ip).\r\n"
        "         -> Run the setup of Tarvo Rendering again. It sets the rights.\r\n"
        "warning  json is not there.\r\n"
        "         -> The plugin makes it when it is needed. If jobs or logs are missing, run the setup of "
        "Tarvo Rendering again.\r\n"
        "ok       The analysis script is prepared.\r\n"
        "\r\nProblems: 1, warnings: 1\r\n");
    const std::string chinese = diagnostics::summary_text(findings, Language::chinese);
    EXPECT_EQ(chinese.find("问题  设置中没有桌面客户端的地址（ip）。\r\n"), 0U) << chinese;
    EXPECT_NE(chinese.find("\r\n警告  json 不存在。\r\n"), std::string::npos) << chinese;
    EXPECT_NE(chinese.find("\r\n问题：1，警告：1\r\n"), std::string::npos) << chinese;
}

} // namespace
