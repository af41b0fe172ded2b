#include "platform/linux/qt/process/TerminationSignals.h"

#include <array>
#include <cassert>
#include <cerrno>
#include <cstdint>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/qt/process/EndDeadline.h"

namespace vistrel::platform::linux_desktop {

namespace {

constexpr std::array handled = {SIGINT, SIGTERM, SIGHUP};

volatile sig_atomic_t wakeUpDescriptor = -1;

/// How long the main thread may take, in milliseconds: it may be waiting for a service that hangs.
constexpr long patience = 900;

/// Runs in a signal's context: no more than system calls.
void wakeUp(int /*signal*/) {
  const int savedError = errno;
  EndDeadline::endIn(patience);
  const std::uint64_t one = 1;
  const auto written = write(wakeUpDescriptor, &one, sizeof one);
  static_cast<void>(written);
  errno = savedError;
}

void setHandler(int signal, void (*handler)(int)) {
  struct sigaction action {};
  sigaction(signal, nullptr, &action);
  if (action.sa_handler == SIG_IGN) return;
  action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigaction(signal, &action, nullptr);
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> asked)
    : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      notifier_(descriptor_, QSocketNotifier::Read) {
  assert(isMainThread());
  wakeUpDescriptor = descriptor_;
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_,
                   [this, work = std::move(asked)] {
                     notifier_.setEnabled(false);
                     work();
                   });
  for (const int signal : handled) setHandler(signal, wakeUp);
}

TerminationSignals::~TerminationSignals() {
  for (const int signal : handled) setHandler(signal, SIG_DFL);
  wakeUpDescriptor = -1;
  close(descriptor_);
}

}  // namespace vistrel::platform::linux_desktop
