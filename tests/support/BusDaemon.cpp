#include "tests/support/BusDaemon.h"

#include <stdexcept>

namespace vistrel::testbed {

BusDaemon::BusDaemon(const std::filesystem::path& configuration,
                     const std::vector<std::string>& environment, Pipe pipe)
    : bus_({.arguments = {"dbus-daemon", "--config-file=" + configuration.string(), "--nofork",
                          "--nopidfile", "--print-address=" + std::to_string(pipe.writeEnd.get())},
            .environment = environment,
            .inherited = {pipe.writeEnd.get()}}) {
  pipe.writeEnd.close();
  address_ = readLine(pipe.readEnd);
  if (address_.empty()) {
    throw std::runtime_error("dbus-daemon did not start: " + bus_.standardError());
  }
}

}  // namespace vistrel::testbed
