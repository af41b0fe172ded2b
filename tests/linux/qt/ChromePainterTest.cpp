#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>

#include "platform/Controls.h"
#include "platform/linux/qt/paint/ChromePainter.h"
#include "tests/linux/qt/OffscreenQt.h"

namespace vistrel::platform::linux_desktop {
namespace {

class SomePicture : public Image {};

/// A view whose origin is at its top-left.
class Flipped : public View {
 public:
  using View::View;
  bool isFlipped() const override { return true; }
};

class Strokes : public View {
 public:
  using View::View;
  void draw(GraphicsContext& context) override {
    context.strokePath({{{{1, 1}, {9, 9}}}}, 1, Color::white());
  }
};

std::uint32_t alphaOf(std::uint32_t pixel) { return pixel >> 24U; }

/// A card of 120 × 80.4 points: a bar of 26 points, a picture, strokes and text over it.
class ChromePainter : public ::testing::Test {
 protected:
  void SetUp() override {
    OffscreenQt::start();
    card_->setWantsLayer(true);
    card_->layer()->setCornerRadius(10);
    card_->layer()->setMasksToBounds(true);
    card_->layer()->setBorderWidth(1);
    card_->layer()->setBorderColor(Color::white());
    card_->layer()->setBackgroundColor(Color::black());
    content_->setWantsLayer(true);
    content_->layer()->setBackgroundColor(Color::srgb(0, 0, 1));
    content_->layer()->setContents(std::make_shared<SomePicture>());
    label_->setTextColor(Color::white());
    for (const auto& view : {content_, std::static_pointer_cast<View>(label_), strokes_}) {
      card_->addSubview(view);
    }
  }

  PaintedChrome paintAt(double scale) {
    return paintChrome(*card_, static_cast<int>(120 * scale), static_cast<int>(80 * scale), scale);
  }

  static std::uint32_t pixel(const PanelChrome& chrome, int x, int y) {
    return chrome.pixels.rows(y, 1).at(static_cast<std::size_t>(x));
  }

