#pragma once

#include <QSocketNotifier>
#include <functional>

namespace vistrel::platform::linux_desktop {

/// Calls back from the event loop when the process is asked to end by SIGINT, SIGTERM or SIGHUP,
/// also for a signal that came before the loop ran. A signal that the process was started with
/// ignored stays ignored. Sets the process's deadline to end. One at a time; main thread.
class TerminationSignals {
 public:
  explicit TerminationSignals(std::function<void()> asked);
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;
  ~TerminationSignals();

 private:
  const int descriptor_;
  QSocketNotifier notifier_;
};

}  // namespace vistrel::platform::linux_desktop
