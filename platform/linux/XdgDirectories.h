#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/linux/Environment.h"

namespace vistrel::platform::linux_desktop {

// The directories of the XDG Base Directory Specification 0.8, each from its variable or its
// default. Paths that are not absolute are left out, as the specification has it, and a variable
// without any other is as if it were not set; what would be below a HOME that is not absolute is
// left out too. They need not exist.

/// Gives a variable of the environment, empty where it is not set.
using Variables = std::function<std::string(const char* name)>;

/// Where programs keep what is to be there again at their next start (XDG_STATE_HOME); empty where
/// there is no such place.
std::filesystem::path xdgStateHome(const Variables& variables = environmentVariable);

/// Where settings are looked for (XDG_CONFIG_HOME, XDG_CONFIG_DIRS), the most important first.
std::vector<std::filesystem::path> xdgConfigDirectories(
    const Variables& variables = environmentVariable);

/// Where what programs bring along is looked for (XDG_DATA_HOME, XDG_DATA_DIRS), the most important
/// first.
std::vector<std::filesystem::path> xdgDataDirectories(
    const Variables& variables = environmentVariable);

}  // namespace vistrel::platform::linux_desktop
