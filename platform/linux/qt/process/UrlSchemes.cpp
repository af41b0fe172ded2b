#include "platform/linux/qt/process/UrlSchemes.h"

#include <algorithm>
#include <sstream>

#include "platform/linux/RegularFile.h"

namespace vistrel::platform::linux_desktop {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// RFC 3986, section 3.1.
bool isSchemeCharacter(char c) {
  return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool namesProgram(const std::filesystem::path& list, const std::string& key) {
  // Many times what a desktop with everything installed has.
  constexpr std::size_t longestList = std::size_t{4} * 1024 * 1024;
  std::istringstream file(linesOfRegularFile(list, longestList).value_or(std::string()));
  bool isRemoval = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('[')) isRemoval = line.starts_with("[Removed Associations]");
    if (!isRemoval && line.starts_with(key) && line.size() > key.size()) return true;
  }
  return false;
}

}  // namespace

std::vector<std::filesystem::path> handlerLists(
    const std::vector<std::filesystem::path>& configDirectories,
    const std::vector<std::filesystem::path>& dataDirectories) {
  std::vector<std::filesystem::path> lists;
  lists.reserve(configDirectories.size() + 2 * dataDirectories.size());
  for (const auto& directory : configDirectories) lists.push_back(directory / "mimeapps.list");
  for (const auto& directory : dataDirectories) {
    lists.push_back(directory / "applications/mimeapps.list");
    lists.push_back(directory / "applications/mimeinfo.cache");
  }
  return lists;
}

std::string schemeOf(const std::string& url) {
  std::string scheme = url.substr(0, url.find(':'));
  const bool isWellFormed = scheme.size() < url.size() && !scheme.empty() && isLetter(scheme[0]) &&
                            std::all_of(scheme.begin(), scheme.end(), isSchemeCharacter);
  if (!isWellFormed) return {};
  std::transform(scheme.begin(), scheme.end(), scheme.begin(), lowered);
  return scheme;
}

bool isSchemeServed(const std::string& scheme, const std::vector<std::filesystem::path>& lists) {
  if (scheme.empty()) return false;
  const std::string key = "x-scheme-handler/" + scheme + "=";
  return std::any_of(lists.begin(), lists.end(),
                     [&key](const auto& list) { return namesProgram(list, key); });
}

}  // namespace vistrel::platform::linux_desktop
