#include "platform/linux/qt/space/ScreenList.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <cassert>
#include <utility>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/HiddenMonitorName.h"

namespace vistrel::platform::linux_desktop {

namespace {

NamedScreen named(const QScreen& screen) {
  return {screen.name().toStdString(), QtScreen::of(screen)};
}

/// Those that a person sees, the primary one first: nothing of ours is to be where nobody sees it.
std::vector<NamedScreen> shownScreens() {
  const QScreen* primary = QGuiApplication::primaryScreen();
  std::vector<NamedScreen> screens;
  if (primary != nullptr) screens.push_back(named(*primary));
  for (const QScreen* screen : QGuiApplication::screens()) {
    auto each = named(*screen);
    if (screen != primary && !isHiddenMonitor(each.name)) screens.push_back(std::move(each));
  }
  return screens;
}

/// The free areas are asked of the session: Qt 6.4.2 knows of none once there are several
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
std::size_t mainOf(const std::vector<NamedScreen>& screens) {
  const QWindow* key = QGuiApplication::focusWindow();
  if (key == nullptr || key->screen() == nullptr) return 0;
  const std::string name = key->screen()->name().toStdString();
  const auto found = std::find_if(screens.begin(), screens.end(),
                                  [&](const NamedScreen& each) { return each.name == name; });
  return found == screens.end() ? 0 : static_cast<std::size_t>(found - screens.begin());
}

}  // namespace

ScreenList::ScreenList(Monitors& monitors, DockAreas& docks, SharedScreenLayout& layout,
                       Callbacks callbacks)
    : monitors_(monitors), docks_(docks), layout_(layout) {
  changed_.setSingleShot(true);
  QObject::connect(&changed_, &QTimer::timeout, &context_, std::move(callbacks.changed));
  watchScreens();
  watchKeyWindow();
  docks_.watch([this, roomChanged = std::move(callbacks.roomChanged)] {
    const auto tell = [this, roomChanged] {
      publish();
      roomChanged();
    };
    QMetaObject::invokeMethod(&context_, tell, Qt::QueuedConnection);
  });
  readScreens();
  publish();
}

void ScreenList::watchScreens() {
  for (QScreen* screen : QGuiApplication::screens()) watch(screen);
  QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &context_, [this](QScreen* screen) {
    watch(screen);
    layOut();
  });
  QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &context_, [this] { layOut(); });
  QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &context_,
                   [this] { layOut(); });
}

void ScreenList::watch(QScreen* screen) {
  const auto changed = [this] { layOut(); };
  QObject::connect(screen, &QScreen::geometryChanged, &context_, changed);
  QObject::connect(screen, &QScreen::logicalDotsPerInchChanged, &context_, changed);
}

void ScreenList::watchKeyWindow() {
  QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &context_,
                   [this, following = QMetaObject::Connection()](QWindow* window) mutable {
                     QObject::disconnect(following);
                     following = {};
                     if (window != nullptr) {
                       following = QObject::connect(window, &QWindow::screenChanged, &context_,
                                                    [this] { publish(); });
                     }
                     publish();
                   });
}

void ScreenList::layOut() {
  assert(isMainThread());
  if (!readScreens()) return;
  changed_.start();
  publish();
}

bool ScreenList::readScreens() {
  auto screens = shownScreens();
  ScreenLayout layout(scaledMonitors(screens, monitors_.list()));
  const bool isOther = layout != *layout_.get();
  if (isOther) layout_.set(std::move(layout));
  // The toolkit may have told of a monitor after the session has: windows wait for both.
  const bool isHeardOf = std::exchange(screens_, screens) != screens;
  return isOther || isHeardOf;
}

void ScreenList::publish() {
  all_ = screens_.empty() ? std::vector<Screen>() : valuesOf(*layout_.get(), docks_);
  main_ = all_.empty() ? std::nullopt : std::optional(all_[mainOf(screens_)]);
}

}  // namespace vistrel::platform::linux_desktop
