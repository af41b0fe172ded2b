#include "tests/managed/LazyManager.h"

#include <utility>

#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {

LazyManager::LazyManager(const std::string& display)
    : connection_(display),
      window_(xcb_generate_id(connection_.get())),
      question_(connection_.atom("_NET_REQUEST_FRAME_EXTENTS")),
      move_(connection_.atom("_NET_MOVERESIZE_WINDOW")) {
  announce();
  thread_ = std::jthread([this](const std::stop_token& stop) { answerUntil(stop); });
}

void LazyManager::announce() {
  const xcb_window_t root = connection_.root();
  const std::uint32_t redirect = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
  xcb_change_window_attributes(connection_.get(), root, XCB_CW_EVENT_MASK, &redirect);
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, root, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  connection_.setNumbers(root, "_NET_SUPPORTED", XCB_ATOM_ATOM, {question_, move_});
  noticeScreen();
  for (const xcb_window_t each : {window_, root}) {
    connection_.setNumbers(each, "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {window_});
  }
  connection_.sync();
}

void LazyManager::noticeScreen() {
  const Rect screen = areaOf(connection_, connection_.root()).value();
  connection_.setNumbers(
      connection_.root(), "_NET_DESKTOP_GEOMETRY", XCB_ATOM_CARDINAL,
      {static_cast<std::uint32_t>(screen.width), static_cast<std::uint32_t>(screen.height)});
}

void LazyManager::answerUntil(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    const XReply<xcb_generic_event_t> event(xcb_poll_for_event(connection_.get()));
    if (!event) {
      letOthersRun();
    } else if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE) {
      take(*reinterpret_cast<const xcb_client_message_event_t*>(event.get()));
    } else if ((event->response_type & 0x7f) == XCB_CONFIGURE_REQUEST) {
      answer(*reinterpret_cast<const xcb_configure_request_event_t*>(event.get()));
    }
  }
}

void LazyManager::take(const xcb_client_message_event_t& message) {
  if (message.type == move_) {
    moves_.push_back(message);
  } else if (message.type == question_) {
    catchUp();
    connection_.setNumbers(message.window, "_NET_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {0, 0, 0, 0});
    connection_.sync();
  }
}

void LazyManager::answer(const xcb_configure_request_event_t& request) {
  catchUp();
  const std::uint32_t granted[] = {static_cast<std::uint32_t>(request.x), request.width};
  xcb_configure_window(connection_.get(), request.window,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_WIDTH, granted);
  connection_.sync();
}

void LazyManager::catchUp() {
  for (const auto& each : std::exchange(moves_, {})) {
    // EWMH: the gravity and some flags come before the place.
    xcb_configure_window(connection_.get(), each.window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                         &each.data.data32[1]);
  }
  if (++timesAsked_ % 3 == 0) {
    noticeScreen();
  }
}

}  // namespace vistrel::testbed
