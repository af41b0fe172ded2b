#include "platform/linux/x11/server/AwaitedEvents.h"

#include <cmath>
#include <poll.h>

#include "platform/linux/SerialQueue.h"

namespace vistrel::platform::linux_desktop {

bool awaitEvents(Connection& connection, double deadline,
                 const std::function<void(const xcb_generic_event_t&)>& handle,
                 const std::function<bool()>& isDone) {
  while (!isDone()) {
    // Before any event: somebody may make them faster than they can be handled.
    const double left = deadline - monotonicNow();
    if (left <= 0 || connection.isLost()) return false;
    // The answer to what `isDone` asked may have brought the event along, so the descriptor would
    // tell nothing of it.
    if (const auto event = connection.pollEvent()) {
      handle(*event);
      continue;
    }
    pollfd incoming{connection.descriptor(), POLLIN, 0};
    poll(&incoming, 1, static_cast<int>(std::ceil(left * 1000)));
  }
  return true;
}

}  // namespace vistrel::platform::linux_desktop
