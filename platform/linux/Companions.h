#pragma once

#include <filesystem>
#include <string>

namespace vistrel::platform::linux_desktop {

/// The program's own file.
std::filesystem::path ownProgram();

/// A file that comes with the program: beside it, as it is built, or where it is installed, as seen
/// from the program's folder; empty where it is missing.
std::filesystem::path companion(const std::string& name, const std::filesystem::path& installed);

}  // namespace vistrel::platform::linux_desktop
