// Handlers of host notifications.
#pragma once

namespace host_sdk {

// Calls the handlers that are registered now, in the order of registration.
void notify_handlers(int code, void* call_param);

} // namespace host_sdk
