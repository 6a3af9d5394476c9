// The native double of the platform: where it keeps the machine-wide application-data folder.
#pragma once

#include <string>

namespace tarvo_test {

// An existing folder of this system (UTF-8); the plugin's folder is expected below it.
void set_app_data_folder(const std::string& folder);

} // namespace tarvo_test
