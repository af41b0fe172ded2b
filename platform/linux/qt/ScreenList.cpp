#include "platform/linux/qt/ScreenList.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace vistrel::platform::linux_desktop {

namespace {

Screen valueOf(const QScreen& screen, const ScreenSpace& space) {
  return {space.fromDesktop(screen.geometry()), space.fromDesktop(screen.availableGeometry()),
          screen.devicePixelRatio()};
}

std::vector<Screen> currentScreens() {
  const QScreen* primary = QGuiApplication::primaryScreen();
  if (primary == nullptr) return {};
  const ScreenSpace space(primary->geometry());
  std::vector<Screen> screens = {valueOf(*primary, space)};
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (screen != primary) screens.push_back(valueOf(*screen, space));
  }
  return screens;
}

std::optional<Screen> currentMainScreen() {
  const QScreen* primary = QGuiApplication::primaryScreen();
  if (primary == nullptr) return std::nullopt;
  const QWindow* key = QGuiApplication::focusWindow();
  const QScreen* main = key != nullptr && key->screen() != nullptr ? key->screen() : primary;
  return valueOf(*main, ScreenSpace(primary->geometry()));
}

}  // namespace

ScreenList::ScreenList() {
  for (QScreen* screen : QGuiApplication::screens()) watch(screen);
  QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &context_, [this](QScreen* screen) {
    watch(screen);
    refresh();
  });
  QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &context_, [this] { refresh(); });
  QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &context_,
                   [this] { refresh(); });
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
  refresh();
}

std::vector<Screen> ScreenList::all() const {
  const std::lock_guard lock(mutex_);
  return all_;
}

std::optional<Screen> ScreenList::main() const {
  const std::lock_guard lock(mutex_);
  return main_;
}

ScreenSpace ScreenList::space() {
  const QScreen* primary = QGuiApplication::primaryScreen();
  return ScreenSpace(primary == nullptr ? QRect() : primary->geometry());
}

void ScreenList::watch(QScreen* screen) {
  const auto changed = [this] { refresh(); };
  QObject::connect(screen, &QScreen::geometryChanged, &context_, changed);
  QObject::connect(screen, &QScreen::availableGeometryChanged, &context_, changed);
  QObject::connect(screen, &QScreen::logicalDotsPerInchChanged, &context_, changed);
}

void ScreenList::refresh() {
  auto all = currentScreens();
  auto main = currentMainScreen();
  const std::lock_guard lock(mutex_);
  all_ = std::move(all);
  main_ = main;
}

}  // namespace vistrel::platform::linux_desktop
