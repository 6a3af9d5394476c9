// The host's heap counts what the plug-in makes on it.
#pragma once

namespace host_sdk {

// While one of these exists, new objects on the host's heap are the host's own and do not count.
class HostOwnScope {
public:
    HostOwnScope();
    ~HostOwnScope();
    HostOwnScope(const HostOwnScope&) = delete;
    HostOwnScope& operator=(const HostOwnScope&) = delete;
};

long counted_heap_objects();

} // namespace host_sdk
