#include <QImage>
#include <QPainter>
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "platform/Controls.h"
#include "platform/linux/qt/paint/ChromePainter.h"
#include "platform/linux/qt/paint/Legibility.h"
#include "tests/linux/qt/OffscreenQt.h"

namespace vistrel::platform::linux_desktop {
namespace {

class SomePicture : public Image {};

QImage uniform(QColor color, QSize size) {
  QImage picture(size, QImage::Format_RGB32);
  picture.fill(color);
  return picture;
}

/// Bright and dark, coarse and fine, in all colours.
QImage photograph(QSize size) {
  QImage picture(size, QImage::Format_RGB32);
  for (int y = 0; y < size.height(); ++y) {
    for (int x = 0; x < size.width(); ++x) {
      const int hue = (x * 360 / size.width() + y) % 360;
      const int grain = (x * 7919 + y * 104729) % 64;
      picture.setPixelColor(x, y, QColor::fromHsv(hue, 255 - y * 3 / 2 % 200, 255 - grain));
    }
  }
  return picture;
}

/// A status text as a mirror shows it, over a picture that fills the card.
class TextHalo : public ::testing::TestWithParam<double> {
 protected:
  void SetUp() override {
    OffscreenQt::start();
    content_->setWantsLayer(true);
    content_->layer()->setContents(std::make_shared<SomePicture>());
    label_->setFrame(rect(12, 10, 176, 48));
    label_->setFont({11, FontWeight::regular});
    label_->setTextColor(textColor);
    label_->setAlignment(TextAlignment::center);
    label_->setLineBreakMode(LineBreakMode::wordWrapping);
    label_->setMaximumNumberOfLines(3);
    card_->addSubview(content_);
    card_->addSubview(label_);
  }

  QSize size() const { return (QSizeF(200, 68) * GetParam()).toSize(); }
  /// The card's own pixels, over nothing.
  QImage painted() {
    const PanelChrome chrome =
        paintChrome(*card_, size().width(), size().height(), GetParam()).chrome;
    pixels_ = chrome.pixels.rows(0, chrome.height);
    return {reinterpret_cast<const uchar*>(pixels_.data()), chrome.width, chrome.height,
            QImage::Format_ARGB32_Premultiplied};
  }
  QImage shownOver(const QImage& picture) {
    QImage shown = picture.convertToFormat(QImage::Format_RGB32);
    QPainter(&shown).drawImage(0, 0, painted());
    return shown;
  }
  /// Of the text's colour to the pixels next to its letters; 0 without letters.
  double leastContrastOver(const QImage& picture) {
    const QImage shown = shownOver(picture);
    // There is no halo without a picture.
    content_->setHidden(true);
    const QImage letters = painted().copy();
    content_->setHidden(false);
    double least = 21;
    forEachPixel([&](int x, int y) {
      if (qAlpha(letters.pixel(x, y)) > 0 || !isNextToALetter(letters, x, y)) return;
      const QColor ground = shown.pixelColor(x, y);
      least = std::min(least, contrast(mixed(ground), ground));
    });
    return least < 21 ? least : 0;
  }
  void forEachPixel(const std::function<void(int x, int y)>& visit) const {
    for (int y = 1; y < size().height() - 1; ++y) {
      for (int x = 1; x < size().width() - 1; ++x) visit(x, y);
    }
  }
  /// One that is as opaque as letters become.
  static bool isNextToALetter(const QImage& letters, int x, int y) {
    const auto isLetter = [&](int dx, int dy) {
      return qAlpha(letters.pixel(x + dx, y + dy)) > 200;
    };
    return isLetter(-1, 0) || isLetter(1, 0) || isLetter(0, -1) || isLetter(0, 1);
  }

  static constexpr Color textColor = Color::white(0.85);
  const std::shared_ptr<View> card_ = std::make_shared<View>(rect(0, 0, 200, 68));
  const std::shared_ptr<View> content_ = std::make_shared<View>(rect(0, 0, 200, 68));
  const std::shared_ptr<Label> label_ =
      std::make_shared<Label>("The source, i.e. its window, is no longer there: .");
  std::vector<std::uint32_t> pixels_;

 private:
  /// The text's colour over that ground.
  static QColor mixed(const QColor& ground) {
    const auto channel = [](int below) {
      return static_cast<int>(textColor.alpha * 255 + (1 - textColor.alpha) * below);
    };
    return {channel(ground.red()), channel(ground.green()), channel(ground.blue())};
  }
};

TEST_P(TextHalo, MakesStatusTextsLegibleOverAnything) {
  EXPECT_GE(leastContrastOver(uniform(Qt::white, size())), 4.5);
  EXPECT_GE(leastContrastOver(uniform(Qt::black, size())), 4.5);
  EXPECT_GE(leastContrastOver(photograph(size())), 4.5);
}

TEST_P(TextHalo, EndsNearTheLetters) {
  const QImage shown = shownOver(uniform(Qt::white, size()));
  EXPECT_EQ(shown.pixelColor(0, 0), QColor(Qt::white));
  EXPECT_EQ(shown.pixelColor(size().width() / 2, size().height() - 1), QColor(Qt::white));
}

TEST_P(TextHalo, IsNotDrawnWhereThereIsNoPicture) {
  content_->setHidden(true);
  painted();
  for (const std::uint32_t pixel : pixels_) {
    const std::uint32_t red = pixel >> 16U & 0xffU;
    EXPECT_NEAR(red, pixel >> 24U, 1) << "something else than white";
  }
}

INSTANTIATE_TEST_SUITE_P(Scales, TextHalo, ::testing::Values(1, 1.5, 2),
                         [](const auto& test) { return std::to_string(int(test.param * 100)); });

}  // namespace
}  // namespace vistrel::platform::linux_desktop
