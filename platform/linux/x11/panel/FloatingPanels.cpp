#include "platform/linux/x11/panel/FloatingPanels.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/Trace.h"
#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/manager/TopLevel.h"
#include "platform/linux/x11/panel/FloatingPanel.h"
#include "platform/linux/x11/server/Property.h"
#include "platform/linux/x11/server/ServedConnection.h"

namespace vistrel::platform::linux_desktop {
namespace {

AskingLimit stateLimit() { return {3, 10}; }
/// A person may click a panel that often, and each click may give it the keyboard.
AskingLimit perClickLimit() { return {20, 10}; }

/// What WM_STATE says of a window that a manager shows, or has on another desktop (ICCCM 4.1.3.1).
constexpr std::uint32_t normalState = 1;

bool isIn(Connection& connection, xcb_window_t window, std::uint32_t state) {
  return propertyOf(connection, window, "WM_STATE").firstValue() == state;
}

/// Topmost last.
std::vector<xcb_window_t> topLevels(Connection& connection) {
  const auto tree = replyTo<xcb_query_tree_reply>(
      connection.xcb(), xcb_query_tree(connection.xcb(), connection.root()));
  if (!tree) return {};
  const auto* const first = xcb_query_tree_children(tree.get());
  return {first, first + xcb_query_tree_children_length(tree.get())};
}

bool isOnShownDesktop(Connection& connection, xcb_window_t window) {
  const auto attributes = replyTo<xcb_get_window_attributes_reply>(
      connection.xcb(), xcb_get_window_attributes(connection.xcb(), window));
  if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) return false;
  // Where desktops are being switched, it may be on the former one yet.
  const auto desktop = propertyOf(connection, window, "_NET_WM_DESKTOP").firstValue();
  const auto shown = propertyOf(connection, connection.root(), "_NET_CURRENT_DESKTOP").firstValue();
  return !desktop || desktop == everyDesktop || !shown || desktop == shown;
}

}  // namespace

std::shared_ptr<FloatingPanels> FloatingPanels::on(const std::shared_ptr<SerialQueue>& queue) {
  auto connection = Connection::open();
  if (!connection) return nullptr;
  std::shared_ptr<FloatingPanels> panels(new FloatingPanels(*queue, std::move(connection)));
  queue->async([queue = queue.get(), panels] {
    serveOn(*queue, *panels->connection_, [panels] { panels->serve(); });
    panels->followActiveWindow();
  });
  return panels;
}

FloatingPanels::FloatingPanels(SerialQueue& queue, std::unique_ptr<Connection> connection)
    : connection_(std::move(connection)),
      managersRest_(queue, *connection_, [this] { look(); }),
      covered_(queue, *connection_),
      active_(*connection_),
      keyboardLimit_(perClickLimit()) {
  forgive(connection_->xcb(),
          connection_->selectEvents(connection_->root(), XCB_EVENT_MASK_PROPERTY_CHANGE));
}

void FloatingPanels::add(xcb_window_t panel) {
  const auto [place, isNew] = panels_.try_emplace(panel, stateLimit());
  place->second.renew();
  keyboardLimit_.renew();
  if (isNew) {
    forgive(connection_->xcb(),
            connection_->selectEvents(
                panel, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE));
    covered_.add(panel);
  }
  wasMapped(panel);
  connection_->flush();
}

void FloatingPanels::setForeignFullScreen(bool isActive) {
  if (std::exchange(isForeignFullScreenActive_, isActive) == isActive) return;
  trace(TraceTopic::manager, [&] {
    return std::string("panels are ") + (isActive ? "" : "not ") +
           "to lie above a full-screen window of another kind";
  });
  for (const auto& [panel, limit] : panels_) setAboveFullScreen(*connection_, panel, isActive);
  connection_->flush();
}

void FloatingPanels::serve() {
  connection_->serve([this](const xcb_generic_event_t& event) { handle(event); });
}

