#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace vistrel::testbed {

/// The window managers that tests run sessions with.
enum class WindowManager {
  none,
  openbox,
  xfwm4,
  /// The same with its own compositor.
  xfwm4Compositing,
  /// Composites always.
  mutter,
};

/// Every one that manages windows.
inline constexpr WindowManager windowManagers[] = {WindowManager::openbox, WindowManager::xfwm4,
                                                   WindowManager::xfwm4Compositing,
                                                   WindowManager::mutter};

/// As a part of a test's name: letters and digits.
std::string_view nameOf(WindowManager manager);
/// For GoogleTest, which names tests by their parameters.
void PrintTo(WindowManager manager, std::ostream* out);

/// The program and its arguments; empty for none.
std::vector<std::string> commandOf(WindowManager manager);

}  // namespace vistrel::testbed
