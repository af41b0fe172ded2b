#include "platform/linux/qt/paint/Legibility.h"

#include <algorithm>
#include <cmath>

namespace vistrel::platform::linux_desktop {

namespace {

constexpr double leastContrast = 4.5;

/// WCAG 2.1, "relative luminance".
double luminance(const QColor& color) {
  const auto linear = [](double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

QColor mixed(const QColor& a, const QColor& b, int percentOfB) {
  const auto channel = [&](int x, int y) {
    return (x * (100 - percentOfB) + y * percentOfB) / 100;
  };
  return {channel(a.red(), b.red()), channel(a.green(), b.green()), channel(a.blue(), b.blue())};
}

/// On either of the colours that styles draw menus on.
bool isLegible(const QColor& text, const QPalette& palette) {
  return contrast(text, palette.color(QPalette::Base)) >= leastContrast &&
         contrast(text, palette.color(QPalette::Window)) >= leastContrast;
}

QColor legibleShadeOf(const QColor& text, const QPalette& palette) {
  for (int paleness = 50; paleness > 0; --paleness) {
    const QColor shade = mixed(text, palette.color(QPalette::Base), paleness);
    if (isLegible(shade, palette)) return shade;
  }
  return text;
}

}  // namespace

double contrast(const QColor& a, const QColor& b) {
  const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
  return (lighter + 0.05) / (darker + 0.05);
}

QPalette withLegibleDisabledLines(const QPalette& palette) {
  QPalette legible = palette;
  // Styles differ in which of these is for menus.
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
    if (isLegible(palette.color(QPalette::Disabled, role), palette)) continue;
    legible.setColor(QPalette::Disabled, role,
                     legibleShadeOf(palette.color(QPalette::Active, role), palette));
  }
  return legible;
}

}  // namespace vistrel::platform::linux_desktop
