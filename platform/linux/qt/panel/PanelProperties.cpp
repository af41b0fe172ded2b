#include "platform/linux/qt/panel/PanelProperties.h"

#include <initializer_list>
#include <string_view>
#include <vector>

#include "platform/linux/XcbRequests.h"
#include "platform/linux/qt/space/QtConnection.h"

namespace vistrel::platform::linux_desktop {

namespace {

xcb_atom_t atomNamed(xcb_connection_t* connection, std::string_view name) {
  const auto request = xcb_intern_atom(connection, /*only_if_exists=*/0,
                                       static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = replyTo<xcb_intern_atom_reply>(connection, request);
  if (!reply) return XCB_ATOM_NONE;
  return reply->atom;
}

void setAtoms(xcb_connection_t* connection, xcb_window_t window, std::string_view property,
              std::initializer_list<std::string_view> names) {
  std::vector<xcb_atom_t> atoms;
  for (const std::string_view name : names) atoms.push_back(atomNamed(connection, name));
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atomNamed(connection, property),
                      XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(atoms.size()), atoms.data());
}

}  // namespace

void completePanelWindow(xcb_window_t window) {
  xcb_connection_t* connection = qtConnection();
  if (connection == nullptr) return;
  setAtoms(connection, window, "_NET_WM_WINDOW_TYPE",
           {"_NET_WM_WINDOW_TYPE_UTILITY", "_NET_WM_WINDOW_TYPE_NORMAL"});
  setAtoms(connection, window, "WM_PROTOCOLS", {"WM_DELETE_WINDOW", "_NET_WM_PING"});
  syncQt();
}

}  // namespace vistrel::platform::linux_desktop