void FloatingPanels::handle(const xcb_generic_event_t& event) {
  covered_.handle(event);
  if (typeOf(event) == XCB_PROPERTY_NOTIFY) {
    changedProperty(eventAs<xcb_property_notify_event_t>(event));
  } else if (typeOf(event) == XCB_CONFIGURE_NOTIFY) {
    managersRest_.handle(eventAs<xcb_configure_notify_event_t>(event));
  } else if (typeOf(event) == XCB_MAP_NOTIFY) {
    const auto window = eventAs<xcb_map_notify_event_t>(event).window;
    if (panels_.contains(window)) wasMapped(window);
  } else if (typeOf(event) == XCB_DESTROY_NOTIFY) {
    panels_.erase(eventAs<xcb_destroy_notify_event_t>(event).window);
  }
}

void FloatingPanels::changedProperty(const xcb_property_notify_event_t& event) {
  if (panels_.contains(event.window)) return changedPanel(event.atom);
  const auto former = active_.fullScreen();
  active_.changedProperty(event);
  if (event.window == connection_->root()) {
    if (event.atom == connection_->atom("_NET_ACTIVE_WINDOW")) return followActiveWindow();
    if (event.atom == connection_->atom("_NET_CLIENT_LIST_STACKING") && former != XCB_WINDOW_NONE) {
      managersRest_.disturb();
    }
  }
  followFullScreen(former);
}

void FloatingPanels::changedPanel(xcb_atom_t property) {
  if (property == connection_->atom("WM_STATE")) restoreMinimised();
  for (const auto* each : {"_NET_WM_STATE", "_NET_WM_DESKTOP", "WM_STATE"}) {
    if (property == connection_->atom(each)) return managersRest_.disturb();
  }
}

void FloatingPanels::wasMapped(xcb_window_t panel) {
  if (owner_ != XCB_WINDOW_NONE) attach(panel);
  if (isForeignFullScreenActive_) setAboveFullScreen(*connection_, panel, true);
  managersRest_.disturb();
}

void FloatingPanels::followActiveWindow() {
  const auto root = connection_->root();
  xcb_window_t active =
      propertyOf(*connection_, root, "_NET_ACTIVE_WINDOW").firstValue().value_or(XCB_WINDOW_NONE);
  if (panels_.contains(active)) return giveKeyboardBack();
  // Any client can write there, and the root is to be listened to all the time.
  if (active == root) active = XCB_WINDOW_NONE;
  const auto former = active_.fullScreen();
  active_.follow(active);
  followFullScreen(former);
}

void FloatingPanels::followFullScreen(xcb_window_t former) {
  if (active_.fullScreen() == former) return;
  if (owner_ != XCB_WINDOW_NONE) detachAll();
  restoreMinimised();
  for (auto& [panel, limit] : panels_) limit.renew();
  managersRest_.disturb();
}

void FloatingPanels::giveKeyboardBack() {
  const auto former = active_.followed();
  if (former == XCB_WINDOW_NONE || !isOnShownDesktop(*connection_, former)) return;
  if (!keyboardLimit_.mayAsk(monotonicNow())) return;
  trace(TraceTopic::manager,
        [&] { return "a panel has the keyboard; it goes back to " + windowText(former); });
  tellManager(*connection_, former, "_NET_ACTIVE_WINDOW",
              {byPerson, XCB_CURRENT_TIME, XCB_WINDOW_NONE});
}

void FloatingPanels::look() {
  const auto fullScreen = active_.fullScreen();
  if (fullScreen != XCB_WINDOW_NONE && coversPanels(fullScreen)) riseAbove(fullScreen);
  for (auto& [panel, limit] : panels_) {
    // A manager takes the state of a window that is withdrawn away.
    if (isIn(*connection_, panel, normalState)) askAgain(panel, limit);
    if (isIn(*connection_, panel, iconicState)) mapAnew(panel, limit);
  }
  connection_->flush();
}

