#include "platform/linux/x11/listing/WindowList.h"

#include <list>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/Utf8.h"
#include "platform/linux/x11/listing/TypeLayers.h"
#include "platform/linux/x11/manager/ClientWindows.h"
#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/manager/ProcessIds.h"
#include "platform/linux/x11/manager/VisibleFrame.h"
#include "platform/linux/x11/server/Property.h"
#include "platform/linux/x11/server/TextDecoding.h"

namespace vistrel::platform::linux_desktop {
namespace {

using Attributes = XcbPointer<xcb_get_window_attributes_reply_t>;

/// A window that is there and can be seen.
struct Candidate {
  xcb_window_t window;
  Attributes attributes;
};

/// Everything else that is asked about one window. Many windows are asked before the first answer
/// is read, so that a list costs a few round trips, not hundreds.
struct WindowQuery {
  WindowQuery(Connection& c, Candidate candidate)
      : WindowQuery(c, candidate.window, std::move(candidate.attributes)) {}
  WindowQuery(Connection& c, xcb_window_t client, Attributes known)
      : window(client),
        attributes(std::move(known)),
        framed(c, client, c.root()),
        state(c, client, "WM_STATE"),
        name(c, client, "_NET_WM_NAME"),
        legacyName(c, client, "WM_NAME"),
        type(c, client, "_NET_WM_WINDOW_TYPE"),
        windowClass(c, client, "WM_CLASS"),
        gtkApplicationId(c, client, "_GTK_APPLICATION_ID"),
        processId(c, client) {}

  xcb_window_t window;
  Attributes attributes;
  FramedWindowRequest framed;
  PropertyRequest state;
  PropertyRequest name;
  PropertyRequest legacyName;
  PropertyRequest type;
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
  if (name.hasBytes()) return repairedUtf8(upToNull(name.bytes()));
  const auto legacyName = query.legacyName.fetch();
  if (!legacyName.hasBytes()) return std::nullopt;
  return decoded(connection, legacyName);
}

using LayerOfType = std::map<xcb_atom_t, WindowLayer>;

LayerOfType layersOfTypes(Connection& connection) {
  LayerOfType layers;
  for (const auto& each : typeLayers()) layers.emplace(connection.atom(each.type), each.layer);
  return layers;
}

/// EWMH: the first type of the list that is known counts.
WindowLayer layerOf(const LayerOfType& layers, WindowQuery& query) {
  const bool overrideRedirect = query.attributes->override_redirect != 0;
  for (const auto type : query.type.fetch().values()) {
    const auto known = layers.find(type);
    if (known == layers.end() || (overrideRedirect && known->second == layerOrdinary)) continue;
    return known->second;
  }
  // No manager looks after such a window: a menu, a drag image, an overlay.
  return overrideRedirect ? layerPopUp : layerOrdinary;
}

/// Whether the window is there for a person to see. A window that is minimised (mutter 43.8) or
/// rolled up (openbox 3.6.1) may stay mapped; its state tells (ICCCM 4.1.3.1).
bool isOnScreen(WindowQuery& query) {
  return query.attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
         query.state.fetch().firstValue() != iconicState;
}

ApplicationHints hintsOf(WindowQuery& query) {
  ApplicationHints hints;
  hints.applicationId = repairedUtf8(upToNull(query.gtkApplicationId.fetch().bytes()));
  const auto property = query.windowClass.fetch();
  const auto instance = upToNull(property.bytes());
  hints.wmClassInstance = utf8FromLatin1(instance);
  if (instance.size() < property.bytes().size()) {
    hints.wmClass = utf8FromLatin1(upToNull(property.bytes().substr(instance.size() + 1)));
  }
  hints.processId = query.processId.fetch();
  return hints;
}

std::shared_ptr<const SharedApplication> applicationOf(Connection& connection,
                                                       const ApplicationNames& names,
                                                       WindowQuery& query) {
  const auto hints = hintsOf(query);
  const auto processId = hints.processId.value_or(standInProcessId(connection, query.window));
  return std::make_shared<SharedApplication>(SharedApplication{names.nameFor(hints), processId});
}

/// Null for a window that has gone.
WindowRecord recordOf(Connection& connection, const ApplicationNames& names,
                      const LayerOfType& layers, const ScreenLayout& layout, WindowQuery& query) {
  const auto framed = query.framed.fetch();
  if (!framed) return nullptr;
  auto record = std::make_shared<ShareableWindow>();
  record->windowID = query.window;
  record->title = titleOf(connection, query);
  record->frame = layout.toPoints(framed->visible);
  record->owningApplication = applicationOf(connection, names, query);
  record->isOnScreen = isOnScreen(query);
  record->windowLayer = layerOf(layers, query);
  return record;
}

/// Those of `windows` that are there and show something by their class.
std::vector<Candidate> candidatesOf(Connection& connection, ListedWindows listedWindows) {
  auto* const xcb = connection.xcb();
  std::vector<std::pair<xcb_window_t, xcb_get_window_attributes_cookie_t>> asked;
  for (const auto window : clientWindows(connection)) {
    asked.emplace_back(window, xcb_get_window_attributes(xcb, window));
  }
  std::vector<Candidate> candidates;
  for (const auto& [window, cookie] : asked) {
    auto attributes = replyTo<xcb_get_window_attributes_reply>(xcb, cookie);
    if (!attributes || attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) continue;
    const bool isMapped = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    if (listedWindows == ListedWindows::onScreen && !isMapped) continue;
    candidates.push_back({window, std::move(attributes)});
  }
  return candidates;
}

}  // namespace

std::shared_ptr<const ShareableContent> listWindows(Connection& connection, ApplicationNames& names,
                                                    const ScreenLayout& layout,
                                                    DesktopWindows desktopWindows,
                                                    ListedWindows listedWindows) {
  // What clients have set may be large, so only so many windows' answers are in memory at once.
  constexpr std::size_t mostAtOnce = 32;
  names.refresh();
  const auto layers = layersOfTypes(connection);
  auto candidates = candidatesOf(connection, listedWindows);
  auto content = std::make_shared<ShareableContent>();
  for (std::size_t next = 0; next < candidates.size();) {
    std::list<WindowQuery> queries;
    while (next < candidates.size() && queries.size() < mostAtOnce) {
      queries.emplace_back(connection, std::move(candidates[next++]));
    }
    for (auto& query : queries) {
      auto record = recordOf(connection, names, layers, layout, query);
      if (!record) continue;
      if (listedWindows == ListedWindows::onScreen && !record->isOnScreen) continue;
      const bool isOfDesktop = record->windowLayer == layerDesktop;
      if (desktopWindows == DesktopWindows::excluded && isOfDesktop) continue;
      content->windows.push_back(std::move(record));
    }
  }
  return content;
}

}  // namespace vistrel::platform::linux_desktop
