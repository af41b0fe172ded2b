#pragma once

namespace vistrel::platform::linux_desktop {

/// Sees to it that KWin keeps nothing of ours however the program ends: native windows that are
/// parked go home, and the menu keys are anybody's again, since KWin takes no notice when a program
/// goes. `vistrel-kwin-guard`, a process of its own in a session of its own, does so once the
/// program has ended without this object's destructor. Main thread.
class KWinGuard {
 public:
  KWinGuard() = default;
  KWinGuard(const KWinGuard&) = delete;
  KWinGuard& operator=(const KWinGuard&) = delete;
  /// Nothing is left, unless `leaveItBehind` has said so.
  ~KWinGuard();

  /// Returns once it runs, at once where it does already. Without its executable nothing happens:
  /// the next start does its work.
  void ensureRunning();
  /// It is to do its work although the program ends in order.
  void leaveItBehind() { isLeftBehind_ = true; }

 private:
  int guard_ = -1;  // a socket; owned
  bool isTried_ = false;
  bool isLeftBehind_ = false;
};

}  // namespace vistrel::platform::linux_desktop
