#include "platform/linux/qt/paint/Fonts.h"

#include <QApplication>
#include <QFontInfo>
#include <algorithm>
#include <cmath>

namespace vistrel::platform::linux_desktop {

namespace {

QFont::Weight qtWeight(FontWeight weight) {
  switch (weight) {
    case FontWeight::regular:
      return QFont::Normal;
    case FontWeight::semibold:
      return QFont::DemiBold;
    case FontWeight::bold:
      return QFont::Bold;
  }
  return QFont::Normal;
}

}  // namespace

QFont qtFont(const Font& font) {
  QFont result = QGuiApplication::font();
  result.setPixelSize(std::max(1, static_cast<int>(std::lround(font.pointSize))));
  result.setWeight(qtWeight(font.weight));
  return result;
}

QFont menuFont() {
  QFont font = QApplication::font("QMenu");
  const int largest = qtFont({}).pixelSize();
  if (QFontInfo(font).pixelSize() > largest) font.setPixelSize(largest);
  return font;
}

}  // namespace vistrel::platform::linux_desktop
