// What the setup laid down: module, list of files, scripts, 7-Zip.
#include "packaging/diagnostics/findings.h"

#include <algorithm>

namespace diagnostics {

namespace {

const Sentence kReinstall = {Message::cure_reinstall, {}};

class Judge {
public:
    Judge(const Facts& facts, Findings& findings) : facts_(facts), findings_(findings) {}

    void run();

private:
    bool there(const FileFact& file, Message missing);
    bool is_damaged(const FileFact& file) const;

    void system();
    void module();
    void files();
    void damaged(const DamagedFile& file);
    void scripts();
    void prepared_script();
    void seven_zip();

    const Facts& facts_;
    Findings& findings_;
};

bool Judge::there(const FileFact& file, Message missing) {
    if (!file.exists) {
        findings_.problem({missing, {{file.path}}}, kReinstall);
    }
    return file.exists;
}

// files() names it already.
bool Judge::is_damaged(const FileFact& file) const {
    const std::vector<DamagedFile>& damaged = facts_.installed.damaged;
    return std::any_of(damaged.begin(), damaged.end(),
                       [&file](const DamagedFile& other) { return other.path == file.path; });
}

void Judge::system() {
    findings_.fine(Message::windows, {{facts_.windows}});
    if (facts_.host.empty()) {
        findings_.warning({Message::host_absent, {}}, {Message::cure_host_absent, {}});
    } else {
        findings_.fine(Message::host, {{facts_.host}});
    }
}

void Judge::module() {
    const FileFact& module = facts_.module;
    const bool module_there = there(module, Message::module_missing);
    const bool package_there = there(facts_.package_contents, Message::package_missing);
    if (!module_there || is_damaged(module)) {
        return;
    }
    if (!facts_.module_image.whole) {
        findings_.problem({Message::module_is_none, {{module.path}}}, kReinstall);
    } else if (!stand_in(facts_.module_image).empty()) {
        findings_.problem({Message::module_rehearsal, {{module.path}, {stand_in(facts_.module_image)}}},
                          {Message::cure_rehearsal, {}});
    } else if (package_there && !is_damaged(facts_.package_contents)) {
        findings_.fine(Message::module, {{facts_.module_version}, {module.path}});
    }
}

void Judge::damaged(const DamagedFile& file) {
    const std::string size = std::to_string(file.size);
    const std::string listed = std::to_string(file.listed_size);
    switch (file.state) {
    case FileState::whole:
        break;
    case FileState::missing: {
        // The more important ones have a sentence of their own.
        const auto is_it = [&file](const FileFact& other) { return other.path == file.path; };
        const bool named = is_it(facts_.module) || is_it(facts_.package_contents) ||
                           is_it(facts_.prepare_script) || is_it(facts_.analysis_source) ||
                           is_it(facts_.seven_zip) || is_it(facts_.seven_zip_library) ||
                           std::any_of(facts_.virus_scripts.begin(), facts_.virus_scripts.end(), is_it);
        if (!named) {
            findings_.problem({Message::file_missing, {{file.path}}}, kReinstall);
        }
        break;
    }
    case FileState::unreadable:
        findings_.problem({Message::file_unreadable, {{file.path}}}, {Message::cure_file_unreadable, {}});
        break;
    case FileState::empty:
        findings_.problem({Message::file_empty, {{file.path}, {listed}}}, kReinstall);
        break;
    case FileState::cut:
        findings_.problem({Message::file_cut, {{file.path}, {size}, {listed}}}, kReinstall);
        break;
    case FileState::changed:
        findings_.problem({Message::file_changed, {{file.path}}}, kReinstall);
        break;
    }
}

void Judge::files() {
    const InstalledFiles& installed = facts_.installed;
    if (installed.manifest != ManifestState::read) {
        const bool missing = installed.manifest == ManifestState::missing;
        findings_.problem(
            {missing ? Message::list_missing : Message::list_damaged, {{installed.manifest_path}}},
            kReinstall);
        return;
    }
    for (const DamagedFile& file : installed.damaged) {
        damaged(file);
    }
    if (installed.damaged.empty()) {
        findings_.fine(Message::files_whole, {{std::to_string(installed.count)}});
    }
}

void Judge::prepared_script() {
    const FileFact& prepared = facts_.analysis_encrypted;
    if (!prepared.exists) {
        findings_.warning({Message::prepared_absent, {{prepared.path}}}, {Message::cure_prepared_absent, {}});
    } else if (prepared.size == 0) {
        findings_.problem({Message::prepared_empty, {{prepared.path}}}, {Message::cure_prepare_again, {}});
    } else if (facts_.analysis_is_stale) {
        findings_.problem({Message::prepared_stale, {{prepared.path}}}, {Message::cure_prepare_again, {}});
    } else {
        findings_.fine(Message::prepared);
    }
}

void Judge::scripts() {
    const bool source = there(facts_.analysis_source, Message::source_missing);
    const bool prepares = there(facts_.prepare_script, Message::prepare_missing);
    // Without its source the cure above comes first; the same for a source that is damaged.
    if (source && prepares && !is_damaged(facts_.analysis_source)) {
        prepared_script();
    }
    bool complete = true;
    for (const FileFact& script : facts_.virus_scripts) {
        complete = there(script, Message::virus_missing) && complete;
    }
    if (complete) {
        findings_.fine(Message::virus_there);
    }
}

void Judge::seven_zip() {
    const bool program = there(facts_.seven_zip, Message::seven_zip_missing);
    const bool library = there(facts_.seven_zip_library, Message::seven_zip_missing);
    if (!program || !library || is_damaged(facts_.seven_zip) || is_damaged(facts_.seven_zip_library)) {
        return;
    }
    const SevenZipFact& run = facts_.seven_zip_run;
    const Sentence cure = {Message::cure_seven_zip, {}};
    const std::string& path = facts_.seven_zip.path;
    if (!run.started) {
        findings_.problem({Message::seven_zip_not_started, {{path}}}, cure);
    } else if (!run.ended) {
        findings_.problem({Message::seven_zip_not_ended, {{path}}}, cure);
    } else if (run.exit_code != 0) {
        findings_.problem({Message::seven_zip_failed, {{path}, {std::to_string(run.exit_code)}}}, cure);
    } else {
        findings_.fine(Message::seven_zip_runs, {{run.first_line}});
    }
}

void Judge::run() {
    system();
    module();
    if (!facts_.has_data_folder) {
        findings_.problem({Message::data_missing, {{facts_.data_folder}}}, kReinstall);
    } else {
        files();
        scripts();
        seven_zip();
    }
    for (const std::string& path : facts_.in_the_way) {
        findings_.problem({Message::in_the_way, {{path}}}, {Message::cure_in_the_way, {}});
    }
}

} // namespace

void judge_installation(const Facts& facts, Findings& findings) {
    Judge(facts, findings).run();
}

} // namespace diagnostics
