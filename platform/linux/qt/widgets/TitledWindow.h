#pragma once

#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>

#include "platform/Window.h"
#include "platform/linux/qt/widgets/WidgetTree.h"

namespace vistrel::platform::linux_desktop {

/// The native window of an ordinary window, with a bar of menus and the widgets of its views.
class TitledWindow final : public QMainWindow {
 public:
  struct Callbacks {
    /// The desktop has given the window a place or size.
    std::function<void()> placed;
    /// A person has closed it; it is hidden.
    std::function<void()> closed;
    /// It is not minimised any more.
    std::function<void()> restored;
    /// Pixels per point have changed.
    std::function<void()> scaleChanged;
  };

  /// `notice` and `pickEntry` as in WidgetTree.
  TitledWindow(Window& window, const std::string& notice, std::shared_ptr<PickEntry> pickEntry,
               Callbacks callbacks);

  WidgetTree& widgets() { return widgets_; }
  /// In the toolkit's points, as of the scale that the window has now.
  void setGeometry(const QRect& geometry);
  /// The window goes, or does not want to hear of this any more.
  void abandon() { window_ = nullptr; }

 protected:
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  bool event(QEvent* event) override;

 private:
  Window* window_;
  const Callbacks callbacks_;
  WidgetTree widgets_;
  QTimer rest_;  // runs out some time after something of it was drawn
  bool isDrawnOnceMore_ = false;
};

}  // namespace vistrel::platform::linux_desktop
