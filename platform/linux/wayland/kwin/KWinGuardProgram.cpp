// vistrel-kwin-guard: has a socket of the program's as its first descriptor. Ends once the program
// says that it leaves nothing behind. Where the program ends before, sends home the native windows
// that it has left parked, and gives the menu keys back.

#include <cerrno>
#include <chrono>
#include <thread>
#include <unistd.h>

#include "platform/linux/DetachedProgram.h"
#include "platform/linux/SerialQueue.h"
#include "platform/linux/wayland/kwin/GlobalMenuKeys.h"
#include "platform/linux/wayland/kwin/KWinScripts.h"
#include "platform/linux/wayland/kwin/NativeHomecoming.h"
#include "platform/linux/wayland/kwin/ParkedRecord.h"

namespace {

using namespace vistrel::platform::linux_desktop;

/// How long KWin may hang, in seconds: nobody waits for the guard.
constexpr double patience = 60;

/// Waits for the one or the other.
bool isDismissedBeforeTheProgramEnds() {
  char word = 0;
  ssize_t length = -1;
  do {
    length = read(firstHandedDescriptor, &word, 1);
  } while (length < 0 && errno == EINTR);
  return length > 0;
}

/// The program's hold on the record goes with its process, as its socket does, perhaps a moment
/// later. Whoever has started since and holds it for good has done this work.
bool comesToOwn(ParkedRecord& record) {
  constexpr double longestMoment = 10;
  constexpr std::chrono::milliseconds betweenLooks{10};
  const double deadline = monotonicNow() + longestMoment;
  while (!record.own() && monotonicNow() < deadline) std::this_thread::sleep_for(betweenLooks);
  return record.own();
}

void tidyUp() {
  if (const auto keys = GlobalMenuKeys::connect([] {})) keys->release();
  ParkedRecord record;
  if (!comesToOwn(record)) return;
  KWinScripts scripts;
  bringLeftHome(record, scripts, monotonicNow() + patience);
}

}  // namespace

int main() {
  // So that whoever has started it is not its parent, and need not see to its end.
  if (fork() != 0) _exit(0);
  if (!isDismissedBeforeTheProgramEnds()) tidyUp();
  return 0;
}
