#pragma once

#include <map>
#include <memory>

#include "platform/Backend.h"
#include "platform/VirtualDisplayClasses.h"
#include "platform/linux/ScreenLayout.h"
#include "platform/linux/x11/HiddenMonitor.h"

namespace vistrel::platform::linux_desktop {

/// Hidden monitors as virtual displays.
class X11VirtualDisplays final : public VirtualDisplayServer {
 public:
  /// `connection` outlives this object.
  explicit X11VirtualDisplays(Connection& connection) : connection_(connection) {}

  bool hostsVirtualDisplays() override { return canHideMonitors(connection_); }
  /// Its size in millimetres is that of as many pixels of the screen, whatever is asked for.
  std::optional<DisplayID> createDisplay(const VirtualDisplayDescriptor& descriptor) override;
  /// The first mode counts. X has no scale of a display's own, so `hiDPI` makes no difference.
  bool applySettings(DisplayID display, const VirtualDisplaySettings& settings) override;
  void removeDisplay(DisplayID display) override { monitors_.erase(display); }

  /// Asks for a display's top-left corner to be at (x, y) in pixels of the root window. Only
  /// displays made here can be moved.
  void place(DisplayID display, int x, int y);

 private:
  Connection& connection_;
  std::map<DisplayID, std::unique_ptr<HiddenMonitor>> monitors_;
};

/// The server's monitors as displays: the primary one is the main display. A server that has no
/// monitors, RandR 1.5, has one display, its screen.
class X11Displays final : public DisplayBackend {
 public:
  /// All outlive this object and the configurations that it begins.
  X11Displays(Connection& connection, const ScreenLayout& layout, X11VirtualDisplays& virtuals);

  DisplayID mainDisplayID() override;
  Rect displayBounds(DisplayID display) override;
  std::uint32_t onlineDisplayCount() override;
  std::unique_ptr<DisplayConfiguration> beginDisplayConfiguration() override;

 private:
  class Configuration;

  std::vector<ListedMonitor> displays();

  Connection& connection_;
  const ScreenLayout& layout_;
  X11VirtualDisplays& virtuals_;
  const bool hasMonitors_;
};

}  // namespace vistrel::platform::linux_desktop
