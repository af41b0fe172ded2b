#include "platform/linux/x11/server/Connection.h"

#include <algorithm>
#include <mutex>
#include <tuple>
#include <utility>
#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/render.h>
#include <xcb/res.h>
#include <xcb/screensaver.h>
#include <xcb/shape.h>
#include <xcb/xfixes.h>

#include "platform/linux/x11/server/StrayErrors.h"

namespace vistrel::platform::linux_desktop {
namespace {

const xcb_screen_t* screenOf(xcb_connection_t* connection, int number) {
  auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; number > 0 && screen.rem > 1; --number) xcb_screen_next(&screen);
  return screen.data;
}

template <class Reply>
bool isAtLeast(const Reply& reply, std::uint32_t major, std::uint32_t minor) {
  return reply && std::tuple<std::uint32_t, std::uint32_t>(
                      reply->major_version, reply->minor_version) >= std::tuple(major, minor);
}

bool isPresent(xcb_connection_t* connection, xcb_extension_t& extension) {
  const auto* data = xcb_get_extension_data(connection, &extension);
  return data && data->present;
}

/// 0 where the connection has broken meanwhile, for then nothing is known of any extension.
std::uint8_t firstEvent(xcb_connection_t* connection, xcb_extension_t& extension) {
  const auto* data = xcb_get_extension_data(connection, &extension);
  return data ? data->first_event : std::uint8_t{0};
}

bool isError(const xcb_generic_event_t& event) { return event.response_type == 0; }

/// Whether another client sent it with SendEvent.
bool isMadeUp(const xcb_generic_event_t& event) { return (event.response_type & 0x80) != 0; }

bool hasComposite(xcb_connection_t* c) {
  return isPresent(c, xcb_composite_id) && isAtLeast(replyTo<xcb_composite_query_version_reply>(
                                                         c, xcb_composite_query_version(c, 0, 4)),
                                                     0, 4);
}

bool hasDamage(xcb_connection_t* c) {
  return isPresent(c, xcb_damage_id) &&
         isAtLeast(replyTo<xcb_damage_query_version_reply>(c, xcb_damage_query_version(c, 1, 1)), 1,
                   0);
}

bool hasFixes(xcb_connection_t* c) {
  return isPresent(c, xcb_xfixes_id) &&
         isAtLeast(replyTo<xcb_xfixes_query_version_reply>(c, xcb_xfixes_query_version(c, 4, 0)), 2,
                   0);
}

bool hasRender(xcb_connection_t* c) {
  return isPresent(c, xcb_render_id) &&
         isAtLeast(replyTo<xcb_render_query_version_reply>(c, xcb_render_query_version(c, 0, 11)),
                   0, 10);
}

bool hasClientIds(xcb_connection_t* c) {
  if (!isPresent(c, xcb_res_id)) return false;
  const auto version = replyTo<xcb_res_query_version_reply>(c, xcb_res_query_version(c, 1, 2));
  return version && std::tuple(version->server_major, version->server_minor) >= std::tuple(1, 2);
}

}  // namespace

std::unique_ptr<Connection> Connection::open() {
  // libXau 1.0.9 keeps the name of the authority file in static memory.
  static std::mutex opening;
  const std::lock_guard lock(opening);
  int number = 0;
  auto* connection = xcb_connect(nullptr, &number);
  if (xcb_connection_has_error(connection)) {
    xcb_disconnect(connection);
    return nullptr;
  }
  return std::unique_ptr<Connection>(new Connection(connection, number));
}

Connection::Connection(xcb_connection_t* connection, int screenNumber)
    : connection_(connection),
      screenNumber_(screenNumber),
      screen_(screenOf(connection, screenNumber)) {
  setUpExtensions();
}

