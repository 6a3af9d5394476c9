#include "standin/client/request_check.h"

#include "standin/base/files_win32.h"
#include "standin/base/json.h"
#include "standin/base/program_win32.h"
#include "standin/base/text.h"

#include <cstdlib>
#include <sstream>

namespace client {

namespace {

constexpr const char* kContentType = "application/json;charset=utf-8";
constexpr const char* kUserAgent = "A WinHTTP Program For Marrowby/1.0";
constexpr const char* kMembers[] = {"compressPath", "filePath", "maxVersion", "scenePath"};
constexpr std::size_t kDocumentLimit = 64 * 1024 * 1024;

struct ArchiveEntry {
    std::string name; // UTF-8
    long long size = 0;
};

struct ArchiveFindings {
    base::ProgramResult test;
    std::vector<ArchiveEntry> entries;
};

bool take_field(const std::string& line, const std::string& key, std::string& value) {
    const std::string start = key + " = ";
    if (line.compare(0, start.size(), start) != 0) {
        return false;
    }
    value = line.substr(start.size());
    return true;
}

// The entries of what "7z l -slt" prints.
std::vector<ArchiveEntry> entries_of_listing(const std::string& listing) {
    std::vector<ArchiveEntry> entries;
    bool in_entries = false; // above the line of hyphens are the archive's own properties
    for (const std::string& line : base::lines_of(listing)) {
        std::string value;
        if (line == "----------") {
            in_entries = true;
        } else if (in_entries && take_field(line, "Path", value)) {
            entries.emplace_back();
            entries.back().name = value;
        } else if (!entries.empty() && take_field(line, "Size", value)) {
            entries.back().size = std::strtoll(value.c_str(), nullptr, 10);
        }
    }
    return entries;
}

// An archive with the same bytes as the last one is not tested again: a sweep sends the same one each time.
ArchiveFindings examine_archive(const std::wstring& seven_zip, const std::wstring& archive) {
    static std::string last_content;
    static ArchiveFindings last;
    std::string content;
    const bool readable = base::read_file(archive, content);
    if (readable && !last_content.empty() && content == last_content) {
        return last;
    }
    ArchiveFindings findings;
    // After "--" a path that begins with a hyphen is a path; a Windows path cannot hold a quote.
    const std::wstring common = L" -bd -sccUTF-8 -- \"" + archive + L"\"";
    findings.test = base::run_program(seven_zip, L"t" + common);
    if (findings.test.started && findings.test.exit_code == 0) {
        findings.entries = entries_of_listing(base::run_program(seven_zip, L"l -slt" + common).output);
        last_content = readable ? content : std::string();
        last = findings;
    }
    return findings;
}

class Examination {
public:
    Examination(const HttpRequest& request, const std::wstring& seven_zip, Json::Value& record)
        : request_(request), seven_zip_(seven_zip), checks_(record["checks"]), job_(record["job"]) {}

    void run();

private:
    bool note(const char* name, bool ok, const std::string& detail);
    void compare(const char* name, const std::string& expected, const std::string& actual);
    bool existing_file(const char* name, const std::string& path, std::wstring& wide);

    void look_at_head();
    bool look_at_body();
    void look_at_document();
    void list_cameras(const Json::Value& document);
    void look_at_archive();
    void look_at_entries(const std::vector<ArchiveEntry>& entries);

