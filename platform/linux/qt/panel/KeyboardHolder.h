#pragma once

#include <QTimer>
#include <QWindow>
#include <functional>

#include "platform/linux/session/PanelWindows.h"
#include "platform/linux/session/WindowActivation.h"

namespace vistrel::platform::linux_desktop {

/// Has the keyboard while the menu of a panel is open: a window that nobody sees. Where other
/// programs' windows are none of the display server's, it tells nothing of what is typed and
/// clicked there, and the menu would neither close nor hear a key; that the keyboard leaves one of
/// the program's own windows is told everywhere. When the holder goes, the manager gives the
/// keyboard back to who had it. Main thread.
class KeyboardHolder final : public QWindow {
 public:
  /// Takes the keyboard, near `onDesktop` (of the toolkit's), and calls `then`: without it, where
  /// the manager gives it to nobody or does not answer.
  KeyboardHolder(PanelWindows& windows, WindowActivation& activation, const QPoint& onDesktop,
                 std::function<void()> then);

  /// Nobody waits for it any more.
  void abandon();

 private:
  void proceed();

  std::function<void()> then_;
  QTimer deadline_;
};

}  // namespace vistrel::platform::linux_desktop
