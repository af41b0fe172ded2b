#include "platform/linux/x11/WindowList.h"

#include <list>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/x11/ClientWindows.h"
#include "platform/linux/x11/ProcessIds.h"
#include "platform/linux/x11/Property.h"
#include "platform/linux/x11/TextDecoding.h"
#include "platform/linux/x11/VisibleFrame.h"
#include "platform/linux/x11/WindowLayer.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Everything that is asked about one window. All windows are asked before the first answer is
/// read, so that a list costs a few round trips, not hundreds.
struct WindowQuery {
  WindowQuery(Connection& c, xcb_window_t client)
      : window(client),
        attributes(c.xcb(), xcb_get_window_attributes(c.xcb(), client)),
        geometry(c.xcb(), xcb_get_geometry(c.xcb(), client)),
        position(c.xcb(), xcb_translate_coordinates(c.xcb(), client, c.root(), 0, 0)),
        tree(c.xcb(), xcb_query_tree(c.xcb(), client)),
        state(c, client, "WM_STATE"),
        name(c, client, "_NET_WM_NAME"),
        legacyName(c, client, "WM_NAME"),
        type(c, client, "_NET_WM_WINDOW_TYPE"),
        decoration(c, client, "_NET_FRAME_EXTENTS"),
        shadow(c, client, "_GTK_FRAME_EXTENTS"),
        windowClass(c, client, "WM_CLASS"),
        gtkApplicationId(c, client, "_GTK_APPLICATION_ID"),
        processId(c, client) {}

  xcb_window_t window;
  Pending<xcb_get_window_attributes_reply, xcb_get_window_attributes_cookie_t> attributes;
  Pending<xcb_get_geometry_reply, xcb_get_geometry_cookie_t> geometry;
  Pending<xcb_translate_coordinates_reply, xcb_translate_coordinates_cookie_t> position;
  Pending<xcb_query_tree_reply, xcb_query_tree_cookie_t> tree;
  PropertyRequest state;
  PropertyRequest name;
  PropertyRequest legacyName;
  PropertyRequest type;
  PropertyRequest decoration;
  PropertyRequest shadow;
  PropertyRequest windowClass;
  PropertyRequest gtkApplicationId;
  ProcessIdRequest processId;
};

std::string decoded(Connection& connection, const Property& text) {
  const auto bytes = upToNull(text.bytes());
  if (text.type() == XCB_ATOM_STRING) return utf8FromLatin1(bytes);
  if (text.type() == connection.atom("COMPOUND_TEXT")) return utf8FromCompoundText(bytes);
  return repairedUtf8(bytes);
}

std::optional<std::string> titleOf(Connection& connection, WindowQuery& query) {
  const auto name = query.name.fetch();
  if (name.exists()) return repairedUtf8(upToNull(name.bytes()));
  const auto legacyName = query.legacyName.fetch();
  if (!legacyName.exists()) return std::nullopt;
  return decoded(connection, legacyName);
}

/// EWMH: the first type of the list that is known counts.
WindowLayer layerOf(Connection& connection, WindowQuery& query, bool overrideRedirect) {
  const auto types = query.type.fetch().values();
  for (const auto type : types) {
    const auto layer = layerOfType(connection.nameOf(type));
    if (layer && !(overrideRedirect && *layer == layerOrdinary)) return *layer;
  }
  // No manager looks after such a window: a menu, a drag image, an overlay.
  return overrideRedirect ? layerPopUp : layerOrdinary;
}

/// Whether the window is there for a person to see. Some managers leave a window mapped that they
/// have minimised or moved to another desktop; its state tells (ICCCM 4.1.3.1).
bool isOnScreen(WindowQuery& query, const xcb_get_window_attributes_reply_t& attributes) {
  constexpr std::uint32_t iconic = 3;
  return attributes.map_state == XCB_MAP_STATE_VIEWABLE &&
         query.state.fetch().firstValue() != iconic;
}

/// None for a window without a frame, whatever a manager has left on it.
Extents decorationOf(WindowQuery& query) {
  const auto tree = query.tree.fetch();
  const bool hasFrame = tree && tree->parent != tree->root;
  return hasFrame ? extentsFrom(query.decoration.fetch().values()) : Extents{};
}

ApplicationHints hintsOf(WindowQuery& query) {
  ApplicationHints hints;
  hints.gtkApplicationId = repairedUtf8(upToNull(query.gtkApplicationId.fetch().bytes()));
  const auto property = query.windowClass.fetch();
  const auto instance = upToNull(property.bytes());
  hints.wmClassInstance = utf8FromLatin1(instance);
  if (instance.size() < property.bytes().size()) {
    hints.wmClass = utf8FromLatin1(upToNull(property.bytes().substr(instance.size() + 1)));
  }
  hints.processId = query.processId.fetch();
  return hints;
}

std::shared_ptr<const SharedApplication> applicationOf(const ApplicationNames& names,
                                                       WindowQuery& query) {
  const auto hints = hintsOf(query);
  auto name = names.nameFor(hints);
  if (name.empty() && !hints.processId) return nullptr;
  return std::make_shared<SharedApplication>(
      SharedApplication{std::move(name), hints.processId.value_or(-1)});
}

/// Null for a window that has gone, or that shows nothing by its class.
WindowRecord recordOf(Connection& connection, const ApplicationNames& names,
                      const ScreenLayout& layout, WindowQuery& query) {
  const auto attributes = query.attributes.fetch();
  const auto geometry = query.geometry.fetch();
  const auto position = query.position.fetch();
  if (!attributes || !geometry || !position) return nullptr;
  if (attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) return nullptr;
  auto record = std::make_shared<ShareableWindow>();
  record->windowID = query.window;
  record->title = titleOf(connection, query);
  const PixelRect client{position->dst_x, position->dst_y, geometry->width, geometry->height};
  record->frame = layout.toPoints(
      visibleFrame(client, decorationOf(query), extentsFrom(query.shadow.fetch().values())));
  record->owningApplication = applicationOf(names, query);
  record->isOnScreen = isOnScreen(query, *attributes);
  record->windowLayer = layerOf(connection, query, attributes->override_redirect != 0);
  return record;
}

}  // namespace

std::shared_ptr<const ShareableContent> listWindows(Connection& connection, ApplicationNames& names,
                                                    const ScreenLayout& layout,
                                                    bool excludingDesktopWindows,
                                                    bool onScreenWindowsOnly) {
  names.refresh();
  std::list<WindowQuery> queries;
  for (const auto window : clientWindows(connection)) queries.emplace_back(connection, window);
  auto content = std::make_shared<ShareableContent>();
  for (auto& query : queries) {
    auto record = recordOf(connection, names, layout, query);
    if (!record || (onScreenWindowsOnly && !record->isOnScreen)) continue;
    if (excludingDesktopWindows && record->windowLayer == layerDesktop) continue;
    content->windows.push_back(std::move(record));
  }
  return content;
}

}  // namespace vistrel::platform::linux_desktop
