#pragma once

#include <QObject>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/Screen.h"
#include "platform/linux/qt/ScreenSpace.h"

class QScreen;

namespace vistrel::platform::linux_desktop {

/// The toolkit's screens as values in screen space, in a copy that any thread may read.
class ScreenList {
 public:
  /// Main thread.
  ScreenList();

  /// The primary one first. Any thread.
  std::vector<Screen> all() const;
  /// The key window's screen, else the primary one. Any thread.
  std::optional<Screen> main() const;

  /// As of now. Main thread.
  static ScreenSpace space();

 private:
  void watch(QScreen* screen);
  void refresh();

  QObject context_;  // ends what is connected to it
  mutable std::mutex mutex_;
  std::vector<Screen> all_;     // guarded by mutex_
  std::optional<Screen> main_;  // guarded by mutex_
};

}  // namespace vistrel::platform::linux_desktop
