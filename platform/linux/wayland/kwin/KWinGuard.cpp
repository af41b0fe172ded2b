#include "platform/linux/wayland/kwin/KWinGuard.h"

#include <array>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "platform/linux/Companions.h"
#include "platform/linux/DetachedProgram.h"
#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {

KWinGuard::~KWinGuard() {
  if (guard_ < 0) return;
  // That it ends without a word is the end of the program.
  if (!isLeftBehind_) send(guard_, "", 1, MSG_NOSIGNAL);
  close(guard_);
}

void KWinGuard::ensureRunning() {
  if (std::exchange(isTried_, true)) return;
  const auto program = companion("vistrel-kwin-guard", VISTREL_INSTALLED_KWIN_GUARD);
  std::array<int, 2> ends{};
  if (program.empty() || socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    trace(TraceTopic::manager, [] { return "no guard of native windows is installed"; });
    return;
  }
  guard_ = ends[0];
  if (!startDetached(program, {}, {ends[1]})) {
    trace(TraceTopic::manager, [] { return "the guard of native windows does not start"; });
  }
  close(ends[1]);
}

}  // namespace vistrel::platform::linux_desktop
