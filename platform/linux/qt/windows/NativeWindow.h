#pragma once

#include <QRect>
#include <QSize>
#include <memory>

#include "platform/Geometry.h"

namespace vistrel::platform::linux_desktop {

/// Takes a native window off the screen and releases it once no event handler of its own can be
/// running: one of these may be what ends it.
template <class Native>
struct ReleaseNative {
  void operator()(Native* native) const {
    native->abandon();
    native->hide();
    native->deleteLater();
  }
};

template <class Native>
using OwnedNative = std::unique_ptr<Native, ReleaseNative<Native>>;

/// Sets the size that binds a person's resizing. Qt 6.4.2 and managers hold code to it as well:
/// so they are told of none that is larger than the window, which is `size` large.
template <class Native>
void bindResizing(Native& native, QSize minimum, QSize size) {
  native.setMinimumSize(minimum.boundedTo(size).expandedTo({0, 0}));
}

/// Moves and resizes a native window that was last asked to be at `from`, past its minimum if need
/// be.
template <class Native>
void placeNative(Native& native, const QRect& from, const QRect& to, QSize minimum) {
  bindResizing(native, minimum, to.size().boundedTo(from.size()));
  // Qt 6.4.2 asks for nothing where it believes the window to be there already, such as by a late
  // answer to an older request; it must not keep to the request between the two.
  if (native.geometry() == to && from != to) native.setGeometry(from);
  native.setGeometry(to);
  bindResizing(native, minimum, to.size());
}

inline QSize wholePoints(const Size& size) {
  return {static_cast<int>(size.width), static_cast<int>(size.height)};
}

}  // namespace vistrel::platform::linux_desktop
