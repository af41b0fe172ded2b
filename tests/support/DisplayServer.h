#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vistrel::testbed {

/// The display servers that tests run sessions on.
enum class DisplayServer {
  /// Xvfb whose screen has the size of its monitor, and can have no other.
  fixed,
  /// Xvfb whose screen can grow beyond its monitor.
  growable,
  /// Xorg over a graphics card that is none. Its screen can grow too.
  xorg,
};

/// The program with its arguments, for one monitor of that size. Whatever files it needs go into
/// `directory`.
std::vector<std::string> commandOf(DisplayServer server, int width, int height,
                                   const std::filesystem::path& directory);

/// What is left to do once the server answers, before anybody looks at its monitor. Throws
/// std::runtime_error when it refuses.
void setUpMonitor(DisplayServer server, const std::string& display, int width, int height);

}  // namespace vistrel::testbed
