#pragma once

#include <string>

namespace vistrel::platform {

/// Where the program is installed: its bundle, or the program file where there are no bundles.
std::string mainBundlePath();

}  // namespace vistrel::platform
