#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "platform/linux/x11/panel/PanelPainter.h"
#include "tests/linux/pictures/DrawnPictures.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/ScreenReader.h"
#include "tests/support/TestWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::Rgb;

Rgb grey(double level) {
  const auto channel = static_cast<std::uint8_t>(std::clamp(level, 0.0, 255.0));
  return {channel, channel, channel};
}

Bitmap painted(PixelSize size, const std::function<Rgb(int x, int y)>& colour) {
  Bitmap picture(size.width, size.height);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) picture.at(x, y) = colour(x, y);
  }
  return picture;
}

/// Strokes of one pixel, black on white, of which letters are made.
Bitmap textLike(PixelSize size) {
  std::mt19937 random(5);
  const auto below = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
  Bitmap picture = painted(size, [](int, int) { return testbed::white; });
  for (int top = 4; top + 10 < size.height; top += 14) {
    for (int left = 4; left + 6 < size.width; left += 8) {
      for (int stroke = 0; stroke < 3; ++stroke) {
        const bool upright = below(2) == 0;
        const int x = left + (upright ? below(5) : 0);
        const int y = top + (upright ? 0 : below(9));
        for (int i = 0; i < (upright ? 9 : 5); ++i) {
          picture.at(x + (upright ? 0 : i), y + (upright ? i : 0)) = testbed::black;
        }
      }
    }
  }
  return picture;
}

Bitmap checkerboard(PixelSize size) {
  return painted(size, [](int x, int y) { return (x + y) % 2 == 0 ? testbed::white : Rgb{}; });
}

Bitmap gradient(PixelSize size) {
  return painted(size, [&](int x, int y) {
    return Rgb{grey(255.0 * x / size.width).red, grey(255.0 * y / size.height).green,
               grey(255.0 * (x + y) / (size.width + size.height)).blue};
  });
}

/// Soft shapes with grain, as of a camera.
Bitmap photoLike(PixelSize size) {
  std::mt19937 random(9);
  std::uniform_real_distribution<double> grain(-40, 40);
  return painted(size, [&](int x, int y) {
    return grey(128 + 70 * std::sin(x * 0.05) * std::cos(y * 0.07) + grain(random));
  });
}

double meanOf(const Bitmap& picture) {
  double sum = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) sum += picture.at(x, y).green;
  }
  return sum / (picture.width() * picture.height());
}

/// The standard deviation of the pixels: how clearly fine things stand out.
double contrastOf(const Bitmap& picture) {
  const double mean = meanOf(picture);
  double sum = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) sum += std::pow(picture.at(x, y).green - mean, 2);
  }
  return std::sqrt(sum / (picture.width() * picture.height()));
}

PixelSize reduced(PixelSize size, double octaves) {
  const double scale = std::pow(2, -octaves);
  return {std::max(1, static_cast<int>(std::lround(size.width * scale))),
          std::max(1, static_cast<int>(std::lround(size.height * scale)))};
}

class PictureQuality : public ::testing::Test {
 protected:
  /// The picture drawn anew so that it fills `place` of a black canvas of that size.
  Bitmap drawn(const std::shared_ptr<const LivePicture>& source, PixelSize size,
               const PixelRect& place) {
    PictureStore store(*connection_);
    store.commit(source, {true, {}}, {}, {sizeOf(place)});
    const auto target = blackCanvas(size);
    store.draw(target.picture, place, place);
    return contentsOf(*connection_, target);
  }
  Bitmap drawn(const std::shared_ptr<const LivePicture>& source, PixelSize size) {
    return drawn(source, size, rectOf(size));
  }

  Canvas blackCanvas(PixelSize size) {
    auto canvas = makeOpaqueCanvas(*connection_, size).value();
    fill(*connection_, canvas.picture, Color::black(), rectOf(size));
    return canvas;
  }

  const testbed::PrivateDisplay display_{{.windowManager = testbed::WindowManager::none}};
  const std::unique_ptr<Connection> connection_ = [this] {
    display_.adoptEnvironment();
    return Connection::open();
  }();
};

