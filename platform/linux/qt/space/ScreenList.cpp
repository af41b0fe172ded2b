#include "platform/linux/qt/space/ScreenList.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "platform/linux/HiddenMonitorName.h"
#include "platform/linux/qt/space/QtSpace.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// Nothing of ours is to be where nobody sees it.
bool isHidden(const QScreen& screen) { return isHiddenMonitor(screen.name().toStdString()); }

/// Those that a person sees, the primary one first.
std::vector<const QScreen*> qtScreensInOrder() {
  const QScreen* primary = QGuiApplication::primaryScreen();
  std::vector<const QScreen*> screens;
  if (primary != nullptr) screens.push_back(primary);
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (screen != primary && !isHidden(*screen)) screens.push_back(screen);
  }
  return screens;
}

/// The free areas are asked of the display: the toolkit knows of none once there are several
/// screens.
std::vector<Screen> valuesOf(const ScreenLayout& layout, const DockAreas& docks) {
  std::vector<PixelRect> monitors;
  for (const LaidOutMonitor& each : layout.monitors()) monitors.push_back(each.monitor.pixels);
  const std::vector<PixelRect> free = docks.freeAreas(monitors);
  std::vector<Screen> screens;
  for (std::size_t i = 0; i < monitors.size(); ++i) {
    const LaidOutMonitor& monitor = layout.monitors()[i];
    screens.push_back({layout.flipped(monitor.points), layout.flipped(monitor.toPoints(free[i])),
                       monitor.monitor.pixelsPerPoint});
  }
  return screens;
}

/// The key window's screen, else the primary one, which is the first.
std::size_t mainOf(const std::vector<const QScreen*>& screens) {
  const QWindow* key = QGuiApplication::focusWindow();
  const auto found =
      std::find(screens.begin(), screens.end(), key == nullptr ? nullptr : key->screen());
  return found == screens.end() ? 0 : static_cast<std::size_t>(found - screens.begin());
}

}  // namespace

ScreenList::ScreenList(DockAreas& docks, std::function<void()> changed)
    : docks_(docks), layout_(layout()) {
  changed_.setSingleShot(true);
  QObject::connect(&changed_, &QTimer::timeout, &context_, std::move(changed));
  for (QScreen* screen : QGuiApplication::screens()) watch(screen);
  QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &context_, [this](QScreen* screen) {
    watch(screen);
    refresh();
  });
  QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &context_, [this] { refresh(); });
  QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &context_,
                   [this] { refresh(); });
  watchKeyWindow();
  docks_.watch([this] {
    QMetaObject::invokeMethod(
        &context_, [this] { refresh(); }, Qt::QueuedConnection);
  });
  refresh();
}

void ScreenList::watchKeyWindow() {
  QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &context_,
                   [this, following = QMetaObject::Connection()](QWindow* window) mutable {
                     QObject::disconnect(following);
                     following = {};
                     if (window != nullptr) {
                       following = QObject::connect(window, &QWindow::screenChanged, &context_,
                                                    [this] { refresh(); });
                     }
                     refresh();
                   });
}

std::vector<Screen> ScreenList::all() const {
  const std::lock_guard lock(mutex_);
  return all_;
}

std::optional<Screen> ScreenList::main() const {
  const std::lock_guard lock(mutex_);
  return main_;
}

ScreenLayout ScreenList::layout() {
  std::vector<Monitor> monitors;
  for (const QScreen* each : qtScreensInOrder()) {
    const auto screen = QtScreen::of(*each);
    monitors.push_back({screen.pixels(), screen.pixelsPerPoint});
  }
  return ScreenLayout(monitors);
}

void ScreenList::watch(QScreen* screen) {
  const auto changed = [this] { refresh(); };
  QObject::connect(screen, &QScreen::geometryChanged, &context_, changed);
  QObject::connect(screen, &QScreen::logicalDotsPerInchChanged, &context_, changed);
}

void ScreenList::refresh() {
  const auto screens = qtScreensInOrder();
  auto current = layout();
  auto all = screens.empty() ? std::vector<Screen>() : valuesOf(current, docks_);
  if (current != layout_) changed_.start();
  layout_ = std::move(current);
  const std::lock_guard lock(mutex_);
  all_ = std::move(all);
  main_ = all_.empty() ? std::nullopt : std::optional(all_[mainOf(screens)]);
}

}  // namespace vistrel::platform::linux_desktop
