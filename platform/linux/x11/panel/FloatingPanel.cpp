#include "platform/linux/x11/panel/FloatingPanel.h"

#include <initializer_list>
#include <string_view>
#include <vector>

#include "platform/linux/x11/manager/Manager.h"

namespace vistrel::platform::linux_desktop {
namespace {

void setAtoms(Connection& connection, xcb_window_t window, std::string_view property,
              std::initializer_list<std::string_view> names) {
  std::vector<xcb_atom_t> atoms;
  for (const auto name : names) atoms.push_back(connection.atom(name));
  xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, connection.atom(property),
                      XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(atoms.size()), atoms.data());
}

}  // namespace

void makeFloating(Connection& connection, xcb_window_t window) {
  setAtoms(connection, window, "_NET_WM_WINDOW_TYPE",
           {"_NET_WM_WINDOW_TYPE_UTILITY", "_NET_WM_WINDOW_TYPE_NORMAL"});
  setAtoms(connection, window, "WM_PROTOCOLS", {"WM_DELETE_WINDOW", "_NET_WM_PING"});
  setAtoms(connection, window, "_NET_WM_STATE",
           {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR",
            "_NET_WM_STATE_SKIP_PAGER"});
  xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window,
                      connection.atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, 32, 1, &everyDesktop);
  // Whoever maps the window does it on a connection of its own, after this.
  connection.sync();
  while (connection.pollEvent())
    continue;  // no events are asked for here: it looks for errors alone
}

}  // namespace vistrel::platform::linux_desktop
