#pragma once

#include <QAccessible>
#include <QWindow>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/Window.h"
#include "platform/linux/qt/panel/ClickCounter.h"
#include "platform/linux/qt/panel/HoverTip.h"
#include "platform/linux/session/SourceSituations.h"

namespace vistrel::platform::linux_desktop {

/// The native window of a panel. Takes the pointer to the panel's views; draws nothing itself.
class PanelWindow final : public QWindow {
 public:
  struct Callbacks {
    /// The desktop has given the window a place or size.
    std::function<void()> placed;
    /// The pointer that held the window has let go of it.
    std::function<void()> released;
    /// The desktop shows the window, or more of it.
    std::function<void()> exposed;
    /// The pointer is said to have come over the window.
    std::function<void()> entered;
    /// The pointer moves over the window, with no button held.
    std::function<void()> moved;
    /// The pointer has left the window.
    std::function<void()> left;
    /// A context menu is about to open at a place of the toolkit's; `show` opens it.
    std::function<void(const QPoint& onDesktop, std::function<void()> show)> menuWanted;
    /// It is off the screen.
    std::function<void()> menuClosed;
    /// What has become of the source of the picture that is shown.
    std::function<SourceSituation()> situation;
  };

  PanelWindow(platform::Window& window, Callbacks callbacks);

  /// How large the panel's views are drawn, which is how places in it are counted.
  void setPixelsPerPoint(double pixelsPerPoint) { pixelsPerPoint_ = pixelsPerPoint; }
  /// Where the pointer is, as a pixel of the root window, while it holds the panel, perhaps to drag
  /// it.
  std::optional<Point> heldAt() const { return heldAt_; }
  /// Where the pointer is, as by the right button.
  void openContextMenu();

  /// The panel goes, or does not want to hear of this window any more.
  void abandon();
  /// Null once abandoned.
  platform::Window* panel() const { return window_; }
  /// What is to be told of the source now; empty for nothing.
  std::string situationText() const;

  /// Tells screen readers, if there are any, what has changed in the panel's views.
  void reportToScreenReaders();
  QAccessibleInterface* accessibleRoot() const override;

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void exposeEvent(QExposeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void announce(QAccessible::Event event);
  void send(EventType type, const QMouseEvent& event);
  void openContextMenu(const QPointF& position, const QPointF& onDesktop);
  void showMenu(const std::shared_ptr<Menu>& menu, const QPointF& onDesktop);
  void hover(const QMouseEvent& event);
  Point locationInWindow(const QPointF& qtPosition) const;

  platform::Window* window_;  // the base class has another thing of that name
  const Callbacks callbacks_;
  double pixelsPerPoint_ = 1;
  std::optional<Point> heldAt_;
  ClickCounter clicks_;
  HoverTip tip_{[this] { return situationText(); }};
};

}  // namespace vistrel::platform::linux_desktop
