#include <gtest/gtest.h>

#include "platform/linux/qt/paint/Legibility.h"

namespace vistrel::platform::linux_desktop {
namespace {

QPalette paletteOf(const QColor& text, const QColor& disabled, const QColor& base,
                   const QColor& window) {
  QPalette palette(window);
  palette.setColor(QPalette::Base, base);
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, disabled);
  }
  return palette;
}

TEST(Contrast, IsThatOfTheGuidelines) {
  EXPECT_DOUBLE_EQ(contrast(Qt::black, Qt::white), 21);
  EXPECT_DOUBLE_EQ(contrast(Qt::white, Qt::black), 21);
  EXPECT_DOUBLE_EQ(contrast(Qt::red, Qt::red), 1);
  EXPECT_NEAR(contrast(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.01);
}

TEST(LegibleDisabledLines, ReachTheContrastOnLightAndDarkMenus) {
  for (const QPalette& palette : {paletteOf(Qt::black, 0xbebebe, Qt::white, 0xefefef),
                                  paletteOf(Qt::white, 0x505050, 0x1e1e1e, 0x303030),
                                  paletteOf(0x333333, 0xf6f5f4, 0xffffff, 0xf6f5f4)}) {
    const QPalette legible = withLegibleDisabledLines(palette);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
      const QColor line = legible.color(QPalette::Disabled, role);
      for (const auto ground : {QPalette::Base, QPalette::Window}) {
        EXPECT_GE(contrast(line, legible.color(ground)), 4.5) << line.name().toStdString();
      }
      EXPECT_NE(line, legible.color(QPalette::Active, role)) << "they look like enabled ones";
      EXPECT_EQ(legible.color(QPalette::Active, role), palette.color(QPalette::Active, role));
    }
  }
}

TEST(LegibleDisabledLines, KeepAColourThatCanBeRead) {
  const QPalette palette = paletteOf(Qt::black, 0x606060, Qt::white, 0xefefef);
  EXPECT_EQ(withLegibleDisabledLines(palette), palette);
}

TEST(LegibleDisabledLines, AreLikeTheOthersWhereThoseAreHardToRead) {
  const QPalette palette = paletteOf(0x999999, 0xcccccc, Qt::white, 0xefefef);
  EXPECT_EQ(withLegibleDisabledLines(palette).color(QPalette::Disabled, QPalette::Text),
            QColor(0x999999));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
