#pragma once

#include <cstdint>
#include <string>

#include "tests/support/DBus.h"
#include "tests/support/PersonInput.h"
#include "tests/support/WaylandSession.h"

namespace vistrel::testbed {

/// A person's pointer and keyboard in a session of mutter or gnome-shell
/// (org.gnome.Mutter.RemoteDesktop). While there is one, the desktop shows that it is being
/// controlled. There are no others: programs get to know them as devices that somebody plugs in,
/// those that start later have them at once.
class MutterHand : public PersonInput {
 public:
  /// Returns once the compositor has them.
  explicit MutterHand(const WaylandSession& session);

  void moveTo(Point point) override;

 private:
  void turn(Button button, bool isDown) override;
  void turnKey(std::uint32_t key, bool isDown) override;
  void plugIn(const WaylandSession& session);

  BusConnection bus_;
  BusObject input_;
  /// Of the monitor: what absolute motions count in.
  std::string stream_;
};

}  // namespace vistrel::testbed
