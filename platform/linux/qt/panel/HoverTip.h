#pragma once

#include <QPoint>
#include <QTimer>
#include <string>

namespace vistrel::platform::linux_desktop {

/// The tooltip of a window that is no widget: shown once the pointer has rested.
class HoverTip {
 public:
  HoverTip();

  /// The pointer is at `position` (desktop space), over something with that tooltip (none: empty).
  void pointerMoved(QPoint position, const std::string& text);
  /// The pointer has left or a button went down.
  void hide();

 private:
  QTimer rest_;
  QPoint position_;
  std::string text_;
  bool shown_ = false;
};

}  // namespace vistrel::platform::linux_desktop
