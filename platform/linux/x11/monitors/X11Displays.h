#pragma once

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/Backend.h"
#include "platform/VirtualDisplayClasses.h"
#include "platform/linux/session/SharedScreenLayout.h"
#include "platform/linux/x11/manager/CommandDeadline.h"
#include "platform/linux/x11/monitors/HiddenMonitor.h"

namespace vistrel::platform::linux_desktop {

/// Hidden monitors as virtual displays.
class X11VirtualDisplays final : public VirtualDisplayServer {
 public:
  /// `command` is the one that displays are made in the course of.
  X11VirtualDisplays(std::shared_ptr<Connection> connection,
                     std::shared_ptr<const SharedScreenLayout> layout,
                     std::shared_ptr<const CommandDeadline> command)
      : connection_(std::move(connection)),
        layout_(std::move(layout)),
        command_(std::move(command)) {}

  bool hostsVirtualDisplays() override { return canHideMonitors(*connection_); }
  /// Of high resolution until it gets settings. Its millimetres are those of as many pixels of the
  /// screen, whatever is asked for.
  std::optional<DisplayID> createDisplay(const VirtualDisplayDescriptor& descriptor) override;
  /// The first mode counts.
  bool applySettings(DisplayID display, const VirtualDisplaySettings& settings) override;
  void removeDisplay(DisplayID display) override { monitors_.erase(display); }

  /// Asks for a display's top-left corner to be at (x, y) in pixels of the root window. Only
  /// displays made here can be moved.
  void place(DisplayID display, int x, int y);
  /// Has all of them get out of the way of monitors that a person sees; those that have.
  std::vector<HiddenMonitor::Move> getOutOfTheWay();

 private:
  /// How many pixels of the root window such a mode takes. X has no scale of a display's own: the
  /// mode's points are what it is about, and points are as large as on the main display. None for
  /// more than the protocol's coordinates hold.
  std::optional<PixelSize> sizeOnRoot(std::uint32_t width, std::uint32_t height, bool hiDPI) const;

  const std::shared_ptr<Connection> connection_;
  const std::shared_ptr<const SharedScreenLayout> layout_;
  const std::shared_ptr<const CommandDeadline> command_;
  std::map<DisplayID, std::unique_ptr<HiddenMonitor>> monitors_;
};

/// The server's monitors as displays: the primary one is the main display. A server that has no
/// monitors, RandR 1.5, has one display, its screen.
class X11Displays final : public DisplayBackend {
 public:
  /// Outlives the configurations that it begins.
  X11Displays(std::shared_ptr<Connection> connection,
              std::shared_ptr<const SharedScreenLayout> layout,
              std::shared_ptr<X11VirtualDisplays> virtuals);

  DisplayID mainDisplayID() override;
  Rect displayBounds(DisplayID display) override;
  std::uint32_t onlineDisplayCount() override;
  std::unique_ptr<DisplayConfiguration> beginDisplayConfiguration() override;

 private:
  class Configuration;

  std::vector<ListedMonitor> displays();

  const std::shared_ptr<Connection> connection_;
  const std::shared_ptr<const SharedScreenLayout> layout_;
  const std::shared_ptr<X11VirtualDisplays> virtuals_;
  const bool hasMonitors_;
};

}  // namespace vistrel::platform::linux_desktop
