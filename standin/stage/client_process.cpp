#include "standin/stage/client_process.h"

#include "standin/base/files_win32.h"
#include "standin/base/json.h"
#include "standin/base/program_win32.h"
#include "standin/base/text.h"

#include <algorithm>
#include <cstdlib>

namespace stage {

namespace {

constexpr DWORD kStartLimitMs = 30000;
constexpr DWORD kStopLimitMs = 5000;
constexpr DWORD kPollMs = 10;

struct ClientOption {
    const char* key;
    const wchar_t* option;
};

// From the scenario's "client".
const ClientOption kOptions[] = {
    {"mode", L" --mode "}, {"code", L" --reply "}, {"body", L" --body "}, {"delay_ms", L" --delay "}};

tarvo::KernelHandle make_job() {
    tarvo::KernelHandle job(::CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    ::SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

} // namespace

bool ClientProcess::start(const std::wstring& program, const Json::Value& wanted, const std::wstring& folder,
                          int port, std::string& problem) {
    stop();
    if (!base::file_exists(program)) {
        problem = base::to_utf8(program) + ": there is no client program";
        return false;
    }
    ready_file_ = base::joined(folder, L"client-ready.txt");
    record_file_ = base::joined(folder, L"client-requests.jsonl");
    stop_file_ = base::joined(folder, L"client-stop.txt");
    ::DeleteFileW(ready_file_.c_str());
    ::DeleteFileW(stop_file_.c_str());
    std::wstring arguments = L"--port " + std::to_wstring(port) + L" --ready " + base::quoted(ready_file_) +
                             L" --record " + base::quoted(record_file_) + L" --stop " +
                             base::quoted(stop_file_);
    for (const ClientOption& known : kOptions) {
        if (wanted.isMember(known.key)) {
            arguments += known.option + base::quoted(base::to_wide(wanted[known.key].asString()));
        }
    }
    // Without this the client gets a console of its own, where each line takes long under Wine.
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    const tarvo::FileHandle nowhere(
        ::CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr));
    base::StartedProgram started = base::start_program(program, arguments, nowhere.get());
    if (!started.process) {
        problem =
            base::to_utf8(program) + ": cannot be started (error " + std::to_string(started.error) + ")";
        return false;
    }
    process_ = std::move(started.process);
    job_ = make_job();
    ::AssignProcessToJobObject(job_.get(), process_.get());
    return wait_until_ready(problem);
}

bool ClientProcess::wait_until_ready(std::string& problem) {
    for (DWORD waited = 0; waited < kStartLimitMs; waited += kPollMs) {
        std::string content;
        if (base::read_file(ready_file_, content) && std::atoi(content.c_str()) > 0) {
            port_ = std::atoi(content.c_str());
            return true;
        }
        if (::WaitForSingleObject(process_.get(), kPollMs) == WAIT_OBJECT_0) {
            problem = "the client program ended before it listened";
            return false;
        }
    }
    problem = "the client program does not listen";
    return false;
}

void ClientProcess::stop() {
    if (!process_) {
        return;
    }
    base::write_file(stop_file_, "stop\n");
    if (::WaitForSingleObject(process_.get(), kStopLimitMs) != WAIT_OBJECT_0) {
        ::TerminateProcess(process_.get(), 1);
        ::WaitForSingleObject(process_.get(), kStopLimitMs);
    }
    process_.reset();
    port_ = 0;
}

void ClientProcess::forget_requests() {
    forgotten_ = static_cast<std::size_t>(base::file_size(record_file_));
}

Json::Value ClientProcess::requests() const {
    Json::Value list(Json::arrayValue);
    std::string content;
    if (record_file_.empty() || !base::read_file(record_file_, content)) {
        return list;
    }
    for (const std::string& line : base::lines_of(content.substr(std::min(forgotten_, content.size())))) {
        Json::Value request = base::parsed_or_null(line);
        request["json"] = base::parsed_or_null(request["body"].asString());
        list.append(request);
    }
    return list;
}

SilentPort::SilentPort() : socket_(base::bind_to_loopback(number_)) {}

} // namespace stage
