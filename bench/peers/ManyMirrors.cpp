#include "bench/peers/ManyMirrors.h"

#include <string>
#include <thread>

#include "bench/MirroredSession.h"
#include "bench/peers/Figures.h"
#include "bench/peers/HeldMemory.h"

namespace vistrel::bench {

void measureManyMirrors(const std::filesystem::path& folder, std::chrono::duration<double> span) {
  using Clock = std::chrono::steady_clock;
  Figures figures(folder / "many.csv", {"mirrors", "client_ms_per_s", "server_ms_per_s",
                                        "client_bytes", "server_pixmap_bytes"});
  for (const int mirrors : {1, 4, 16, 64}) {
    const MirroredSession session(mirrors);
    const double client = session.clientSeconds();
    const double server = session.serverSeconds();
    const auto start = Clock::now();
    std::this_thread::sleep_for(span);
    const double perSecond = 1000 / std::chrono::duration<double>(Clock::now() - start).count();
    figures.add({std::to_string(mirrors), figure((session.clientSeconds() - client) * perSecond),
                 figure((session.serverSeconds() - server) * perSecond),
                 std::to_string(ownBytes(session.clientPid())),
                 std::to_string(pixmapBytes(session.connection(), session.clientPid()))});
  }
}

}  // namespace vistrel::bench
