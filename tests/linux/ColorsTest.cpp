#include <cmath>
#include <gtest/gtest.h>

#include "platform/linux/qt/Colors.h"

namespace vistrel::platform::linux_desktop {
namespace {

const QPalette light(QColor(240, 240, 240), QColor(239, 239, 239));

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

/// Relative luminance by WCAG 2.
double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

QColor over(const QColor& background, const QColor& color) {
  const float alpha = color.alphaF();
  return QColor::fromRgbF(color.redF() * alpha + background.redF() * (1 - alpha),
                          color.greenF() * alpha + background.greenF() * (1 - alpha),
                          color.blueF() * alpha + background.blueF() * (1 - alpha));
}

/// Contrast by WCAG 2 of `color` over the backgrounds of tables.
double contrast(const Color& color, const QPalette& palette) {
  const QColor background = palette.color(QPalette::Base);
  const double a = luminance(over(background, resolved(color, palette))) + 0.05;
  const double b = luminance(background) + 0.05;
  return a > b ? a / b : b / a;
}

TEST(Colors, SystemTextColorsAreLegibleInLightAndDark) {
  constexpr double legible = 4.5;  // WCAG 2, level AA for text of ordinary size
  for (const QPalette& palette : {light, darkPalette()}) {
    EXPECT_GE(contrast(Color::label(), palette), legible);
    EXPECT_GE(contrast(Color::secondaryLabel(), palette), legible);
    EXPECT_GE(contrast(Color::systemGreen(), palette), legible);
    EXPECT_GE(contrast(Color::systemRed(), palette), legible);
  }
}

TEST(Colors, OtherColorsAreWhatTheyAreInEveryPalette) {
  const Color live = Color::srgb(0.2, 0.4, 0.6, 0.8);
  for (const QPalette& palette : {light, darkPalette()}) {
    EXPECT_EQ(resolved(live, palette).rgba(), qRgba(51, 102, 153, 204));
  }
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
