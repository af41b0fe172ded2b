#include "platform/linux/qt/space/Pointer.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <cassert>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/qt/space/QtSpace.h"

namespace vistrel::platform::linux_desktop {

namespace {

const DispatchedPosition* innermost = nullptr;  // main thread

Point pointerPixel() {
  const QPointF position = QCursor::pos();
  const QScreen* primary = QGuiApplication::primaryScreen();
  if (primary == nullptr) return {position.x(), position.y()};
  return pixelOf(position, QtScreen::of(*primary), qtScreens());
}

}  // namespace

Point pointerLocation(const ScreenLayout& layout) {
  assert(isMainThread());
  const Point pixel = innermost != nullptr ? innermost->pixel_ : pointerPixel();
  return layout.flipped(layout.at(pixel).toPoints(pixel));
}

DispatchedPosition::DispatchedPosition(Point pixel) : pixel_(pixel), outer_(innermost) {
  innermost = this;
}

DispatchedPosition::~DispatchedPosition() { innermost = outer_; }

}  // namespace vistrel::platform::linux_desktop
