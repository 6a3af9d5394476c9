// The plugin object: the host creates and starts it once; it installs the actions and the menu.
#pragma once

#include "host/begin_host_headers.h"

#include <max.h>

#include <guplib.h>

#include "host/end_host_headers.h"

namespace tarvo {

// The host's notification that start-up is complete; its menus exist by then.
constexpr int kSystemStartup = 80;

class Tarvo_Rendering : public GUP {
public:
    ~Tarvo_Rendering() override;

    DWORD Start() override;
    void Stop() override;
    void DeleteThis() override;
};

} // namespace tarvo