void Connection::setUpExtensions() {
  for (auto* each : {&xcb_composite_id, &xcb_damage_id, &xcb_xfixes_id, &xcb_render_id, &xcb_res_id,
                     &xcb_screensaver_id, &xcb_shape_id}) {
    xcb_prefetch_extension_data(xcb(), each);
  }
  // Each version must be asked for even where another is missing: it enables the extension.
  const bool composite = hasComposite(xcb());
  const bool damage = hasDamage(xcb());
  const bool fixes = hasFixes(xcb());
  const bool render = hasRender(xcb());
  extensions_.offersClientIds = hasClientIds(xcb());
  extensions_.offersShapes = isPresent(xcb(), xcb_shape_id);
  if (extensions_.offersShapes) {
    extensions_.shapeNotify = firstEvent(xcb(), xcb_shape_id) + XCB_SHAPE_NOTIFY;
  }
  if (isPresent(xcb(), xcb_screensaver_id)) {
    extensions_.screenSaverNotify = firstEvent(xcb(), xcb_screensaver_id) + XCB_SCREENSAVER_NOTIFY;
  }
  if (damage) extensions_.damageNotify = firstEvent(xcb(), xcb_damage_id) + XCB_DAMAGE_NOTIFY;
  if (fixes) {
    const auto first = firstEvent(xcb(), xcb_xfixes_id);
    extensions_.cursorNotify = first + XCB_XFIXES_CURSOR_NOTIFY;
    extensions_.selectionNotify = first + XCB_XFIXES_SELECTION_NOTIFY;
  }
  if (render) {
    const auto reply =
        replyTo<xcb_render_query_pict_formats_reply>(xcb(), xcb_render_query_pict_formats(xcb()));
    if (reply) formats_ = pictureFormats(*reply);
  }
  const bool formats = formats_.opaque != XCB_NONE && formats_.translucent != XCB_NONE &&
                       formats_.alphaMask != XCB_NONE;
  const auto require = [this](bool isOffered, const char* name) {
    if (!isOffered) extensions_.missingForCapture.emplace_back(name);
  };
  require(composite, "Composite 0.4");
  require(damage, "DAMAGE 1.1");
  require(fixes, "XFIXES 2.0");
  require(render && formats, "RENDER 0.10");
  extensions_.offersCapture = extensions_.missingForCapture.empty();
}

xcb_atom_t Connection::atom(std::string_view name) {
  const auto known = atoms_.find(name);
  if (known != atoms_.end()) return known->second;
  const auto reply = replyTo<xcb_intern_atom_reply>(
      xcb(), xcb_intern_atom(xcb(), 0, static_cast<std::uint16_t>(name.size()), name.data()));
  if (!reply) return XCB_ATOM_NONE;
  return atoms_.emplace(name, reply->atom).first->second;
}

XcbEvent Connection::pollEvent() {
  if (!lookedAt_.empty()) return nextReadEvent();
  XcbEvent event(xcb_poll_for_event(xcb()));
  if (!event || concernsUs(*event)) return event;
  return nextReadEvent();
}

void Connection::serve(const std::function<void(const xcb_generic_event_t&)>& handle,
                       const std::function<void()>& proceed) {
  auto event = pollEvent();
  do {
    for (; event; event = nextReadEvent()) handle(*event);
    if (proceed) proceed();
    flush();
    event = nextReadEvent();
  } while (event);
}

bool Connection::hasRead(const std::function<bool(const xcb_generic_event_t&)>& matches) {
  while (auto event = nextHeldEvent()) lookedAt_.push_back(std::move(event));
  return std::any_of(lookedAt_.begin(), lookedAt_.end(),
                     [&](const XcbEvent& event) { return matches(*event); });
}

XcbEvent Connection::nextReadEvent() {
  if (lookedAt_.empty()) return nextHeldEvent();
  auto event = std::move(lookedAt_.front());
  lookedAt_.pop_front();
  return event;
}

XcbEvent Connection::nextHeldEvent() {
  XcbEvent event(xcb_poll_for_queued_event(xcb()));
  while (event && !concernsUs(*event)) event.reset(xcb_poll_for_queued_event(xcb()));
  return event;
}

bool Connection::concernsUs(const xcb_generic_event_t& event) {
  if (isError(event)) {
    reportStrayError(eventAs<xcb_generic_error_t>(event));
    return false;
  }
  return !isMadeUp(event);
}

xcb_void_cookie_t Connection::selectEvents(xcb_window_t window, std::uint32_t mask) {
  return xcb_change_window_attributes_checked(xcb(), window, XCB_CW_EVENT_MASK, &mask);
}

void Connection::sync() { replyTo<xcb_get_input_focus_reply>(xcb(), xcb_get_input_focus(xcb())); }

}  // namespace vistrel::platform::linux_desktop
