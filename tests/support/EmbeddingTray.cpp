#include "tests/support/EmbeddingTray.h"

#include <array>
#include <stdexcept>

#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::testbed {
namespace {

constexpr const char* selection = "_NET_SYSTEM_TRAY_S0";

}  // namespace

EmbeddingTray::EmbeddingTray(const std::string& display, Rect area)
    : connection_(display), window_(xcb_generate_id(connection_.get())) {
  const std::array<std::uint32_t, 2> values{0xd0d0d0, 1};
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, connection_.root(),
                    static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                    static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height),
                    0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
  xcb_map_window(connection_.get(), window_);
  xcb_set_selection_owner(connection_.get(), window_, connection_.atom(selection),
                          XCB_CURRENT_TIME);
  announce();
}

// ICCCM 2.8, "Manager Selections".
void EmbeddingTray::announce() const {
  const XReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
      connection_.get(), xcb_get_selection_owner(connection_.get(), connection_.atom(selection)),
      nullptr));
  if (!owner || owner->owner != window_) {
    throw std::runtime_error("the display has a tray");
  }
  connection_.send(connection_.root(), connection_.root(), "MANAGER",
                   {XCB_CURRENT_TIME, connection_.atom(selection), window_},
                   XCB_EVENT_MASK_STRUCTURE_NOTIFY);
}

xcb_window_t EmbeddingTray::icon() {
  if (!eventually([&] {
        takeIn();
        return isViewable(connection_, icon_);
      })) {
    throw std::runtime_error("no icon comes");
  }
  return icon_;
}

void EmbeddingTray::takeIn() {
  constexpr std::uint32_t requestDock = 0;
  while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
    if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE) {
      continue;
    }
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
    const auto& data = message.data.data32;
    if (message.type == connection_.atom("_NET_SYSTEM_TRAY_OPCODE") && data[1] == requestDock) {
      embed(data[2]);
    }
  }
}

// XEmbed 0.5, "Embedding life cycle".
void EmbeddingTray::embed(xcb_window_t icon) {
  constexpr std::uint32_t embeddedNotify = 0;
  icon_ = icon;
  xcb_reparent_window(connection_.get(), icon, window_, 0, 0);
  connection_.send(icon, icon, "_XEMBED", {XCB_CURRENT_TIME, embeddedNotify, 0, window_, 0},
                   XCB_EVENT_MASK_NO_EVENT);
  xcb_map_window(connection_.get(), icon);
  connection_.sync();
}

}  // namespace vistrel::testbed
