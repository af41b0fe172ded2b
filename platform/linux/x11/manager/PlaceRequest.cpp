#include "platform/linux/x11/manager/PlaceRequest.h"

#include <array>

#include "platform/linux/Trace.h"
#include "platform/linux/x11/manager/Manager.h"
#include "platform/linux/x11/manager/RequestedOrigin.h"
#include "platform/linux/x11/server/Property.h"

namespace vistrel::platform::linux_desktop {
namespace {

using Numbers = std::array<std::uint32_t, 4>;

/// None when it has gone.
std::optional<PixelRect> clientArea(Connection& connection, xcb_window_t window) {
  const auto place = FramedWindowRequest(connection, window, connection.root()).fetch();
  return place ? std::optional(place->client) : std::nullopt;
}

void requestByMessage(Connection& connection, xcb_window_t window, std::uint32_t gravity,
                      const Numbers& numbers) {
  // EWMH, _NET_MOVERESIZE_WINDOW: all four numbers. The window's own gravity by its number, since
  // fluxbox 1.3.5 takes 0, which stands for it, for none.
  constexpr std::uint32_t all = 0xf << 8;
  constexpr std::uint32_t source = byPerson << 12;
  tellManager(connection, window, "_NET_MOVERESIZE_WINDOW",
              {gravity | all | source, numbers[0], numbers[1], numbers[2], numbers[3]});
}

/// As the window's own program would.
void requestByConfiguring(Connection& connection, xcb_window_t window, const Numbers& numbers) {
  constexpr std::uint16_t all = XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y |
                                XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
  forgive(connection.xcb(),
          xcb_configure_window_checked(connection.xcb(), window, all, numbers.data()));
}

}  // namespace

void requestPlace(Connection& connection, xcb_window_t window, const PixelRect& client,
                  const Extents& frame, double deadline) {
  trace(TraceTopic::manager, [&] {
    return windowText(window) + " is to be at " + areaText(client) + ", without its frame";
  });
  const auto gravity = gravityFrom(propertyOf(connection, window, "WM_NORMAL_HINTS").values());
  const auto origin = requestedOrigin(client, frame, gravity);
  const Numbers numbers{static_cast<std::uint32_t>(origin.x), static_cast<std::uint32_t>(origin.y),
                        static_cast<std::uint32_t>(client.width),
                        static_cast<std::uint32_t>(client.height)};
  const auto former = clientArea(connection, window);
  requestByMessage(connection, window, gravity, numbers);
  awaitManagerUntil(connection, deadline);
  if (former == client || clientArea(connection, window) != former) return;
  // bspwm 0.9.10 and awesome 4.3 do not know the message, and herbstluftwm 0.9.5 lists it alone.
  requestByConfiguring(connection, window, numbers);
  awaitManagerUntil(connection, deadline);
}

}  // namespace vistrel::platform::linux_desktop
