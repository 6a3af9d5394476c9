#include <winsock2.h>

#include "standin/stage/client_process.h"

#include "standin/stage/files.h"
#include "standin/stage/json_read.h"
#include "standin/stage/wide_text.h"

#include <cstdlib>
#include <vector>

namespace stage {

namespace {

constexpr DWORD kStartLimitMs = 30000;
constexpr DWORD kStopLimitMs = 5000;
constexpr DWORD kPollMs = 10;

// As CommandLineToArgvW reads it back.
std::wstring quoted(const std::wstring& argument) {
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (wchar_t character : argument) {
        if (character == L'"') {
            text.append(backslashes + 1, L'\\');
        }
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        text += character;
    }
    text.append(backslashes, L'\\');
    return text + L"\"";
}

std::vector<std::wstring> client_options(const Json::Value& wanted) {
    std::vector<std::wstring> options;
    const std::string mode = wanted.get("mode", "reply").asString();
    options.insert(options.end(), {L"--mode", to_wide(mode)});
    if (wanted.isMember("code")) {
        options.insert(options.end(), {L"--reply", to_wide(wanted["code"].asString())});
    }
    if (wanted.isMember("body")) {
        options.insert(options.end(), {L"--body", to_wide(wanted["body"].asString())});
    }
    if (wanted.isMember("delay_ms")) {
        options.insert(options.end(), {L"--delay", to_wide(wanted["delay_ms"].asString())});
    }
    return options;
}

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
    if (!file_exists(program)) {
        problem = to_utf8(program) + ": there is no client program";
        return false;
    }
    ready_file_ = joined(folder, L"client-ready.txt");
    record_file_ = joined(folder, L"client-requests.jsonl");
    stop_file_ = joined(folder, L"client-stop.txt");
    ::DeleteFileW(ready_file_.c_str());
    ::DeleteFileW(stop_file_.c_str());
    std::wstring command = quoted(program) + L" --port " + std::to_wstring(port) + L" --ready " +
                           quoted(ready_file_) + L" --record " + quoted(record_file_) + L" --stop " +
                           quoted(stop_file_);
    for (const std::wstring& option : client_options(wanted)) {
        command += L" " + quoted(option);
    }
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information = {};
    if (::CreateProcessW(program.c_str(), &command[0], nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                         nullptr, &startup, &information) == FALSE) {
        problem = to_utf8(program) + ": cannot be started (error " + std::to_string(::GetLastError()) + ")";
        return false;
    }
    const tarvo::KernelHandle thread(information.hThread);
    process_.reset(information.hProcess);
    job_ = make_job();
    ::AssignProcessToJobObject(job_.get(), process_.get());
    return wait_until_ready(problem);
}

bool ClientProcess::wait_until_ready(std::string& problem) {
    for (DWORD waited = 0; waited < kStartLimitMs; waited += kPollMs) {
        std::string content;
        if (read_file(ready_file_, content) && std::atoi(content.c_str()) > 0) {
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
    write_file(stop_file_, "stop\n");
    if (::WaitForSingleObject(process_.get(), kStopLimitMs) != WAIT_OBJECT_0) {
        ::TerminateProcess(process_.get(), 1);
        ::WaitForSingleObject(process_.get(), kStopLimitMs);
    }
    process_.reset();
    port_ = 0;
}

Json::Value ClientProcess::requests() const {
    Json::Value list(Json::arrayValue);
    std::string content;
    if (record_file_.empty() || !read_file(record_file_, content)) {
        return list;
    }
    std::size_t from = 0;
    while (from < content.size()) {
        const std::size_t end = content.find('\n', from);
        Json::Value request =
            parsed_or_null(content.substr(from, end == std::string::npos ? end : end - from));
        if (request.isObject()) {
            request["json"] = parsed_or_null(request["body"].asString());
            list.append(request);
        }
        from = end == std::string::npos ? content.size() : end + 1;
    }
    return list;
}

SilentPort::SilentPort() : socket_(INVALID_SOCKET) {
    WSADATA data = {};
    ::WSAStartup(MAKEWORD(2, 2), &data);
    const SOCKET bound = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int length = sizeof address;
    // Bound and never listening: nobody else gets the port, and a connection is refused.
    if (::bind(bound, reinterpret_cast<const sockaddr*>(&address), length) == 0 &&
        ::getsockname(bound, reinterpret_cast<sockaddr*>(&address), &length) == 0) {
        number_ = ntohs(address.sin_port);
    }
    socket_ = bound;
}

SilentPort::~SilentPort() {
    ::closesocket(static_cast<SOCKET>(socket_));
    ::WSACleanup();
}

} // namespace stage
