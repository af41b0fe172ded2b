#include "platform/linux/qt/paint/Colors.h"

namespace vistrel::platform::linux_desktop {

namespace {

QColor active(QPalette::ColorRole role, const QPalette& palette) {
  return palette.color(QPalette::Active, role);
}

bool isDark(const QPalette& palette) { return active(QPalette::Base, palette).lightnessF() < 0.5F; }

/// Text that steps back, still with a contrast of about 4.5 : 1 over white and over black.
QColor dimmed(const QPalette& palette) {
  QColor color = active(QPalette::WindowText, palette);
  color.setAlphaF(0.62F);
  return color;
}

}  // namespace

QColor resolved(const Color& color, const QPalette& palette) {
  switch (color.system) {
    case SystemColor::label:
      return active(QPalette::WindowText, palette);
    case SystemColor::secondaryLabel:
      return dimmed(palette);
    case SystemColor::systemRed:
      return isDark(palette) ? QColor(255, 69, 58) : QColor(215, 0, 21);
    case SystemColor::systemGreen:
      return isDark(palette) ? QColor(48, 209, 88) : QColor(26, 127, 55);
    case SystemColor::none:
      break;
  }
  return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                          static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

const QPalette& darkPalette() {
  static const QPalette palette(QColor(50, 50, 52), QColor(30, 30, 30));
  return palette;
}

}  // namespace vistrel::platform::linux_desktop