    const HttpRequest& request_;
    const std::wstring& seven_zip_;
    Json::Value& checks_;
    Json::Value& job_;
};

bool Examination::note(const char* name, bool ok, const std::string& detail) {
    Json::Value check(Json::objectValue);
    check["check"] = name;
    check["ok"] = ok;
    check["detail"] = detail;
    checks_.append(check);
    return ok;
}

void Examination::compare(const char* name, const std::string& expected, const std::string& actual) {
    const bool same = expected == actual;
    note(name, same, same ? actual : "expected '" + expected + "', got '" + actual + "'");
}

bool Examination::existing_file(const char* name, const std::string& path, std::wstring& wide) {
    if (!base::is_utf8(path)) {
        return note(name, false, "the path is not UTF-8");
    }
    wide = base::to_wide(path);
    const bool exists = base::file_exists(wide);
    return note(name, exists, exists ? path : "there is no file '" + path + "'");
}

void Examination::look_at_head() {
    compare("method", "POST", request_.method);
    compare("path", "/", request_.target);
    compare("content-type", kContentType, header_value(request_, "Content-Type"));
    compare("user-agent", kUserAgent, header_value(request_, "User-Agent"));
    compare("content-length", std::to_string(request_.body.size()), header_value(request_, "Content-Length"));
}

bool Examination::look_at_body() {
    Json::Value root;
    std::string problem;
    if (!base::parse_strictly(request_.body, root, problem)) {
        return note("body", false, "not JSON: " + problem);
    }
    if (!root.isObject()) {
        return note("body", false, "JSON, but not an object");
    }
    const std::vector<std::string> members = base::members_as_written(root);
    const std::vector<std::string> expected(std::begin(kMembers), std::end(kMembers));
    bool ok = note("body-members", members == expected, "in this order: " + base::comma_list(members));
    for (const char* name : kMembers) {
        ok = root.isMember(name) && root[name].isString() && ok;
    }
    if (!note("body", ok,
              ok ? "four texts"
                 : "not the four members compressPath, filePath, maxVersion and "
                   "scenePath as texts, in this order")) {
        return false;
    }
    job_["archive"] = root["compressPath"];
    job_["document"] = root["filePath"];
    job_["maxVersion"] = root["maxVersion"];
    job_["scene"] = root["scenePath"];
    return true;
}

void Examination::look_at_document() {
    std::wstring path;
    if (!existing_file("document", job_["document"].asString(), path)) {
        return;
    }
    std::string text;
    if (!base::read_file(path, text, kDocumentLimit)) {
        note("document-json", false, "cannot be read");
        return;
    }
    Json::Value document;
    std::string problem;
    const bool good = base::parse_strictly(text, document, problem) && document.isObject();
    if (!note("document-json", good,
              good ? std::to_string(text.size()) + " bytes" : "not a JSON object: " + problem)) {
        return;
    }
    const Json::Value& name = document["name"];
    compare("document-name", job_["scene"].asString(), name.isString() ? name.asString() : "(not a text)");
    list_cameras(document);
}

void Examination::list_cameras(const Json::Value& document) {
    const Json::Value& cameras = document["cameras"];
    std::vector<std::string> names;
    if (cameras.isArray()) {
        for (const Json::Value& camera : cameras) {
            const bool named = camera.isObject() && camera["name"].isString();
            names.push_back(named ? camera["name"].asString() : "(without a name)");
            job_["cameras"].append(names.back());
        }
    }
    // A job without a camera is valid.
    note("cameras", true, names.empty() ? "none" : base::comma_list(names));
}

void Examination::look_at_archive() {
    std::wstring path;
    if (!existing_file("archive", job_["archive"].asString(), path)) {
        return;
    }
    job_["archiveSize"] = static_cast<Json::Int64>(base::file_size(path));
    if (!base::file_exists(seven_zip_)) {
        note("archive-test", false, "cannot be tested, there is no '" + base::to_utf8(seven_zip_) + "'");
        return;
    }
    const ArchiveFindings archive = examine_archive(seven_zip_, path);
    if (!archive.test.started) {
        note("archive-test", false, "'" + base::to_utf8(seven_zip_) + "' does not start");
        return;
    }
    const bool whole = archive.test.exit_code == 0;
    const std::string code = "7z t ended with " + std::to_string(archive.test.exit_code);
    if (note("archive-test", whole, whole ? code : code + ": " + base::collapsed(archive.test.output))) {
        look_at_entries(archive.entries);
    }
}

void Examination::look_at_entries(const std::vector<ArchiveEntry>& entries) {
    if (entries.size() != 1) {
        note("archive-entry", false, "one entry expected, got " + std::to_string(entries.size()));
        return;
    }
    job_["archiveEntry"] = entries[0].name;
    job_["archiveEntrySize"] = static_cast<Json::Int64>(entries[0].size);
    const std::wstring scene = base::to_wide(job_["scene"].asString());
    compare("archive-entry", base::to_utf8(base::name_of(scene)), entries[0].name);
    if (base::file_exists(scene)) {
        compare("archive-entry-size", std::to_string(base::file_size(scene)),
                std::to_string(entries[0].size));
    }
}

void Examination::run() {
    look_at_head();
    if (!look_at_body()) {
        return;
    }
    std::wstring scene;
    existing_file("scene", job_["scene"].asString(), scene);
    look_at_document();
    look_at_archive();
}

} // namespace

std::string header_value(const HttpRequest& request, const std::string& name) {
    std::string value;
    for (const auto& header : request.headers) {
        if (base::equal_ignoring_case(header.first, name)) {
            value += (value.empty() ? "" : ", ") + header.second;
        }
    }
    return value;
}

bool parse_request_head(const std::string& head, HttpRequest& request) {
    std::istringstream lines(head);
    std::string version;
    lines >> request.method >> request.target >> version;
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        line = line.substr(0, line.find('\r'));
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos) {
            return false;
        }
        const std::size_t value = line.find_first_not_of(" \t", colon + 1);
        request.headers.emplace_back(line.substr(0, colon),
                                     value == std::string::npos ? std::string() : line.substr(value));
    }
    return version.compare(0, 5, "HTTP/") == 0;
}

Json::Value check_request(const HttpRequest& request, const std::wstring& seven_zip) {
    Json::Value record(Json::objectValue);
    record["checks"] = Json::Value(Json::arrayValue);
    Json::Value& job = record["job"];
    for (const char* text : {"scene", "document", "maxVersion", "archive", "archiveEntry"}) {
        job[text] = "";
    }
    job["archiveSize"] = -1;
    job["archiveEntrySize"] = -1;
    job["cameras"] = Json::Value(Json::arrayValue);
    if (request.was_read) {
        Examination(request, seven_zip, record).run();
    }
    bool ok = !record["checks"].empty();
    for (const Json::Value& check : record["checks"]) {
        ok = ok && check["ok"].asBool();
    }
    record["ok"] = ok;
    return record;
}

} // namespace client
