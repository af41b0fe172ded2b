#include "platform/linux/x11/server/ServedConnection.h"

#include <utility>

namespace vistrel::platform::linux_desktop {

void serveOn(SerialQueue& queue, const Connection& connection, std::function<void()> serve) {
  queue.watch(connection.descriptor(), [&queue, &connection, serve = std::move(serve)] {
    if (connection.isLost()) return queue.unwatch(connection.descriptor());
    serve();
  });
}

}  // namespace vistrel::platform::linux_desktop
