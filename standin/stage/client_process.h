// The desktop client of a run, as the scenario describes it. Needs windows.h.
#pragma once

#include "common/win32_handles.h"
#include "standin/base/sockets_win32.h"

#include <json/value.h>

#include <string>

namespace stage {

class ClientProcess {
public:
    ClientProcess() = default;
    ~ClientProcess() { stop(); }
    ClientProcess(ClientProcess&&) = default;
    ClientProcess& operator=(ClientProcess&&) = default;

    // Stops a client that runs and starts another. `wanted` is the scenario's "client"; its files go into
    // `folder`; port 0: a free one. Returns false and sets `problem` to an error message.
    bool start(const std::wstring& program, const Json::Value& wanted, const std::wstring& folder, int port,
               std::string& problem);
    void stop();

    int port() const { return port_; }

    bool is_running() const { return static_cast<bool>(process_); }
    // `requests` leaves out what was recorded up to now.
    void forget_requests();

    // Every request so far, also those to clients that were stopped: the records, with the parsed body as
    // "json".
    Json::Value requests() const;

private:
    bool wait_until_ready(std::string& problem);

    tarvo::KernelHandle job_; // ends the client when the stage ends or is killed
    tarvo::KernelHandle process_;
    std::wstring ready_file_;
    std::wstring record_file_;
    std::wstring stop_file_;
    std::size_t forgotten_ = 0; // bytes of the record
    int port_ = 0;
};

// A port of this machine that refuses connections while the object exists.
class SilentPort {
public:
    SilentPort();

    int number() const { return number_; }

private:
    base::SocketLibrary library_;
    int number_ = 0;
    base::Socket socket_;
};

} // namespace stage