TEST_F(PictureQuality, IsCloseToTheMeanOfWhatEachPixelCovers) {
  constexpr PixelSize size{641, 427};
  struct Pattern {
    const char* name;
    Bitmap picture;
    /// Of 255. The finer what is in a picture, the more differ two sound ways to reduce it.
    double error;
  };
  const Pattern patterns[] = {{"text", textLike(size), 11},
                              {"checkerboard", checkerboard(size), 10.5},
                              {"gradient", gradient(size), 3},
                              {"photo", photoLike(size), 6}};
  for (const Pattern& pattern : patterns) {
    const auto source = uploaded(*connection_, pattern.picture);
    for (double octaves = -0.5; octaves <= 5; octaves += 0.25) {
      const PixelSize target = reduced(size, octaves);
      const Bitmap picture = drawn(source, target);
      const Bitmap expected = areaAveraged(pattern.picture, target);
      // Enlarging blends neighbours where the definition shows steps.
      const double error = octaves < 0 ? pattern.error * 4 : pattern.error;
      EXPECT_LE(meanError(picture, expected), error) << pattern.name << ", octaves " << octaves;
      // The server's filters round down.
      const double rounding = 1 + 0.5 * std::max(0.0, std::ceil(octaves));
      EXPECT_NEAR(meanOf(picture), meanOf(expected), rounding)
          << pattern.name << ", octaves " << octaves;
    }
  }
}

TEST_F(PictureQuality, IsAnExactCopyAtTheSourcesOwnSize) {
  for (const PixelSize size : {PixelSize{320, 200}, {321, 201}, {1, 1}, {2, 75}}) {
    const Bitmap picture = photoLike(size);
    EXPECT_EQ(drawn(uploaded(*connection_, picture, 3), size), picture);
  }
}

TEST_F(PictureQuality, ThinLinesDoNotJumpWhileThePanelIsResized) {
  constexpr PixelSize size{640, 480};
  const auto source = uploaded(*connection_, textLike(size));
  for (const double octaves : {0.15, 0.85, 1.15, 1.85}) {
    // Sizes of the source's very shape, so that only the choice of levels varies.
    const int middle = static_cast<int>(std::lround(160 * std::pow(2, -octaves)));
    double former = 0;
    for (int quarter = middle - 2; quarter <= middle + 2; ++quarter) {
      const double contrast = contrastOf(drawn(source, {4 * quarter, 3 * quarter}));
      // A step of four pixels of width, which a picture without jumps takes by its size alone.
      const double step = std::log2((quarter + 1.0) / quarter);
      if (former > 0) {
        EXPECT_LE(std::abs(contrast / former - 1), 0.012 + step)
            << 4 * quarter << " wide, " << former << " to " << contrast;
      }
      former = contrast;
    }
  }
}

TEST_F(PictureQuality, NothingForeignEntersAtTheEdges) {
  // What surrounds the picture has other values in all channels.
  const auto colour = [](int, int) { return Rgb{60, 200, 60}; };
  for (const PixelSize size : {PixelSize{1, 1}, {2, 3}, {37, 41}, {99, 64}, {127, 255}, {301, 7}}) {
    const auto source = uploaded(*connection_, painted(size, colour), 5);
    for (double octaves = -0.5; octaves <= 5; octaves += 0.23) {
      const PixelSize target = reduced(size, octaves);
      ASSERT_EQ(drawn(source, target), painted(target, colour))
          << size.width << " x " << size.height << ", octaves " << octaves;
    }
  }
}

TEST_F(PictureQuality, AnUpdateInPartsEqualsOneOfEverything) {
  std::mt19937 random(21);
  const auto below = [&](int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); };
  constexpr int margin = 4;
  const PixelSize size{301, 203};
  const auto source = uploaded(*connection_, photoLike(size), margin);
  for (const PixelSize target : {PixelSize{301, 203},
                                 {512, 345},
                                 {600, 405},
                                 {300, 202},
                                 {270, 182},
                                 {241, 163},
                                 {211, 142},
                                 {151, 102},
                                 {150, 101},
                                 {120, 81},
                                 {83, 56},
                                 {75, 51},
                                 {53, 36},
                                 {42, 28},
                                 {19, 13},
                                 {9, 6},
                                 {2, 1}}) {
    const PixelRect place{7, 5, target.width, target.height};
    PictureStore store(*connection_);
    const auto canvas = blackCanvas({target.width + 14, target.height + 10});
    const auto draw = [&](const PictureChanges& changes) {
      const auto committed = store.commit(source, changes, {}, {target}).value();
      for (const auto& each : store.changedIn(place, committed)) {
        store.draw(canvas.picture, place, each);
      }
    };
    draw({true, {}});
    for (int round = 0; round < 12; ++round) {
      PictureChanges changes;
      for (int i = 1 + below(4); i > 0; --i) {
        const int side = round % 3 == 0 ? 3 : 120;
        const PixelRect rect =
            intersection({below(size.width), below(size.height), 1 + below(side), 1 + below(side)},
                         rectOf(size));
        const auto level = [&] { return below(256) / 255.0; };
        fill(*connection_, source->picture, Color{level(), level(), level(), 1},
             moved(rect, margin, margin));
        changes.rects.add(rect);
      }
      draw(changes);
      ASSERT_EQ(contentsOf(*connection_, canvas), drawn(source, canvas.size, place))
          << target.width << " x " << target.height << ", round " << round;
    }
  }
}

