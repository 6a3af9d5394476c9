// The probe as the host sees it: a global utility that asks at its start, when start-up is complete, and at
// the end.
#pragma once

#include "host/begin_host_headers.h"

#include <max.h>

#include <guplib.h>

#include "host/end_host_headers.h"

#include <string>

namespace tarvo_probe {

class ProbeObject : public GUP {
public:
    explicit ProbeObject(HINSTANCE module) : module_(module) {}

    DWORD Start() override;
    void Stop() override;
    void DeleteThis() override;

    // A notification arrived.
    void on_event(int code) noexcept;

private:
    void when_complete() noexcept;

    HINSTANCE module_;
    bool is_complete_ = false;
    std::string events_;
};

} // namespace tarvo_probe
