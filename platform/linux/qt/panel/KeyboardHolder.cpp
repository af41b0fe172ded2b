#include "platform/linux/qt/panel/KeyboardHolder.h"

#include <QSurfaceFormat>
#include <chrono>
#include <utility>

#include "platform/linux/qt/space/QtConnection.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// A person waits for the menu meanwhile.
constexpr std::chrono::milliseconds longestWait{300};

/// EWMH, _NET_ACTIVE_WINDOW: no time of an event is known.
constexpr std::uint32_t currentTime = 0;

}  // namespace

KeyboardHolder::KeyboardHolder(PanelWindows& windows, WindowActivation& activation,
                               const QPoint& onDesktop, std::function<void()> then)
    : then_(std::move(then)) {
  setTitle(QStringLiteral("Vistrel — context menu"));
  QSurfaceFormat transparent;
  transparent.setAlphaBufferSize(8);
  setFormat(transparent);
  setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
  setGeometry(QRect(onDesktop, QSize(1, 1)));
  create();
  syncQt();
  const auto window = static_cast<std::uint32_t>(winId());
  windows.keepOffLists(window);
  show();
  syncQt();
  activation.activateWindow(window, currentTime);
  QObject::connect(this, &QWindow::activeChanged, this, [this] { proceed(); });
  deadline_.setSingleShot(true);
  QObject::connect(&deadline_, &QTimer::timeout, this, [this] { proceed(); });
  deadline_.start(longestWait);
}

void KeyboardHolder::abandon() {
  deadline_.stop();
  then_ = nullptr;
}

void KeyboardHolder::proceed() {
  deadline_.stop();
  if (const auto then = std::exchange(then_, nullptr)) then();
}

}  // namespace vistrel::platform::linux_desktop
