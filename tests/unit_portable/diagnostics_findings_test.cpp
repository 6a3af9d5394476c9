#include "packaging/diagnostics/findings.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using diagnostics::Connection;
using diagnostics::Facts;
using diagnostics::FileFact;
using diagnostics::Finding;
using diagnostics::Severity;

FileFact file(const char* path) {
    FileFact fact;
    fact.path = path;
    fact.exists = true;
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
    facts.client = Connection::reached;
    facts.free_bytes = 6000ULL * 1024 * 1024;
    return facts;
}

struct Fault {
    const char* name;
    std::function<void(Facts&)> make;
    Severity severity;
    const char* part; // of what the finding says
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
        {"refused", [](Facts& f) { f.client = Connection::refused; }, problem,
         "No program listens at 127.0.0.1 port"},
        {"timed out", [](Facts& f) { f.client = Connection::timed_out; }, problem, "Nothing answers"},
        {"unknown name", [](Facts& f) { f.client = Connection::unknown_name; }, problem, "is not known"},
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
        {"full", [](Facts& f) { f.free_bytes = 499ULL << 20; }, problem, "Only 499 MB"},
        {"nearly full", [](Facts& f) { f.free_bytes = 4999ULL << 20; }, warning, "Only 4999 MB"},
    };
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

TEST(Findings, NothingIsWrongWithAWholeInstallation) {
    EXPECT_TRUE(worse_than_fine(everything_fine()).empty());
    EXPECT_FALSE(diagnostics::has_problem(diagnostics::judge(everything_fine())));
}

TEST(Findings, EveryFaultIsNamedOnceWithACure) {
    for (const Fault& fault : faults()) {
        Facts facts = everything_fine();
        fault.make(facts);
        const std::vector<Finding> found = worse_than_fine(facts);
        ASSERT_EQ(found.size(), 1U) << fault.name;
        EXPECT_EQ(found[0].severity, fault.severity) << fault.name;
        EXPECT_NE(found[0].what.find(fault.part), std::string::npos) << fault.name << ": " << found[0].what;
        EXPECT_FALSE(found[0].cure.empty()) << fault.name;
    }
}

TEST(Findings, WithoutTheDataFolderItsContentIsNotComplainedAbout) {
    Facts facts;
    facts.data_folder = "C:\\Data";
    facts.host = "C:\\Max";
    facts.module = file("module");
    facts.package_contents = file("package");
    facts.free_bytes = 6000ULL << 20;
    const std::vector<Finding> found = worse_than_fine(facts);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].what, "C:\\Data is missing: Tarvo Rendering is not installed.");
}

TEST(Findings, TheSummaryBeginsWithTheProblems) {
    const std::vector<Finding> findings = {
        {Severity::fine, "good", ""}, {Severity::warning, "hm", "look"}, {Severity::problem, "bad", "mend"}};
    EXPECT_EQ(diagnostics::summary_text(findings), "PROBLEM  bad\r\n         -> mend\r\n"
                                                   "warning  hm\r\n         -> look\r\n"
                                                   "ok       good\r\n"
                                                   "\r\nProblems: 1, warnings: 1\r\n");
}

} // namespace
