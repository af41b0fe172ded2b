#pragma once

#include <QSizeF>
#include <QString>
#include <QStringList>

#include "platform/GraphicsContext.h"

namespace vistrel::platform::linux_desktop {

/// The lines that `text` makes in `area`: one cut at its tail, or words wrapped into as many lines
/// as the style and the area allow, the last of them cut.
QStringList linesOf(const QString& text, const TextStyle& style, QSizeF area);

}  // namespace vistrel::platform::linux_desktop
