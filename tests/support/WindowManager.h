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
  kwin,
  /// The same with its own compositor, drawn without a graphics card.
  kwinCompositing,
  /// Composites, as it does unless told not to.
  marco,
  icewm,
  fluxbox,
  awesome,
  i3,
  jwm,
  /// Composites, as it does unless told not to.
  metacity,
  bspwm,
  herbstluftwm,
};

/// Those that every suite about managers runs with.
inline constexpr WindowManager windowManagers[] = {WindowManager::openbox, WindowManager::xfwm4,
                                                   WindowManager::xfwm4Compositing,
                                                   WindowManager::mutter};
/// Those that what matters most is tested with besides.
inline constexpr WindowManager furtherWindowManagers[] = {
    WindowManager::kwin, WindowManager::kwinCompositing, WindowManager::marco, WindowManager::icewm,
    WindowManager::fluxbox};
/// Those whose decoration is no part of what the server keeps of a window.
inline constexpr WindowManager windowManagersThatDrawNoFrames[] = {WindowManager::kwinCompositing};
/// Those that scripts/test-field alone installs and runs tests with.
inline constexpr WindowManager fieldWindowManagers[] = {
    WindowManager::awesome,  WindowManager::i3,    WindowManager::jwm,
    WindowManager::metacity, WindowManager::bspwm, WindowManager::herbstluftwm};

/// As a part of a test's name: letters and digits.
std::string_view nameOf(WindowManager manager);
/// For GoogleTest, which names tests by their parameters.
void PrintTo(WindowManager manager, std::ostream* out);

/// The program and its arguments; empty for none.
std::vector<std::string> commandOf(WindowManager manager);
/// Whether it takes over from the one that runs, given the argument --replace (ICCCM 4.3). Others
/// end when there is one.
bool replacesOthers(WindowManager manager);

}  // namespace vistrel::testbed
