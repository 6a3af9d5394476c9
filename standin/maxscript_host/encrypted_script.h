// What stands in for the host's encrypted scripts (.mse): a header and the script with every byte changed. It
// is no secret and protects nothing; it makes sure that only what encryptScript wrote is loaded, as in the
// host, where a plain text under such a name is refused.
#pragma once

#include <string>

namespace maxscript_host {

std::string encrypted_script(const std::string& script);

// False: `bytes` were not made by encrypted_script.
bool decrypted_script(const std::string& bytes, std::string& script);

} // namespace maxscript_host
