#include "platform/linux/qt/process/EndDeadline.h"

#include <cassert>
#include <csignal>
#include <ctime>
#include <signal.h>
#include <unistd.h>

#include "platform/linux/CurrentThread.h"

namespace vistrel::platform::linux_desktop {

namespace {

constexpr long perSecond = 1000;

timer_t timer{};
volatile std::sig_atomic_t hasTimer = 0;

void endProcess(int /*signal*/) { _exit(0); }

bool isSet(const timespec& time) { return time.tv_sec != 0 || time.tv_nsec != 0; }

bool isSooner(const timespec& a, const timespec& b) {
  return a.tv_sec != b.tv_sec ? a.tv_sec < b.tv_sec : a.tv_nsec < b.tv_nsec;
}

}  // namespace

EndDeadline::EndDeadline() {
  assert(isMainThread() && hasTimer == 0);
  struct sigaction action {};
  action.sa_handler = endProcess;
  sigaction(SIGALRM, &action, nullptr);
  struct sigevent event {};
  event.sigev_notify = SIGEV_SIGNAL;
  event.sigev_signo = SIGALRM;
  hasTimer = timer_create(CLOCK_MONOTONIC, &event, &timer) == 0 ? 1 : 0;
}

EndDeadline::~EndDeadline() {
  if (hasTimer != 0) timer_delete(timer);
  hasTimer = 0;
}

void EndDeadline::endIn(long milliseconds) {
  if (hasTimer == 0) return;
  itimerspec asked{};
  asked.it_value = {milliseconds / perSecond, milliseconds % perSecond * 1'000'000};
  itimerspec former{};
  timer_gettime(timer, &former);
  if (isSet(former.it_value) && isSooner(former.it_value, asked.it_value)) return;
  timer_settime(timer, 0, &asked, nullptr);
}

}  // namespace vistrel::platform::linux_desktop
