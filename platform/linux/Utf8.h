#pragma once

#include <string>
#include <string_view>

namespace vistrel::platform::linux_desktop {

/// Stands for a character that cannot be told (U+FFFD).
inline constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

/// `bytes` as valid UTF-8: each ill-formed sequence becomes one U+FFFD.
std::string repairedUtf8(std::string_view bytes);

}  // namespace vistrel::platform::linux_desktop
