#pragma once

#include <QColor>
#include <QPalette>

#include "platform/Color.h"

namespace vistrel::platform::linux_desktop {

/// `color` as it looks over the backgrounds of `palette`, in whose terms system colours are
/// resolved so that they stay legible in light and dark.
QColor resolved(const Color& color, const QPalette& palette);

/// The palette of windows that ask for the dark appearance.
const QPalette& darkPalette();

}  // namespace vistrel::platform::linux_desktop
