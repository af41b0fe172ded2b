#pragma once

#include <QColor>
#include <QIcon>
#include <QRectF>
#include <string>

class QPainter;

namespace vistrel::platform::linux_desktop {

/// Draws the symbol of that name, upright, centred and as large as fits; nothing for a name that we
/// have no drawing of. Wants an antialiasing painter.
void drawSymbol(QPainter& painter, const std::string& name, const QRectF& rect, const QColor& tint);

/// The program's own icon in all the sizes that it is drawn in.
QIcon applicationIcon();

}  // namespace vistrel::platform::linux_desktop