constexpr PixelSize sizesOfAResizedPanel[] = {{600, 405}, {301, 203}, {211, 142}, {151, 102},
                                              {120, 81},  {83, 56},   {75, 51},   {19, 13}};

TEST_F(PictureQuality, APictureThatIsResizedEqualsOneThatWasTakenAtThatSize) {
  const auto source = uploaded(*connection_, photoLike({301, 203}), 4);
  PictureStore store(*connection_);
  store.commit(source, {true, {}}, {}, {{120, 81}});
  for (const auto& size : sizesOfAResizedPanel) {
    store.prepareFor({size}, source.get());
    const auto canvas = blackCanvas(size);
    store.draw(canvas.picture, rectOf(size), rectOf(size));
    EXPECT_EQ(contentsOf(*connection_, canvas), drawn(source, size)) << size.width;
  }
}

TEST_F(PictureQuality, APictureWhoseSourceHasChangedIsResizedAsWellAsMayBe) {
  constexpr PixelSize size{301, 203};
  const Bitmap photo = photoLike(size);
  for (const auto& taken : sizesOfAResizedPanel) {
    const auto source = uploaded(*connection_, photo, 4);
    PictureStore store(*connection_);
    store.commit(source, {true, {}}, {}, {taken});
    fill(*connection_, source->picture, Color::black(), {0, 0, 400, 400});
    for (const auto& resized : sizesOfAResizedPanel) {
      store.prepareFor({resized}, nullptr);
      const auto canvas = blackCanvas(resized);
      store.draw(canvas.picture, rectOf(resized), rectOf(resized));
      // Nothing finer than a half may be at hand.
      const double error = resized.width > size.width / 2 ? 24 : 8;
      EXPECT_LE(meanError(contentsOf(*connection_, canvas), areaAveraged(photo, resized)), error)
          << taken.width << " to " << resized.width;
    }
  }
}

TEST_F(PictureQuality, TheNextCommitAfterAResizeIsAsSharpAsEver) {
  const auto source = uploaded(*connection_, photoLike({301, 203}), 4);
  constexpr PixelSize size{211, 142};
  PictureStore store(*connection_);
  store.commit(source, {true, {}}, {}, {{75, 51}});
  store.prepareFor({size}, nullptr);
  PictureChanges changes;
  changes.rects.add({5, 5, 1, 1});
  EXPECT_TRUE(store.commit(source, changes, {}, {size}).value().everything);
  const auto canvas = blackCanvas(size);
  store.draw(canvas.picture, rectOf(size), rectOf(size));
  EXPECT_EQ(contentsOf(*connection_, canvas), drawn(source, size));
}

TEST_F(PictureQuality, ThePictureLiesInTheMiddleBetweenBlackBars) {
  const testbed::TestWindow window(display_.name(), {.area = {20, 30, 250, 190}, .managed = false});
  const testbed::XConnection eyes(display_.name());
  PictureStore store(*connection_);
  PanelPainter painter(*connection_, store, window.id());
  const auto colour = [](int, int) { return Rgb{90, 180, 240}; };
  for (const PixelSize size : {PixelSize{200, 150}, {201, 150}, {151, 151}, {33, 400}, {500, 21}}) {
    const PixelRect contents{3, 27, 243, 160};
    painter.setChrome(std::make_shared<PanelChrome>(
        PanelChrome{.width = 250,
                    .height = 190,
                    .pixels = {250, std::vector<std::uint32_t>(250 * 190)},
                    .contents = contents,
                    .contentsBackground = Color::black()}));
    const auto target = painter.pictureSizeFor(size);
    ASSERT_TRUE(target);
    const auto committed =
        store.commit(uploaded(*connection_, painted(size, colour)), {true, {}}, {}, {*target});
    painter.pictureChanged(committed.value());
    painter.setShowsPicture(true);
    painter.paint();
    connection_->sync();
    // As large as its shape allows; the odd pixel belongs to the bar after the picture.
    const double scale = std::min(243.0 / size.width, 160.0 / size.height);
    const int width = static_cast<int>(std::lround(size.width * scale));
    const int height = static_cast<int>(std::lround(size.height * scale));
    const int left = (243 - width) / 2;
    const int top = (160 - height) / 2;
    const Bitmap expected = painted({243, 160}, [&](int x, int y) {
      const bool inside = x >= left && x < left + width && y >= top && y < top + height;
      return inside ? colour(x, y) : testbed::black;
    });
    EXPECT_EQ(testbed::ScreenReader(eyes).read({23, 57, 243, 160}), expected)
        << size.width << " x " << size.height;
  }
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
