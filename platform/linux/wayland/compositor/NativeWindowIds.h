#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "platform/ScreenCapture.h"

namespace vistrel::platform::linux_desktop {

/// Numbers for windows that the compositor knows by a UUID. Each stands for the same window as long
/// as that lives, and for no other one later. Any thread.
class NativeWindowIds {
 public:
  /// Whether a window of that number is one of the compositor's. Those of X have the three bits at
  /// the top clear (X11 protocol, "Common Types").
  static bool isNative(WindowID id) { return id >= first; }

  WindowID idOf(const std::string& uuid);
  /// Empty for a number that stands for no window, or for one that has gone.
  std::string uuidOf(WindowID id) const;
  /// None for a window that nobody has asked the number of.
  std::optional<WindowID> knownIdOf(const std::string& uuid) const;
  /// All but these windows have gone.
  void keepOnly(const std::set<std::string>& uuids);

 private:
  static constexpr WindowID first = 0x80000000;

  mutable std::mutex mutex_;  // guards what follows
  std::map<std::string, WindowID> ids_;
  WindowID next_ = first;
};

}  // namespace vistrel::platform::linux_desktop
