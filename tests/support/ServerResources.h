#pragma once

#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <sys/types.h>

#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// What the display server holds for clients (X-Resource 1.2), to find what is never given back.
struct ServerResources {
  /// How many there are of each type.
  std::map<std::string, std::uint32_t> counts;
  /// Of their pixmaps, those included that they share with others.
  std::uint64_t pixmapBytes = 0;

  friend bool operator==(const ServerResources&, const ServerResources&) = default;
  /// As GoogleTest prints it.
  friend std::ostream& operator<<(std::ostream& stream, const ServerResources& resources);
};

/// `idBase` is the first of the client's ids.
ServerResources resourcesOf(const XConnection& connection, std::uint32_t idBase);
/// All connections of the process together.
ServerResources resourcesOfProcess(const XConnection& connection, pid_t process);

}  // namespace vistrel::testbed
