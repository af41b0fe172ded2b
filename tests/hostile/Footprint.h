#pragma once

#include <cstddef>
#include <ostream>

#include "tests/support/ServerResources.h"
#include "tests/support/XConnection.h"

namespace vistrel::hostile {

/// What this process holds at a moment, to find what grows with time.
struct Footprint {
  /// All of its connections to the display server together.
  testbed::ServerResources server;
  std::size_t clients = 0;
  std::size_t descriptors = 0;
  std::size_t threads = 0;
  /// On the heap, as its allocator says; under the address sanitizer as that says.
  std::size_t heapBytes = 0;

  /// As GoogleTest prints it.
  friend std::ostream& operator<<(std::ostream& stream, const Footprint& footprint);
};

Footprint footprint(const testbed::XConnection& connection);

/// Whether `later` is no more than `earlier`, but for what an allocator keeps for itself.
bool hasNotGrown(const Footprint& earlier, const Footprint& later);

}  // namespace vistrel::hostile
