#pragma once

#include <QFont>

#include "platform/GraphicsContext.h"

namespace vistrel::platform::linux_desktop {

/// The desktop's interface font at a size in points of ours, which are the toolkit's pixels.
QFont qtFont(const Font& font);

/// The desktop's font of menus, but no larger than what else the program writes: where a person has
/// chosen a large one, our other texts keep their sizes in points.
QFont menuFont();

}  // namespace vistrel::platform::linux_desktop
