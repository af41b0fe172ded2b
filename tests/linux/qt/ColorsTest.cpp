#include <gtest/gtest.h>

#include "platform/linux/qt/paint/Colors.h"
#include "platform/linux/qt/paint/Legibility.h"

namespace vistrel::platform::linux_desktop {
namespace {

const QPalette light(QColor(240, 240, 240), QColor(239, 239, 239));

QColor over(const QColor& background, const QColor& color) {
  const float alpha = color.alphaF();
  return QColor::fromRgbF(color.redF() * alpha + background.redF() * (1 - alpha),
                          color.greenF() * alpha + background.greenF() * (1 - alpha),
                          color.blueF() * alpha + background.blueF() * (1 - alpha));
}

/// Of `color` over the backgrounds of tables.
double contrastInTables(const Color& color, const QPalette& palette) {
  const QColor background = palette.color(QPalette::Base);
  return contrast(over(background, resolved(color, palette)), background);
}

TEST(Colors, SystemTextColorsAreLegibleInLightAndDark) {
  constexpr double legible = 4.5;  // WCAG 2, level AA for text of ordinary size
  for (const QPalette& palette : {light, darkPalette()}) {
    EXPECT_GE(contrastInTables(Color::label(), palette), legible);
    EXPECT_GE(contrastInTables(Color::secondaryLabel(), palette), legible);
    EXPECT_GE(contrastInTables(Color::systemGreen(), palette), legible);
    EXPECT_GE(contrastInTables(Color::systemRed(), palette), legible);
  }
}

TEST(Colors, SystemTextColorsAreThoseOfActiveWindowsAlsoWhereAPaletteDimsTheOthers) {
  QPalette dimming = light;
  dimming.setColor(QPalette::Inactive, QPalette::WindowText, Qt::lightGray);
  dimming.setColor(QPalette::Inactive, QPalette::Base, Qt::black);
  dimming.setCurrentColorGroup(QPalette::Inactive);
  for (const Color& color : {Color::label(), Color::secondaryLabel(), Color::systemRed()}) {
    EXPECT_EQ(resolved(color, dimming), resolved(color, light));
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
