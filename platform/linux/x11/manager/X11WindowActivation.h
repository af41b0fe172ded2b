#pragma once

#include <memory>
#include <utility>

#include "platform/linux/session/WindowActivation.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// By way of the window manager (EWMH, `_NET_ACTIVE_WINDOW`). Programs are known by the windows
/// that it knows of.
class X11WindowActivation final : public WindowActivation {
 public:
  explicit X11WindowActivation(std::shared_ptr<Connection> connection)
      : connection_(std::move(connection)) {}

  bool hasWindows(std::int32_t processID) override;
  bool activateWindows(std::int32_t processID) override;
  void activateWindow(std::uint32_t window, std::uint32_t time) override;
  void raise(std::uint32_t window) override;

 private:
  const std::shared_ptr<Connection> connection_;
};

}  // namespace vistrel::platform::linux_desktop
