#pragma once

#include <QPoint>
#include <QTimer>
#include <functional>
#include <string>

namespace vistrel::platform::linux_desktop {

/// The tooltip of a window that is no widget: shown once the pointer has rested.
class HoverTip {
 public:
  /// `furtherLines` is asked each time a tip opens, also where the pointer is over nothing with a
  /// tooltip; it may answer nothing.
  explicit HoverTip(std::function<std::string()> furtherLines);

  /// The pointer is at `position` (desktop space), over something with that tooltip (none: empty).
  void pointerMoved(QPoint position, const std::string& text);
  /// The pointer has left or a button went down.
  void hide();

 private:
  void show();

  const std::function<std::string()> furtherLines_;
  QTimer rest_;
  QPoint position_;
  std::string text_;
  bool shown_ = false;
};

}  // namespace vistrel::platform::linux_desktop
