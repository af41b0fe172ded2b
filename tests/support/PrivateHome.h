#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

namespace vistrel::testbed {

/// What programs of a test find instead of the machine's own, so that nothing depends on what else
/// is installed or set there: empty directories for whatever they store; fonts, styles, themes,
/// cursors and a locale that are always the same; of the machine's shared data and services, what
/// the window managers and the accessibility bus bring with them; and never the machine's system
/// bus.
class PrivateHome {
 public:
  /// Throws std::runtime_error when the fonts are not installed, std::system_error when there is no
  /// place for it.
  PrivateHome();

  const std::filesystem::path& path() const { return directory_.path(); }
  /// The environment for programs that live here, "NAME=value": complete but for a display and a
  /// session bus. Of this process's own, only where programs and libraries are found, the place for
  /// temporary files and the sanitizers' options are in it.
  std::vector<std::string> environment() const;

  /// Where a session bus for these programs listens.
  std::filesystem::path busSocket() const { return path() / "runtime/bus"; }
  /// The configuration file of that bus.
  std::filesystem::path busConfiguration() const { return path() / "bus.conf"; }
  /// The same of a system bus; there is none unless a test starts it.
  std::filesystem::path systemBusSocket() const { return path() / "runtime/system-bus"; }
  std::filesystem::path systemBusConfiguration() const { return path() / "system-bus.conf"; }

 private:
  TemporaryDirectory directory_;
};

/// Makes `environment` this process's own, all of it. Before any thread reads the environment.
void adoptEnvironment(const std::vector<std::string>& environment);

}  // namespace vistrel::testbed
