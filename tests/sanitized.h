#pragma once

namespace velmora {

/// Built under AddressSanitizer: many times slower, so that the same ground is covered
/// with fewer repetitions. The ordinary build runs them all.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif
#else
inline constexpr bool kSanitized = false;
#endif

}  // namespace velmora
