#pragma once

#include <QAccessible>
#include <QWindow>
#include <functional>

#include "platform/Window.h"
#include "platform/linux/qt/ClickCounter.h"
#include "platform/linux/qt/HoverTip.h"

namespace vistrel::platform::linux_desktop {

/// The native window of a panel. Takes the pointer to the panel's views; draws nothing itself.
class PanelWindow final : public QWindow {
 public:
  /// Calls `placed` whenever the desktop has given the window a place or size, `scaleChanged` when
  /// it has come to a screen with another number of pixels per point.
  PanelWindow(platform::Window& window, std::function<void()> placed,
              std::function<void()> scaleChanged);

  /// The panel goes, or does not want to hear of this window any more.
  void abandon();
  /// Null once abandoned.
  platform::Window* panel() const { return window_; }

  /// Tells screen readers, if there are any, what has changed in the panel's views.
  void reportToScreenReaders();
  QAccessibleInterface* accessibleRoot() const override;

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void announce(QAccessible::Event event);
  void send(EventType type, const QMouseEvent& event);
  void hover(const QMouseEvent& event);
  Point locationInWindow(const QMouseEvent& event) const;

  platform::Window* window_;  // the base class has another thing of that name
  const std::function<void()> placed_;
  const std::function<void()> scaleChanged_;
  ClickCounter clicks_;
  HoverTip tip_;
};

}  // namespace vistrel::platform::linux_desktop
