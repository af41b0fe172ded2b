#include "tests/support/MonitorReport.h"

#include <stdexcept>

namespace vistrel::testbed {

std::string monitorReport(const PrivateDisplay& display) {
  std::string report;
  for (const char* question : {"--query", "--listmonitors"}) {
    ChildProcess xrandr({.arguments = {"xrandr", question}, .environment = display.environment()});
    const auto ending = xrandr.waitForEnd();
    if (!ending || ending->exitStatus != 0) {
      throw std::runtime_error("xrandr fails: " + xrandr.standardError());
    }
    report += xrandr.standardOutput();
  }
  return report;
}

}  // namespace vistrel::testbed
