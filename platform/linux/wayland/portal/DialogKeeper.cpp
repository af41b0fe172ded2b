#include "platform/linux/wayland/portal/DialogKeeper.h"

#include <array>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "platform/linux/Companions.h"
#include "platform/linux/DetachedProgram.h"
#include "platform/linux/Trace.h"

namespace vistrel::platform::linux_desktop {

std::unique_ptr<DialogKeeper> DialogKeeper::start(int bus) {
  const auto program = companion("vistrel-dialog-keeper", VISTREL_INSTALLED_KEEPER);
  std::array<int, 2> ends{};
  if (program.empty() || socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    trace(TraceTopic::capture, [] { return "nobody keeps the portal's dialog open"; });
    return nullptr;
  }
  const bool isStarted = startDetached(program, {}, {bus, ends[1]});
  close(ends[1]);
  std::unique_ptr<DialogKeeper> keeper(new DialogKeeper(ends[0]));
  return isStarted ? std::move(keeper) : nullptr;
}

DialogKeeper::~DialogKeeper() {
  // That it ends without a word is the end of the program.
  send(keeper_, "", 1, MSG_NOSIGNAL);
  close(keeper_);
}

}  // namespace vistrel::platform::linux_desktop
