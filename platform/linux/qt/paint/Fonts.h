#pragma once

#include <QFont>

#include "platform/GraphicsContext.h"

namespace vistrel::platform::linux_desktop {

/// The desktop's interface font at a size in points of ours, which are the toolkit's pixels.
QFont qtFont(const Font& font);

}  // namespace vistrel::platform::linux_desktop
