#pragma once

#include <string>
#include <string_view>

namespace vistrel::platform::linux_desktop {

/// ISO 8859-1 as UTF-8; ICCCM's STRING is a subset of it.
std::string utf8FromLatin1(std::string_view bytes);

/// The X Consortium's Compound Text as UTF-8, as far as ASCII, Latin-1 and its UTF-8 segments go;
/// each character of another set becomes one U+FFFD.
std::string utf8FromCompoundText(std::string_view bytes);

/// Up to the first null byte, where some programs end their properties.
std::string_view upToNull(std::string_view bytes);

}  // namespace vistrel::platform::linux_desktop
