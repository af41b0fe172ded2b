#pragma once

#include <optional>
#include <string>

namespace vistrel::platform {

/// Where the program is installed: its bundle, or the program file where there are no bundles.
std::string mainBundlePath();

/// What the bundle says of itself under a key of its information dictionary, as far as that is
/// text.
std::optional<std::string> bundleInfo(const std::string& key);

}  // namespace vistrel::platform
