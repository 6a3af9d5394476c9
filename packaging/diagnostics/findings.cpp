#include "packaging/diagnostics/findings.h"

#include <algorithm>

namespace diagnostics {

namespace {

constexpr unsigned long long kMegabyte = 1024ULL * 1024;
constexpr unsigned long long kTooLittleMb = 500;
constexpr unsigned long long kLittleMb = 5000;
constexpr int kLargestPort = 65535;
const std::string kReinstall = "Run the setup of Tarvo Rendering again.";

class Judge {
public:
    explicit Judge(const Facts& facts) : facts_(facts) {}

    std::vector<Finding> run();

private:
    void fine(const std::string& what) { add(Severity::fine, what, std::string()); }
    void add(Severity severity, const std::string& what, const std::string& cure) {
        findings_.push_back({severity, what, cure});
    }
    bool there(const FileFact& file, const std::string& consequence);

    void system();
    void module();
    void scripts();
    void settings();
    void client();
    void seven_zip();
    void in_the_way();
    void folders();
    void rights();
    void space();

    const Facts& facts_;
    std::vector<Finding> findings_;
};

bool Judge::there(const FileFact& file, const std::string& consequence) {
    if (!file.exists) {
        add(Severity::problem, file.path + " is missing: " + consequence, kReinstall);
    }
    return file.exists;
}

void Judge::system() {
    fine("Windows " + facts_.windows);
    if (facts_.host.empty()) {
        add(Severity::warning, "3ds Max 2019 is not registered on this computer.",
            "Install 3ds Max 2019; the plugin works with no other version.");
    } else {
        fine("3ds Max 2019 is in " + facts_.host);
    }
}

void Judge::module() {
    const bool module_there = there(facts_.module, "3ds Max has no plugin to load.");
    const bool package_there = there(facts_.package_contents, "3ds Max does not look for the plugin.");
    if (module_there && package_there) {
        fine("The plugin " + facts_.module_version + " is installed: " + facts_.module.path);
    }
}

void Judge::scripts() {
    const bool source = there(facts_.analysis_source, "the analysis script cannot be prepared.");
    const bool prepares = there(facts_.prepare_script, "3ds Max does not prepare the analysis script.");
    if (!facts_.analysis_encrypted.exists) {
        // Without its source the cure above comes first.
        if (source && prepares) {
            add(Severity::warning, facts_.analysis_encrypted.path + " is not there yet.",
                "Start 3ds Max 2019 once: it makes the file. If it stays away, look into the MAXScript "
                "Listener (F11) for the reason.");
        }
    } else if (source && facts_.analysis_is_stale) {
        add(Severity::problem,
            facts_.analysis_encrypted.path +
                " was made from another version of the script than the one that is "
                "there: scenes are analysed by that version.",
            "Close 3ds Max, delete the file as an administrator and start 3ds Max again.");
    } else {
        fine("The analysis script is prepared.");
    }
    bool complete = true;
    for (const FileFact& script : facts_.virus_scripts) {
        complete = there(script, "scenes cannot be checked for script viruses.") && complete;
    }
    if (complete) {
        fine("The scripts that check for viruses are there.");
    }
}

void Judge::settings() {
    const std::string cure = "Start the desktop client and log in once, or set the value by hand (as an "
                             "administrator): " +
                             facts_.ini.path;
    if (!facts_.ini.exists) {
        add(Severity::problem, facts_.ini.path + " is missing: the plugin does not know the desktop client.",
            kReinstall);
        return;
    }
    if (facts_.ip.empty()) {
        add(Severity::problem, "The settings name no address of the desktop client (ip).", cure);
    }
    if (facts_.port < 1 || facts_.port > kLargestPort) {
        add(Severity::problem,
            "The settings name no usable port of the desktop client (port is \"" + facts_.port_text + "\").",
            cure);
    }
    if (facts_.lower_version.empty()) {
        add(Severity::problem, "The settings name no lowest plugin version (lowerversion).", cure);
    } else if (!facts_.module_version.empty() && facts_.lower_version > facts_.module_version) {
        // The plugin compares the texts in the same way.
        add(Severity::problem,
            "The desktop client wants the plugin in version " + facts_.lower_version + " or later.",
            "Install a newer version of Tarvo Rendering.");
    }
}

void Judge::client() {
    const std::string place = facts_.ip + " port " + std::to_string(facts_.port);
    const std::string cure =
        "Start the desktop client and log in. If it is running, compare its port with the "
        "one in " +
        facts_.ini.path + ".";
    switch (facts_.client) {
    case Connection::not_tried:
        break;
    case Connection::reached:
        fine("The desktop client answers at " + place + ".");
        break;
    case Connection::refused:
        add(Severity::problem, "No program listens at " + place + ": jobs cannot be sent.", cure);
        break;
    case Connection::timed_out:
        add(Severity::problem, "Nothing answers at " + place + " in time: jobs cannot be sent.",
            cure + " A firewall may also be in between.");
        break;
    case Connection::unknown_name:
        add(Severity::problem, "The address \"" + facts_.ip + "\" of the desktop client is not known.",
            "Correct ip in " + facts_.ini.path + "; it is usually 127.0.0.1.");
        break;
    }
}

void Judge::seven_zip() {
    const bool program = there(facts_.seven_zip, "scenes cannot be packed.");
    const bool library = there(facts_.seven_zip_library, "scenes cannot be packed.");
    if (!program || !library) {
        return;
    }
    const SevenZipFact& run = facts_.seven_zip_run;
    if (!run.started || !run.ended || run.exit_code != 0) {
        const std::string how = !run.started ? "cannot be started"
                                : !run.ended ? "does not come to an end"
                                             : "ends with code " + std::to_string(run.exit_code);
        add(Severity::problem, facts_.seven_zip.path + " " + how + ": scenes cannot be packed.",
            kReinstall + " If it stays so, ask whether a virus scanner or a policy blocks the program.");
        return;
    }
    fine("7-Zip runs: " + run.first_line);
}

void Judge::in_the_way() {
    for (const std::string& path : facts_.in_the_way) {
        add(Severity::problem,
            path + " would be started in place of 7-Zip, because of its name and place. Any user may have "
                   "put it "
                   "there.",
            "Do not submit. Have an administrator look at the file, and move or delete it.");
    }
}

void Judge::folders() {
    if (!facts_.has_data_folder) {
        add(Severity::problem, facts_.data_folder + " is missing: Tarvo Rendering is not installed.",
            kReinstall);
        return;
    }
    for (const FolderFact& folder : facts_.written_folders) {
        if (!folder.exists) {
            add(Severity::warning, folder.path + " is not there.", kReinstall);
        } else if (!folder.writable) {
            add(Severity::problem,
                folder.path + " cannot be written by you: documents, packed scenes or logs get lost.",
                kReinstall + " It sets the rights.");
        } else {
            fine(folder.path + " can be written.");
        }
    }
}

void Judge::rights() {
    for (const std::string& path : facts_.open_to_all) {
        add(Severity::problem, path + " can be changed by every user of this computer.",
            kReinstall + " It sets the rights.");
    }
}

void Judge::space() {
    const unsigned long long megabytes = facts_.free_bytes / kMegabyte;
    const std::string text = std::to_string(megabytes) + " MB are free for packed scenes.";
    if (megabytes < kTooLittleMb) {
        add(Severity::problem, "Only " + text, "Free disk space, or empty the folder compress.");
    } else if (megabytes < kLittleMb) {
        add(Severity::warning, "Only " + text, "Large scenes may not fit. Free disk space.");
    } else {
        fine(text);
    }
}

std::vector<Finding> Judge::run() {
    system();
    module();
    folders();
    if (facts_.has_data_folder) {
        scripts();
        settings();
        client();
        seven_zip();
    }
    in_the_way();
    rights();
    space();
    return findings_;
}

const char* label(Severity severity) {
    return severity == Severity::problem   ? "PROBLEM  "
           : severity == Severity::warning ? "warning  "
                                           : "ok       ";
}

std::size_t count(const std::vector<Finding>& findings, Severity severity) {
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(),
                      [severity](const Finding& finding) { return finding.severity == severity; }));
}

} // namespace

std::vector<Finding> judge(const Facts& facts) {
    return Judge(facts).run();
}

std::string summary_text(const std::vector<Finding>& findings) {
    std::string text;
    for (Severity severity : {Severity::problem, Severity::warning, Severity::fine}) {
        for (const Finding& finding : findings) {
            if (finding.severity != severity) {
                continue;
            }
            text += label(severity) + finding.what + "\r\n";
            if (!finding.cure.empty()) {
                text += "         -> " + finding.cure + "\r\n";
            }
        }
    }
    return text + "\r\n" + "Problems: " + std::to_string(count(findings, Severity::problem)) +
           ", warnings: " + std::to_string(count(findings, Severity::warning)) + "\r\n";
}

bool has_problem(const std::vector<Finding>& findings) {
    return count(findings, Severity::problem) != 0;
}

} // namespace diagnostics
