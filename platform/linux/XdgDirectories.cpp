#include "platform/linux/XdgDirectories.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <utility>

namespace vistrel::platform::linux_desktop {
namespace {

namespace fs = std::filesystem;

/// The person's own directory of a kind: what `variable` says, else `fallback` in HOME; empty where
/// neither is anywhere.
fs::path personal(const Variables& variables, const char* variable, const char* fallback) {
  fs::path given = variables(variable);
  if (given.is_absolute()) return given;
  const fs::path home = variables("HOME");
  return home.is_absolute() ? home / fallback : fs::path();
}

/// The absolute paths of a list with colons between.
std::vector<fs::path> absolutePathsIn(const std::string& list) {
  std::vector<fs::path> paths;
  std::istringstream parts(list);
  for (std::string each; std::getline(parts, each, ':');) {
    if (fs::path path = each; path.is_absolute()) paths.push_back(std::move(path));
  }
  return paths;
}

std::vector<fs::path> searched(fs::path personal, const std::string& system,
                               const std::string& fallback) {
  std::vector<fs::path> directories;
  if (!personal.empty()) directories.push_back(std::move(personal));
  auto others = absolutePathsIn(system);
  if (others.empty()) others = absolutePathsIn(fallback);
  std::move(others.begin(), others.end(), std::back_inserter(directories));
  return directories;
}

}  // namespace

fs::path xdgStateHome(const Variables& variables) {
  return personal(variables, "XDG_STATE_HOME", ".local/state");
}

std::vector<fs::path> xdgConfigDirectories(const Variables& variables) {
  return searched(personal(variables, "XDG_CONFIG_HOME", ".config"), variables("XDG_CONFIG_DIRS"),
                  "/etc/xdg");
}

std::vector<fs::path> xdgDataDirectories(const Variables& variables) {
  return searched(personal(variables, "XDG_DATA_HOME", ".local/share"), variables("XDG_DATA_DIRS"),
                  "/usr/local/share:/usr/share");
}

}  // namespace vistrel::platform::linux_desktop
