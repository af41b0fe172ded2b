#pragma once

#include <cstdint>
#include <map>
#include <ostream>
#include <string>

#include "tests/support/XConnection.h"

namespace vistrel::hostile {

/// What the display server holds for one client (X-Resource 1.2), to find what is never given back.
struct ServerResources {
  /// How many there are of each type.
  std::map<std::string, std::uint32_t> counts;
  /// Of its pixmaps, those included that it shares with others.
  std::uint64_t pixmapBytes = 0;

  friend bool operator==(const ServerResources&, const ServerResources&) = default;
  /// As GoogleTest prints it.
  friend std::ostream& operator<<(std::ostream& stream, const ServerResources& resources);
};

/// `idBase` is the first of the client's ids.
ServerResources resourcesOf(const testbed::XConnection& connection, std::uint32_t idBase);

}  // namespace vistrel::hostile
