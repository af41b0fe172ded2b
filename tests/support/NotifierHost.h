#pragma once

#include <mutex>
#include <string>
#include <sys/types.h>
#include <thread>

#include "tests/support/PrivateDisplay.h"
#include "tests/support/TrayItem.h"

namespace vistrel::testbed {

/// A desktop's tray in a private session, by the status notifier protocol: the service where icons
/// register (org.kde.StatusNotifierWatcher). What a person sees and does there is for `TrayItem`.
/// It goes away with this object.
class NotifierHost {
 public:
  /// `display` outlives this. Throws std::runtime_error when the session has another tray. Without
  /// `isShown` icons register, but there is no tray on the screen that shows them.
  explicit NotifierHost(const PrivateDisplay& display, bool isShown = true);
  ~NotifierHost();
  NotifierHost(const NotifierHost&) = delete;
  NotifierHost& operator=(const NotifierHost&) = delete;

  /// The tray appears on the screen, or goes from it.
  void show(bool isShown);
  /// Waits until an icon has registered. Throws std::runtime_error when none does.
  TrayItem icon() const;

 private:
  static int receive(sd_bus_message* message, void* host, sd_bus_error* error);
  void answer(BusMessage call);
  void serve(const std::stop_token& stopped);
  void announceChange();
  std::string registered() const;

  const std::string address_;
  BusConnection bus_;  // the thread's, once it runs
  mutable std::mutex mutex_;
  std::string registered_;  // the newest icon's program; guarded by mutex_
  bool isShown_;            // guarded by mutex_
  bool announced_;          // the thread's
  std::jthread thread_;
};

}  // namespace vistrel::testbed
