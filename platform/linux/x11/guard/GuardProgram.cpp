// vistrel-guard WINDOW TOKEN: waits until the owner of parked windows has ended, however that came
// about, sends home what it has left parked, and takes the hidden monitors away that it has left
// behind. Ends then, or with the display.

#include <charconv>
#include <limits>
#include <string_view>
#include <unistd.h>

#include "platform/linux/x11/guard/Watch.h"
#include "platform/linux/x11/monitors/HiddenMonitor.h"
#include "platform/linux/x11/parking/Homecoming.h"

namespace {

using namespace vistrel::platform::linux_desktop;

/// 0 for anything but a number.
std::uint32_t numberIn(std::string_view text) {
  std::uint32_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

void guard(const OwnerId& owner) {
  const auto connection = Connection::open();
  if (!connection) return;
  awaitEndOf(*connection, owner.window, [&] { return !isAlive(*connection, owner); });
  bringAbandonedHome(*connection, std::numeric_limits<double>::infinity());
  // The owner may have been one connection of several, and monitors go last.
  for (const auto monitor : monitorOwnersOf(*connection, owner.token)) {
    awaitEndOf(*connection, monitor, [&] { return !hasWindow(*connection, monitor); });
  }
  removeAbandonedMonitors(*connection);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  // So that whoever has started it is not its parent, and need not see to its end.
  if (fork() != 0) _exit(0);
  guard({numberIn(argv[1]), numberIn(argv[2])});
  return 0;
}