bool FloatingPanels::coversPanels(xcb_window_t fullScreen) {
  auto& connection = *connection_;
  const auto stack = topLevels(connection);
  const auto place = [&](xcb_window_t window) {
    return std::find(stack.begin(), stack.end(), topLevelOf(connection, window));
  };
  const auto placeOfIt = place(fullScreen);
  if (placeOfIt == stack.end()) return false;
  return std::any_of(panels_.begin(), panels_.end(), [&](const auto& each) {
    return isIn(connection, each.first, normalState) && place(each.first) < placeOfIt;
  });
}

void FloatingPanels::askAgain(xcb_window_t panel, AskingLimit& limit) {
  const auto changes = missingToFloat(*connection_, panel, owner_ == XCB_WINDOW_NONE);
  if (changes.empty() || !limit.mayAsk(monotonicNow())) return;
  trace(TraceTopic::manager,
        [&] { return windowText(panel) + ", a panel, is asked to float again"; });
  for (const auto& change : changes) askManager(*connection_, panel, change);
}

void FloatingPanels::mapAnew(xcb_window_t panel, AskingLimit& limit) {
  if (owner_ != XCB_WINDOW_NONE || !limit.mayAsk(monotonicNow())) return;
  trace(TraceTopic::manager, [&] { return windowText(panel) + ", a panel, is mapped anew"; });
  // marco 1.26.1 does not show a former transient that it has minimised with its window, unless
  // that is withdrawn first (ICCCM 4.1.4).
  withdraw(*connection_, panel);
  forgive(connection_->xcb(), xcb_map_window_checked(connection_->xcb(), panel));
}

void FloatingPanels::riseAbove(xcb_window_t fullScreen) {
  if (areInItsLayer_) return;  // there is nothing else to try
  // jwm 2.4.3 puts no transients above such a window but those that are in its own layer.
  areInItsLayer_ = owner_ == fullScreen;
  owner_ = fullScreen;
  trace(TraceTopic::manager, [&] {
    return windowText(owner_) + " lies above panels; they are its transients" +
           (areInItsLayer_ ? ", in its layer" : "");
  });
  for (const auto& [panel, limit] : panels_) attach(panel);
}

void FloatingPanels::attach(xcb_window_t panel) {
  auto* const xcb = connection_->xcb();
  // The toolkit destroys panels on a connection of its own; word of that may be under way.
  forgive(xcb,
          xcb_change_property_checked(xcb, XCB_PROP_MODE_REPLACE, panel, XCB_ATOM_WM_TRANSIENT_FOR,
                                      XCB_ATOM_WINDOW, 32, 1, &owner_));
  if (areInItsLayer_) askManager(*connection_, panel, {"_NET_WM_STATE_ABOVE", false});
  // jwm 2.4.3 and awesome 4.3 find a transient's new place only when it is stacked next.
  const std::uint32_t above = XCB_STACK_MODE_ABOVE;
  forgive(xcb, xcb_configure_window_checked(xcb, panel, XCB_CONFIG_WINDOW_STACK_MODE, &above));
}

void FloatingPanels::detachAll() {
  owner_ = XCB_WINDOW_NONE;
  areInItsLayer_ = false;
  for (const auto& [panel, limit] : panels_) {
    forgive(connection_->xcb(),
            xcb_delete_property_checked(connection_->xcb(), panel, XCB_ATOM_WM_TRANSIENT_FOR));
    // fluxbox 1.3.5 and awesome 4.3 have taken it away. xfwm4 4.18.0 leaves it set, but does not
    // put such a window above others again unless it changes.
    putAboveAnew(*connection_, panel);
  }
}

void FloatingPanels::restoreMinimised() {
  // Managers minimise a window with its transients, and bring a transient back with its window: so
  // only panels that are free again are brought back (ICCCM, 4.1.4: by mapping them).
  if (owner_ != XCB_WINDOW_NONE) return;
  for (const auto& [panel, limit] : panels_) {
    if (!isIn(*connection_, panel, iconicState)) continue;
    forgive(connection_->xcb(), xcb_map_window_checked(connection_->xcb(), panel));
  }
}

}  // namespace vistrel::platform::linux_desktop
