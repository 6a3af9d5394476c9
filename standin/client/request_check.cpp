#include "standin/client/request_check.h"

#include "standin/base/files_win32.h"
#include "standin/base/json.h"
#include "standin/base/text.h"
#include "standin/client/archive_check.h"

namespace client {

namespace {

constexpr const char* kContentType = "application/json;charset=utf-8";
constexpr const char* kUserAgent = "A WinHTTP Program For Marrowby/1.0";
constexpr const char* kMembers[] = {"compressPath", "filePath", "maxVersion", "scenePath"};
constexpr size_t kDocumentLimit = 64 * 1024 * 1024;

class Examination {
public:
    Examination(const HttpRequest& request, const std::wstring& seven_zip, RequestFindings& findings)
        : request_(request), seven_zip_(seven_zip), findings_(findings) {}

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
    RequestFindings& findings_;
};

bool Examination::note(const char* name, bool ok, const std::string& detail) {
    findings_.checks.push_back(Check{name, ok, detail});
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
    findings_.job.archive = root["compressPath"].asString();
    findings_.job.document = root["filePath"].asString();
    findings_.job.max_version = root["maxVersion"].asString();
    findings_.job.scene = root["scenePath"].asString();
    return true;
}

void Examination::look_at_document() {
    std::wstring path;
    if (!existing_file("document", findings_.job.document, path)) {
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
    compare("document-name", findings_.job.scene, name.isString() ? name.asString() : "(not a text)");
    list_cameras(document);
}

void Examination::list_cameras(const Json::Value& document) {
    const Json::Value& cameras = document["cameras"];
    if (cameras.isArray()) {
        for (const Json::Value& camera : cameras) {
            const bool named = camera.isObject() && camera["name"].isString();
            findings_.job.cameras.push_back(named ? camera["name"].asString() : "(without a name)");
        }
    }
    // A job without a camera is the sender's business; it only is worth a line.
    note("cameras", true, findings_.job.cameras.empty() ? "none" : base::comma_list(findings_.job.cameras));
}

void Examination::look_at_archive() {
    std::wstring path;
    if (!existing_file("archive", findings_.job.archive, path)) {
        return;
    }
    findings_.job.archive_size = base::file_size(path);
    if (!base::file_exists(seven_zip_)) {
        note("archive-test", false, "cannot be tested, there is no '" + base::to_utf8(seven_zip_) + "'");
        return;
    }
    const ArchiveFindings archive = examine_archive(seven_zip_, path);
    if (!archive.program_ran) {
        note("archive-test", false, "'" + base::to_utf8(seven_zip_) + "' does not start");
        return;
    }
    const bool whole = archive.test_exit_code == 0;
    const std::string code = "7z t ended with " + std::to_string(archive.test_exit_code);
    if (note("archive-test", whole, whole ? code : code + ": " + base::collapsed(archive.test_output))) {
        look_at_entries(archive.entries);
    }
}

void Examination::look_at_entries(const std::vector<ArchiveEntry>& entries) {
    if (entries.size() != 1) {
        note("archive-entry", false, "one entry expected, got " + std::to_string(entries.size()));
        return;
    }
    findings_.job.archive_entry = entries[0].name;
    findings_.job.archive_entry_size = entries[0].size;
    const std::wstring scene = base::to_wide(findings_.job.scene);
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
    existing_file("scene", findings_.job.scene, scene);
    look_at_document();
    look_at_archive();
}

} // namespace

bool RequestFindings::all_ok() const {
    for (const Check& check : checks) {
        if (!check.ok) {
            return false;
        }
    }
    return !checks.empty();
}

RequestFindings check_request(const HttpRequest& request, const std::wstring& seven_zip) {
    RequestFindings findings;
    if (request.was_read) {
        Examination(request, seven_zip, findings).run();
    }
    return findings;
}

} // namespace client
