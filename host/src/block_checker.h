// Whether a checker watches blocks of memory.
#pragma once

namespace zephra {

// AddressSanitizer watches the ends of each block and what is freed.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kHasBlockChecker = true;
#elif defined(__has_feature)
inline constexpr bool kHasBlockChecker = __has_feature(address_sanitizer);
#else
inline constexpr bool kHasBlockChecker = false;
#endif

}  // namespace zephra
