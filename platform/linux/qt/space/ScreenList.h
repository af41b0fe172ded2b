#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/Screen.h"
#include "platform/linux/ScreenLayout.h"
#include "platform/linux/session/DockAreas.h"

class QScreen;

namespace vistrel::platform::linux_desktop {

/// The toolkit's screens as values in screen space, in a copy that any thread may read.
class ScreenList {
 public:
  /// Calls `changed` whenever monitors have come, gone, moved or changed their size or scale; once
  /// for all that happens in one turn of the event loop. `docks` outlives this object, which
  /// outlives the queues' threads. Main thread.
  ScreenList(DockAreas& docks, std::function<void()> changed);

  /// The primary one first. Any thread.
  std::vector<Screen> all() const;
  /// The key window's screen, else the primary one. Any thread.
  std::optional<Screen> main() const;

  /// As of now. Main thread.
  static ScreenLayout layout();

 private:
  void watch(QScreen* screen);
  void watchKeyWindow();
  void refresh();

  DockAreas& docks_;
  QObject context_;  // ends what is connected to it
  QTimer changed_;   // runs out at the next turn of the event loop
  ScreenLayout layout_;
  mutable std::mutex mutex_;
  std::vector<Screen> all_;     // guarded by mutex_
  std::optional<Screen> main_;  // guarded by mutex_
};

}  // namespace vistrel::platform::linux_desktop
