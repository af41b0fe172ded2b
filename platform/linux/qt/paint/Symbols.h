#pragma once

#include <QColor>
#include <QRectF>
#include <string>

class QPainter;

namespace vistrel::platform::linux_desktop {

/// Draws the symbol of that name, upright, centred and as large as fits; nothing for a name that we
/// have no drawing of. Wants an antialiasing painter.
void drawSymbol(QPainter& painter, const std::string& name, const QRectF& rect, const QColor& tint);

}  // namespace vistrel::platform::linux_desktop
