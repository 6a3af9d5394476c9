// Under the sanitizers everything takes several times as long: a test of sheer size is smaller there. The
// same test runs in full size in the build without them.
#pragma once

namespace support {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
constexpr bool kSanitized = __has_feature(address_sanitizer);
#else
constexpr bool kSanitized = false;
#endif

} // namespace support
