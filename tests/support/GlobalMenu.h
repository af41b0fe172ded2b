#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>
#include <xcb/xproto.h>

#include "tests/support/DBus.h"
#include "tests/support/PrivateDisplay.h"

namespace vistrel::testbed {

/// A desktop that shows the menus of all windows in a bar of its own: programs find its registrar
/// (com.canonical.AppMenu.Registrar) when they start, and export their menus to it over D-Bus
/// (com.canonical.dbusmenu).
class GlobalMenu {
 public:
  /// A line of a menu that a program exports.
  struct Line {
    std::int32_t id = 0;
    std::string label;  // as it is shown
    bool isEnabled = true;
    std::vector<Line> lines;
  };

  /// `display` outlives this.
  explicit GlobalMenu(const PrivateDisplay& display);

  /// Whether a program has registered a menu for this window.
  bool hasMenuOf(xcb_window_t window) const { return registered(window).has_value(); }
  /// The line of that label, in whatever menu of the window's it is, with all below it. Throws
  /// std::runtime_error when there is none, or no menu.
  Line line(xcb_window_t window, const std::string& label) const;
  /// All lines of the window's menus, each indented by how deep it lies, those that cannot be
  /// chosen in parentheses, "---" between groups.
  std::string outline(xcb_window_t window) const;
  static std::string outline(const Line& line);

  /// The person opens the menu of that line, or chooses it.
  void open(xcb_window_t window, const std::string& label) const;
  void choose(xcb_window_t window, const std::string& label) const;

 private:
  struct ReleaseSlot {
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
  };

  static int registerWindow(sd_bus_message* call, void* self, sd_bus_error* error);
  static int unregisterWindow(sd_bus_message* call, void* self, sd_bus_error* error);
  /// A menu's program and path.
  using Registered = std::pair<std::string, std::string>;

  void serve(const std::stop_token& stop) const;
  std::optional<Registered> registered(xcb_window_t window) const;
  BusObject menuOf(xcb_window_t window) const;
  Line layout(xcb_window_t window) const;

  BusConnection asking_;
  BusConnection serving_;  // on `server_` alone once that runs
  std::unique_ptr<sd_bus_slot, ReleaseSlot> slot_;
  mutable std::mutex mutex_;
  std::map<xcb_window_t, Registered> menus_;  // guarded by `mutex_`
  std::jthread server_;  // programs wait for the registrar while they open their windows
};

}  // namespace vistrel::testbed
