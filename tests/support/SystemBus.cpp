#include "tests/support/SystemBus.h"

#include "tests/support/DBus.h"

namespace vistrel::testbed {

void SystemBus::awaitLogind() {
  const BusConnection connection = connectToBus(bus_.address());
  awaitStart(logind_, "dbusmock", [&] { return isOnBus(connection, "org.freedesktop.login1"); });
}

}  // namespace vistrel::testbed
