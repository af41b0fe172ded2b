#include "tests/hostile/Footprint.h"

#include <malloc.h>
#include <unistd.h>

#include "tests/support/ClientsOfProcess.h"
#include "tests/support/ProcessEntries.h"

#ifdef __SANITIZE_ADDRESS__
/// The allocator's; GCC 12 comes without the header (sanitizer/allocator_interface.h).
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace vistrel::hostile {
namespace {

std::size_t bytesOnHeap() {
#ifdef __SANITIZE_ADDRESS__
  return __sanitizer_get_current_allocated_bytes();
#else
  malloc_trim(0);
  const auto all = mallinfo2();
  return all.arena - all.fordblks + all.hblkhd;
#endif
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Footprint& footprint) {
  return stream << footprint.clients << " clients, " << footprint.descriptors << " descriptors, "
                << footprint.threads << " threads, " << footprint.heapBytes
                << " bytes on the heap; in the server " << footprint.server;
}

Footprint footprint(const testbed::XConnection& connection) {
  Footprint result;
  result.server = testbed::resourcesOfProcess(connection, getpid());
  result.clients = testbed::clientsOfProcess(connection, getpid()).size();
  result.descriptors = testbed::openDescriptors(getpid());
  result.threads = testbed::threadCount(getpid());
  result.heapBytes = bytesOnHeap();
  return result;
}

bool hasNotGrown(const Footprint& earlier, const Footprint& later) {
  constexpr std::size_t allocatorsOwn = 1'000'000;
  for (const auto& [type, count] : later.server.counts) {
    const auto former = earlier.server.counts.find(type);
    if (count > (former == earlier.server.counts.end() ? 0 : former->second)) return false;
  }
  return later.server.pixmapBytes <= earlier.server.pixmapBytes &&
         later.clients <= earlier.clients && later.descriptors <= earlier.descriptors &&
         later.threads <= earlier.threads && later.heapBytes <= earlier.heapBytes + allocatorsOwn;
}

}  // namespace vistrel::hostile
