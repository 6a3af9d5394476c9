// The native double of the platform: what a test sets of it.
#pragma once

#include <string>

namespace support {

// An existing folder of this system (UTF-8); the plugin's folder is expected below it.
void set_app_data_folder(const std::string& folder);

// What SleepMilliseconds does from now on; null: it sleeps.
void set_sleep(void (*sleep)(unsigned milliseconds));

} // namespace support
