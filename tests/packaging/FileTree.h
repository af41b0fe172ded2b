#pragma once

#include <filesystem>
#include <set>
#include <string>

namespace vistrel::testbed {

/// The files below a directory, by their paths from there; directories themselves are left out.
std::set<std::string> filesBelow(const std::filesystem::path& directory);

/// The files that an installation has below its prefix, which is all that it puts anywhere.
std::set<std::string> installedFiles();

/// The bytes of a file. Throws std::runtime_error when it cannot be read.
std::string contentsOf(const std::filesystem::path& file);

}  // namespace vistrel::testbed
