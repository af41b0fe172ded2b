#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/Geometry.h"
#include "platform/linux/wayland/compositor/WaylandConnection.h"

struct org_kde_plasma_virtual_desktop;
struct org_kde_plasma_virtual_desktop_management;
struct org_kde_plasma_window;
struct org_kde_plasma_window_management;

namespace vistrel::platform::linux_desktop {

/// A window as KWin has it, X's clients too.
struct KWinWindow {
  std::string uuid;
  std::string title;
  /// The name of its desktop entry where it has one, else its class; empty when it says neither.
  std::string applicationId;
  std::optional<std::int32_t> processId;
  /// With decorations, without shadows. Logical pixels of the compositor.
  Rect frame;
  bool isMinimised = false;
  bool isInTaskbar = true;
  /// Whether it is on the desktop that is shown.
  bool isOnShownDesktop = true;
};

/// KWin's windows, kept up to date by what it tells on a connection. On the connection's thread.
class KWinWindows {
 public:
  static bool isOfferedOn(const WaylandConnection& connection);

  /// They are offered on `connection`, which outlives this object.
  explicit KWinWindows(WaylandConnection& connection);
  KWinWindows(const KWinWindows&) = delete;
  KWinWindows& operator=(const KWinWindows&) = delete;
  ~KWinWindows();

  /// As of now, which KWin is asked for; topmost first.
  std::vector<KWinWindow> list();
  /// Whether the window that has the keyboard fills the screen, as of what KWin has told so far.
  bool isActiveFullScreen() const;

 private:
  struct Window;
  struct Desktop;

  void add(const std::string& uuid);
  void addDesktop(const std::string& id);
  KWinWindow described(const Window& window) const;

  WaylandConnection& connection_;
  org_kde_plasma_window_management* management_;
  org_kde_plasma_virtual_desktop_management* desktopManagement_;
  std::map<std::string, std::unique_ptr<Window>> windows_;    // by UUID
  std::map<std::string, std::unique_ptr<Desktop>> desktops_;  // by id
  std::string stacking_;  // UUIDs between semicolons, lowest first
};

}  // namespace vistrel::platform::linux_desktop