  const std::shared_ptr<View> card_ = std::make_shared<Flipped>(rect(0, 0, 120, 80.4));
  const std::shared_ptr<View> content_ = std::make_shared<View>(rect(0, 26, 120, 54.4));
  const std::shared_ptr<Label> label_ = [] {
    auto label = std::make_shared<Label>("Status");
    label->setFrame(rect(12, 40, 96, 20));
    return label;
  }();
  const std::shared_ptr<View> strokes_ = std::make_shared<Strokes>(rect(104, 64.4, 16, 16));
};

TEST_F(ChromePainter, LeavesAnOpeningForThePicture) {
  const auto painted = paintAt(1);
  EXPECT_EQ(painted.contentsLayer, content_->layer());
  EXPECT_EQ(painted.chrome.contents, (PixelRect{0, 26, 120, 54}));
  EXPECT_EQ(painted.chrome.contentsBackground, Color::srgb(0, 0, 1));
  EXPECT_EQ(alphaOf(pixel(painted.chrome, 60, 70)), 0U);
  EXPECT_EQ(alphaOf(pixel(painted.chrome, 60, 25)), 255U);
}

TEST_F(ChromePainter, NamesEveryPartOfTheOpeningThatItDrawsOver) {
  for (const double scale : {1.0, 1.5, 2.0}) {
    const PanelChrome chrome = paintAt(scale).chrome;
    const PixelRect& opening = chrome.contents.value();
    for (int y = opening.y; y < opening.y + opening.height; ++y) {
      for (int x = opening.x; x < opening.x + opening.width; ++x) {
        if (pixel(chrome, x, y) == 0) continue;
        EXPECT_TRUE(std::any_of(chrome.overlays.begin(), chrome.overlays.end(),
                                [&](const PixelRect& part) {
                                  return x >= part.x && x < part.x + part.width && y >= part.y &&
                                         y < part.y + part.height;
                                }))
            << x << ", " << y << " at scale " << scale;
      }
    }
  }
}

TEST_F(ChromePainter, OverlaysStayInsideTheOpeningAndLeaveMostOfItFree) {
  const PanelChrome chrome = paintAt(1).chrome;
  int area = 0;
  for (const PixelRect& part : chrome.overlays) {
    EXPECT_GE(part.x, chrome.contents->x);
    EXPECT_GE(part.y, chrome.contents->y);
    EXPECT_LE(part.x + part.width, chrome.contents->x + chrome.contents->width);
    EXPECT_LE(part.y + part.height, chrome.contents->y + chrome.contents->height);
    area += part.width * part.height;
  }
  EXPECT_LT(area, chrome.contents->width * chrome.contents->height / 2);
}

TEST_F(ChromePainter, PaintsTheBackgroundWhileThereIsNoPicture) {
  content_->layer()->setContents(nullptr);
  const auto painted = paintAt(1);
  EXPECT_EQ(painted.contentsLayer, nullptr);
  EXPECT_EQ(painted.chrome.contents, std::nullopt);
  EXPECT_EQ(pixel(painted.chrome, 60, 70), 0xff0000ffU);
}

TEST_F(ChromePainter, AHiddenPictureHasNoOpening) {
  content_->setHidden(true);
  EXPECT_EQ(paintAt(1).chrome.contents, std::nullopt);
}

TEST_F(ChromePainter, EdgesAreCrispWhereverThePointsFall) {
  const PanelChrome chrome = paintAt(1).chrome;
  EXPECT_EQ(pixel(chrome, 60, 79), 0xffffffffU) << "the border's last row";
  EXPECT_EQ(pixel(chrome, 60, 78), 0U) << "the picture above it";
  EXPECT_EQ(pixel(chrome, 0, 40), 0xffffffffU);
  EXPECT_EQ(pixel(chrome, 1, 40), 0U);
}

TEST_F(ChromePainter, ReachesTheEdgesOfAWindowThatTheToolkitHasMadeAPixelLarger) {
  for (const double scale : {1.0, 1.5, 2.0}) {
    const int width = static_cast<int>(std::lround(120 * scale)) + 1;
    const int height = static_cast<int>(std::lround(80.4 * scale)) + 1;
    const PanelChrome chrome = paintChrome(*card_, width, height, scale).chrome;
    EXPECT_EQ(pixel(chrome, width / 2, height - 1), 0xffffffffU) << "the border at " << scale;
    EXPECT_EQ(pixel(chrome, width - 1, height / 4), 0xffffffffU) << "the border at " << scale;
    const PixelRect& opening = chrome.contents.value();
    EXPECT_EQ(opening.x + opening.width, width);
    EXPECT_EQ(opening.y + opening.height, height);
  }
}

TEST_F(ChromePainter, TheBorderIsOfWholePixels) {
  for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 2.5}) {
    const auto chrome = paintAt(scale).chrome;
    const int width = static_cast<int>(scale);
    const int middle = chrome.width / 2;
    const auto border = pixel(chrome, middle, 0);
    const auto inside = pixel(chrome, middle, width);
    EXPECT_NE(border, inside) << scale;
    for (int y = 0; y < 2 * width; ++y) {
      const auto expected = y < width ? border : inside;
      EXPECT_EQ(pixel(chrome, middle, y), expected) << y << " at " << scale;
      EXPECT_EQ(pixel(chrome, chrome.width - 1 - y, chrome.height / 4), expected) << scale;
    }
  }
}

TEST_F(ChromePainter, RoundsTheCornersOfAMaskedCardOnly) {
  EXPECT_EQ(paintAt(1).chrome.cornerRadius, 10);
  EXPECT_EQ(paintAt(2).chrome.cornerRadius, 20);
  card_->layer()->setMasksToBounds(false);
  EXPECT_EQ(paintAt(1).chrome.cornerRadius, 0);
}

TEST_F(ChromePainter, PaintsPixelsAtTheScaleOfTheScreen) {
  const PanelChrome chrome = paintAt(2).chrome;
  EXPECT_EQ(chrome.width, 240);
  EXPECT_EQ(chrome.pixels.rows(0, chrome.pixels.height()).size(), 240U * 160U);
  EXPECT_EQ(chrome.contents, (PixelRect{0, 52, 240, 108}));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
