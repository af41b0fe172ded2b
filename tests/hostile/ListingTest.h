#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/x11/listing/WindowList.h"
#include "tests/hostile/HostileTest.h"

namespace vistrel::hostile {

/// The window list on a display where the test itself plays the window manager.
class ListingTest : public HostileTest {
 protected:
  std::vector<platform::WindowRecord> listedWindows() {
    using namespace platform::linux_desktop;
    return listWindows(*lister_, names_, ScreenLayout(), platform::DesktopWindows::included,
                       platform::ListedWindows::onScreen)
        ->windows;
  }
  std::vector<xcb_window_t> listedIds() {
    std::vector<xcb_window_t> ids;
    for (const auto& each : listedWindows()) ids.push_back(each->windowID);
    return ids;
  }
  /// Throws when it is not listed.
  platform::WindowRecord listed(const RawSource& source) {
    for (const auto& each : listedWindows()) {
      if (each->windowID == source.id()) return each;
    }
    throw std::runtime_error("a window is not listed");
  }

  /// A property of any type and format (8, 16 or 32 bits).
  void set(xcb_window_t window, std::string_view property, std::string_view type,
           std::uint8_t format, std::string_view bytes) const {
    // In parts, since requests are shorter than properties may be.
    constexpr std::size_t part = 1 << 16;
    for (std::size_t at = 0; at == 0 || at < bytes.size(); at += part) {
      const auto piece = bytes.substr(at, part);
      xcb_change_property(connection_.get(), at == 0 ? XCB_PROP_MODE_REPLACE : XCB_PROP_MODE_APPEND,
                          window, connection_.atom(property), connection_.atom(type), format,
                          static_cast<std::uint32_t>(piece.size() / (format / 8)), piece.data());
    }
    connection_.sync();
  }

  /// Says that a window manager which follows EWMH runs (_NET_SUPPORTING_WM_CHECK).
  void playManager() const {
    const auto window = manager_.id();
    for (const auto each : {connection_.root(), window}) {
      connection_.setNumbers(each, "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {window});
    }
    connection_.sync();
  }

  const std::unique_ptr<platform::linux_desktop::Connection> lister_ =
      platform::linux_desktop::Connection::open();
  platform::linux_desktop::ApplicationNames names_;
  RawSource manager_{connection_, {.area = {-10, -10, 1, 1}, .overrideRedirect = true}};
};

}  // namespace vistrel::hostile
