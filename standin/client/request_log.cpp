#include "standin/client/request_log.h"

#include "standin/base/json.h"
#include "standin/base/text.h"

#include <cstdio>

namespace client {

namespace {

constexpr size_t kShownBytes = 2048;

// The answer's own words where these are short, its size where they are not.
std::string in_short(const std::string& body) {
    constexpr size_t kOnOneLine = 100;
    return body.size() <= kOnOneLine ? body : std::to_string(body.size()) + " bytes";
}

Json::Value job_record(const Job& job) {
    Json::Value record(Json::objectValue);
    record["scene"] = job.scene;
    record["document"] = job.document;
    record["maxVersion"] = job.max_version;
    record["archive"] = job.archive;
    record["archiveSize"] = static_cast<Json::Int64>(job.archive_size);
    record["archiveEntry"] = job.archive_entry;
    record["archiveEntrySize"] = static_cast<Json::Int64>(job.archive_entry_size);
    record["cameras"] = Json::Value(Json::arrayValue);
    for (const std::string& camera : job.cameras) {
        record["cameras"].append(camera);
    }
    return record;
}

Json::Value check_record(const Check& check) {
    Json::Value record(Json::objectValue);
    record["check"] = check.name;
    record["ok"] = check.ok;
    record["detail"] = check.detail;
    return record;
}

} // namespace

void print_line(const std::string& line) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

bool RequestLog::open_record() {
    return options_.record_file.empty() || record_.open(options_.record_file);
}

void RequestLog::take(const HttpRequest& request) {
    const std::lock_guard<std::mutex> lock(mutex_);
    ++number_;
    const RequestFindings findings = check_request(request, options_.seven_zip);
    if (!options_.record_file.empty() && !record_.append(base::one_line(record_of(request, findings)))) {
        print_line("error: the record could not be written");
    }
    print(request, findings);
}

Json::Value RequestLog::record_of(const HttpRequest& request, const RequestFindings& findings) const {
    Json::Value record(Json::objectValue);
    record["number"] = number_;
    record["mode"] = options_.mode_name;
    record["read"] = request.was_read;
    record["method"] = request.method;
    record["path"] = request.target;
    record["headers"] = Json::Value(Json::objectValue);
    for (const auto& header : request.headers) {
        record["headers"][header.first] = header_value(request, header.first);
    }
    record["body"] = request.body;
    record["job"] = job_record(findings.job);
    record["checks"] = Json::Value(Json::arrayValue);
    for (const Check& check : findings.checks) {
        record["checks"].append(check_record(check));
    }
    record["ok"] = findings.all_ok();
    record["answer"] = answer_record();
    return record;
}

Json::Value RequestLog::answer_record() const {
    if (options_.mode == Mode::close || options_.mode == Mode::silence) {
        return Json::Value();
    }
    Json::Value record(Json::objectValue);
    record["status"] = answer_.status;
    record["bytes"] = static_cast<Json::UInt64>(answer_.body.size());
    if (answer_.body.size() <= kShownBytes) {
        record["body"] = answer_.body;
    }
    return record;
}

void RequestLog::print(const HttpRequest& request, const RequestFindings& findings) const {
    const std::string number = "request " + std::to_string(number_) + ": ";
    if (!request.was_read) {
        print_line(number + "closed without reading it");
        return;
    }
    print_line(number + request.method + " " + request.target + ", " + std::to_string(request.body.size()) +
               " bytes");
    const Job& job = findings.job;
    if (!job.document.empty()) {
        print_line("  scene     " + job.scene + " (" + job.max_version + ")");
        print_line("  document  " + job.document);
        print_line("  cameras   " + (job.cameras.empty() ? "none" : base::comma_list(job.cameras)));
        print_line("  archive   " + job.archive + " (" + std::to_string(job.archive_size) + " bytes)");
    }
    for (const Check& check : findings.checks) {
        if (!check.ok) {
            print_line("  WRONG     " + check.name + ": " + check.detail);
        }
    }
    print_line("  checks    " + std::to_string(findings.checks.size()) +
               (findings.all_ok() ? ", all fine" : ""));
    const bool answers = options_.mode != Mode::silence;
    print_line("  answer    " +
               (answers ? std::to_string(answer_.status) + " " + in_short(answer_.body) : "none") +
               " (mode " + options_.mode_name + ")");
}

} // namespace client
