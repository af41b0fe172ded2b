#pragma once

#include <string>
#include <vector>
#include <xcb/randr.h>

#include "platform/linux/PixelRect.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// A monitor as the display server has it (RandR 1.5), whether a person sees it or not.
struct ListedMonitor {
  /// Of its name, and the same for as long as the monitor is there.
  xcb_atom_t id = XCB_ATOM_NONE;
  std::string name;
  /// Of the root window.
  PixelRect area;
  bool isPrimary = false;
  /// None for a monitor that nothing is connected to.
  xcb_randr_output_t output = XCB_NONE;
};

/// Whether the server has monitors, RandR 1.5.
bool offersMonitors(Connection& connection);

/// Those that are active: the primary one first, or where none is, in the server's order.
std::vector<ListedMonitor> monitorsOf(Connection& connection);

/// Where they are.
std::vector<PixelRect> areasOf(const std::vector<ListedMonitor>& monitors);

}  // namespace vistrel::platform::linux_desktop
