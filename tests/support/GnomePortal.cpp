#include "tests/support/GnomePortal.h"

#include "tests/support/DBus.h"

namespace vistrel::testbed {

GnomePortal::GnomePortal(const std::string& busAddress,
                         const std::vector<std::string>& environment) {
  const BusConnection bus = connectToBus(busAddress);
  const auto start = [&](const char* program, const std::string& name) {
    programs_.push_back(std::make_unique<ChildProcess>(ChildProcess::Command{
        .arguments = {std::string("/usr/libexec/") + program}, .environment = environment}));
    awaitStart(*programs_.back(), program, [&] { return isOnBus(bus, name); });
  };
  // Each looks for the one before as it starts.
  start("xdg-permission-store", "org.freedesktop.impl.portal.PermissionStore");
  start("xdg-desktop-portal-gnome", "org.freedesktop.impl.portal.desktop.gnome");
  start("xdg-desktop-portal", "org.freedesktop.portal.Desktop");
}

}  // namespace vistrel::testbed
