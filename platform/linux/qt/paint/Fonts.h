#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

#include "platform/GraphicsContext.h"

namespace vistrel::platform::linux_desktop {

/// The desktop's interface font at a size in points of ours, which are the toolkit's pixels.
QFont qtFont(const Font& font);

/// The lines that `text` makes in `area`: one cut at its tail, or words wrapped into as many lines
/// as the style and the area allow, the last of them cut.
QStringList linesOf(const QString& text, const TextStyle& style, QSizeF area);

}  // namespace vistrel::platform::linux_desktop
