#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vistrel::platform::linux_desktop {

/// The files in which a desktop says which program serves what, by the MIME applications
/// specification of freedesktop.org, given the directories where settings and what programs bring
/// along are looked for (platform/linux/XdgDirectories.h).
std::vector<std::filesystem::path> handlerLists(
    const std::vector<std::filesystem::path>& configDirectories,
    const std::vector<std::filesystem::path>& dataDirectories);

/// The part of `url` before its colon in lower case; empty when it has no well-formed scheme.
std::string schemeOf(const std::string& url);

/// Whether one of the lists names a program for URLs of `scheme` (`x-scheme-handler/SCHEME=`).
bool isSchemeServed(const std::string& scheme, const std::vector<std::filesystem::path>& lists);

}  // namespace vistrel::platform::linux_desktop
