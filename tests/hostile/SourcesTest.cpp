#include <array>
#include <atomic>
#include <charconv>
#include <csignal>
#include <cstring>
#include <string>
#include <xcb/shape.h>

#include "tests/hostile/HostileTest.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ScreenReader.h"

namespace vistrel::hostile {
namespace {

using testbed::black;
using testbed::blue;
using testbed::fourColours;
using testbed::green;
using testbed::Quadrants;
using testbed::Rect;
using testbed::red;
using testbed::Rgb;
using testbed::similar;
using testbed::white;
using testbed::yellow;

class Sources : public HostileTest {
 protected:
  using HostileTest::HostileTest;

  bool eventuallyShows(const RawSource& source, const Quadrants& colours) {
    return testbed::eventually([&] { return mirror_.shows(colours, source.area()); });
  }
  void expectMirrored(const RawSource::Options& options) {
    RawSource source(connection_, options);
    mirror_.start(source.id());
    mirror_.settle();
    source.paint(fourColours);
    EXPECT_TRUE(eventuallyShows(source, fourColours));
    source.paint(otherColours);
    EXPECT_TRUE(eventuallyShows(source, otherColours));
    mirror_.stop();
    mirror_.settle();
  }
  void expectStillWorking() {
    SCOPED_TRACE("a fresh source");
    expectMirrored({.area = {300, 300, 160, 120}});
  }

  TestMirror mirror_{connection_, panelArea};
};

TEST_F(Sources, OfEveryKindAreMirroredWithoutAWindowManager) {
  const auto* translucent = otherVisual(connection_, 32);
  const auto* second = otherVisual(connection_, connection_.screen().root_depth);
  ASSERT_NE(translucent, nullptr);
  {
    SCOPED_TRACE("ordinary");
    expectMirrored({});
  }
  {
    SCOPED_TRACE("override-redirect");
    expectMirrored({.overrideRedirect = true});
  }
  {
    SCOPED_TRACE("with alpha, all of it 0");
    expectMirrored({.visual = translucent, .depth = 32});
  }
  if (second) {
    SCOPED_TRACE("another visual and colormap");
    expectMirrored({.visual = second, .depth = connection_.screen().root_depth});
  }
  {
    SCOPED_TRACE("partly off screen");
    expectMirrored({.area = {-150, -100, 200, 160}});
  }
}

TEST_F(Sources, WithABorderAreMirroredWithoutIt) {
  RawSource source(connection_, {.border = 9});
  source.paint(fourColours);
  mirror_.start(source.id());
  ASSERT_TRUE(eventuallyShows(source, fourColours));
  EXPECT_TRUE(similar(mirror_.colourAt(0.01, 0.01, source.area()), red, 8));
  EXPECT_TRUE(similar(mirror_.colourAt(0.99, 0.99, source.area()), yellow, 8));
}

TEST_F(Sources, OfExtremeShapesAreMirrored) {
  for (const auto& [width, height] : {std::pair{1, 1}, {2, 1}, {1, 7}, {3, 3}}) {
    SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
    RawSource source(connection_, {.area = {20, 20, width, height}});
    source.paint(Quadrants::uniform(green));
    mirror_.start(source.id());
    EXPECT_TRUE(eventuallyShows(source, Quadrants::uniform(green)));
    source.paint(Quadrants::uniform(red));
    EXPECT_TRUE(eventuallyShows(source, Quadrants::uniform(red)));
  }
  // One row or column of the panel is left of these.
  for (const auto& [width, height] : {std::pair{30000, 20}, {20, 30000}, {32735, 2}, {2, 32735}}) {
    SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
    const auto picture =
        width > height ? Quadrants{red, green, red, green} : Quadrants{red, red, green, green};
    RawSource source(connection_, {.area = {20, 20, width, height}});
    mirror_.start(source.id());
    // What lies off the screen is kept from now on.
    mirror_.settle();
    source.paint(picture);
    EXPECT_TRUE(eventuallyShows(source, picture));
    const auto panel = mirror_.panelPicture();
    EXPECT_EQ(panel.at(20, 20), black);
    EXPECT_EQ(panel.at(panelArea.width - 20, panelArea.height - 20), black);
  }
  {
    SCOPED_TRACE("a side that the server cannot read");
    RawSource source(connection_, {.area = {20, 20, 32767, 2}});
    const int before = mirror_.samples();
    mirror_.start(source.id());
    mirror_.settle();
    source.paint(fourColours);
    mirror_.settle();
    EXPECT_EQ(mirror_.samples(), before);
  }
  expectStillWorking();
}

TEST_F(Sources, ThatAreResizedAllTheTimeAreMirroredAtTheirLastSize) {
  RawSource source(connection_, {});
  mirror_.start(source.id());
  for (int i = 0; i < 180; ++i) {
    source.resize(60 + (i * 37) % 300, 50 + (i * 53) % 300);
    source.paint(i % 2 == 0 ? fourColours : otherColours);
    mirror_.turn();
  }
  source.resize(210, 130);
  source.paint(fourColours);
  EXPECT_TRUE(eventuallyShows(source, fourColours));
}

TEST_F(Sources, ThatComeAndGoQuicklyKeepTheirPictureAndGoOn) {
  RawSource source(connection_, {});
  source.paint(fourColours);
  mirror_.start(source.id());
  ASSERT_TRUE(eventuallyShows(source, fourColours));
  for (int i = 0; i < 200; ++i) {
    source.unmap();
    source.map();
    source.paint(otherColours);
    mirror_.turn();
  }
  EXPECT_TRUE(eventuallyShows(source, otherColours));
  source.unmap();
  mirror_.settle();
  EXPECT_TRUE(mirror_.shows(otherColours, source.area()));
}

TEST_F(Sources, ThatVanishWhileTheirStreamStartsEndIt) {
  for (int i = 0; i < 100; ++i) {
    RawSource source(connection_, {});
    mirror_.start(source.id());
    source.destroy();
  }
  mirror_.settle();
  EXPECT_TRUE(testbed::eventually([&] { return mirror_.answered() == mirror_.asked(); }));
  expectStillWorking();
}

TEST_F(Sources, ThatLoseAPartGoOnWithoutIt) {
  RawSource source(connection_, {});
  source.paint(fourColours);
  const xcb_window_t part = xcb_generate_id(connection_.get());
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, part, source.id(), 0, 0, 100, 80, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL,
                    &connection_.screen().white_pixel);
  xcb_map_window(connection_.get(), part);
  connection_.sync();
  mirror_.start(source.id());
  const Quadrants withPart{white, fourColours.topRight, fourColours.bottomLeft,
                           fourColours.bottomRight};
  EXPECT_TRUE(eventuallyShows(source, withPart));
  xcb_destroy_window(connection_.get(), part);
  source.paint(otherColours);
  EXPECT_TRUE(eventuallyShows(source, otherColours));
}

TEST_F(Sources, ThatAreShapedAreMirroredInsideTheirShape) {
  RawSource source(connection_, {});
  const xcb_rectangle_t leftHalf{0, 0, 100, 160};
  xcb_shape_rectangles(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                       XCB_CLIP_ORDERING_UNSORTED, source.id(), 0, 0, 1, &leftHalf);
  mirror_.start(source.id());
  for (const auto colour : {red, blue}) {
    source.paint(Quadrants::uniform(colour));
    EXPECT_TRUE(testbed::eventually([&] {
      mirror_.turn();
      return similar(mirror_.colourAt(0.02, 0.5, source.area()), colour, 8) &&
             similar(mirror_.colourAt(0.48, 0.5, source.area()), colour, 8);
    }));
  }
}

TEST_F(Sources, CannotBeTakenAwayByEventsThatOthersMakeUp) {
  RawSource source(connection_, {});
  source.paint(fourColours);
  mirror_.start(source.id());
  ASSERT_TRUE(eventuallyShows(source, fourColours));
  for (const std::uint8_t type :
       {XCB_DESTROY_NOTIFY, XCB_UNMAP_NOTIFY, XCB_REPARENT_NOTIFY, XCB_CONFIGURE_NOTIFY}) {
    xcb_destroy_notify_event_t event{};
    event.response_type = type;
    event.event = source.id();
    event.window = source.id();
    std::array<char, 32> bytes{};
    std::memcpy(bytes.data(), &event, sizeof(event));
    xcb_send_event(connection_.get(), 0, source.id(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   bytes.data());
  }
  connection_.sync();
  mirror_.settle();
  EXPECT_EQ(mirror_.ends(), 0);
  source.paint(otherColours);
  EXPECT_TRUE(eventuallyShows(source, otherColours));
}

/// A program of its own, which can be held up and killed.
class PaintingSources : public Sources {
 protected:
  xcb_window_t paintingWindow() {
    EXPECT_TRUE(testbed::eventually([this] { return painter_.standardOutput().ends_with('\n'); }));
    const auto text = painter_.standardOutput();
    xcb_window_t window = XCB_NONE;
    std::from_chars(text.data(), text.data() + text.size(), window);
    return window;
  }
  /// Whether the panel shows what the window shows on the screen, at its stripes.
  bool isUpToDate() {
    mirror_.turn();
    const auto source = testbed::ScreenReader(connection_).read(sourceArea);
    for (const double y : {0.125, 0.375, 0.625, 0.875}) {
      if (!similar(source.at(Rect{0, 0, sourceArea.width, sourceArea.height}.at(0.5, y)),
                   mirror_.colourAt(0.5, y, sourceArea), 8)) {
        return false;
      }
    }
    return true;
  }

  static constexpr Rect sourceArea{20, 20, 200, 200};
  testbed::ChildProcess painter_{
      {.arguments = {VISTREL_PAINTING_SOURCE}, .environment = display_.environment()}};
};

TEST_F(PaintingSources, AreMirroredHoweverOftenTheyPaint) {
  mirror_.start(paintingWindow());
  ASSERT_TRUE(testbed::eventually([this] {
    mirror_.turn();
    return mirror_.samples() >= 30;
  })) << mirror_.startFailure();
  painter_.sendSignal(SIGSTOP);
  EXPECT_TRUE(testbed::eventually([this] { return isUpToDate(); }));
  painter_.sendSignal(SIGCONT);
  const int before = mirror_.samples();
  EXPECT_TRUE(testbed::eventually([&] { return mirror_.samples() > before; }));
}

TEST_F(PaintingSources, ThatHangAreListedAndMirrored) {
  const auto window = paintingWindow();
  painter_.sendSignal(SIGSTOP);
  mirror_.start(window);
  EXPECT_TRUE(testbed::eventually([this] { return mirror_.samples() > 0 && isUpToDate(); }));
  mirror_.resizePanel(200, 200);
  EXPECT_TRUE(testbed::eventually([this] { return isUpToDate(); }));
  painter_.sendSignal(SIGKILL);
}

TEST_F(PaintingSources, ThatAreKilledWhileTheyDrawEndTheirStreamAndNothingElse) {
  mirror_.start(paintingWindow());
  ASSERT_TRUE(testbed::eventually([this] { return mirror_.samples() >= 3; }));
  painter_.sendSignal(SIGKILL);
  EXPECT_TRUE(testbed::eventually([this] { return mirror_.ends() == 1; }));
  mirror_.turn();
  mirror_.settle();
  EXPECT_FALSE(similar(mirror_.colourAt(0.5, 0.125, sourceArea), black, 8))
      << "the last picture is gone";
  expectStillWorking();
}

// It goes before the server is asked what the frame's changes are: they are what is left of it
// then.
TEST_F(Sources, ThatGoPartByPartWhileAFrameIsTakenKeepAPictureOfTheWhole) {
  auto* const xcb = connection_.get();
  const auto makeIn = [&](xcb_window_t parent, Rect area, std::uint32_t colour) {
    const xcb_window_t window = xcb_generate_id(xcb);
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, parent, static_cast<std::int16_t>(area.x),
                      static_cast<std::int16_t>(area.y), static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(area.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL, &colour);
    xcb_map_window(xcb, window);
    return window;
  };
  const auto& screen = connection_.screen();
  const RawSource frame(connection_, {});
  const auto client = makeIn(frame.id(), {0, 0, 200, 160}, screen.black_pixel);
  const auto part = makeIn(client, {0, 0, 100, 80}, screen.white_pixel);
  const auto other = makeIn(client, {100, 80, 100, 80}, screen.white_pixel);
  connection_.sync();
  std::atomic<bool> isGoing = false;
  mirror_.doBeforeTaking([&] {
    if (!isGoing.exchange(false)) return;
    xcb_destroy_window(xcb, part);
    xcb_destroy_window(xcb, client);
    connection_.sync();
  });
  mirror_.start(client);
  ASSERT_TRUE(eventuallyShows(frame, {white, black, black, white}));
  mirror_.settle();
  isGoing = true;
  xcb_change_window_attributes(xcb, other, XCB_CW_BACK_PIXEL, &screen.black_pixel);
  xcb_clear_area(xcb, 0, other, 0, 0, 0, 0);
  connection_.sync();
  EXPECT_TRUE(testbed::eventually([&] { return mirror_.ends() == 1; }));
  mirror_.turn();
  mirror_.settle();
  EXPECT_TRUE(similar(mirror_.colourAt(0.25, 0.25, frame.area()), white, 8));
}

testbed::PrivateDisplay::Options screenOfDepth(int depth) {
  return {.windowManager = testbed::WindowManager::none,
          .serverArguments = {"-screen", "0", "1280x1024x" + std::to_string(depth)}};
}

/// On a screen of another depth than the usual one.
class SourcesAtDepth : public Sources, public testing::WithParamInterface<int> {
 protected:
  SourcesAtDepth() : Sources(screenOfDepth(GetParam())) {}
};

TEST_P(SourcesAtDepth, AreMirroredInTheirColours) {
  ASSERT_EQ(connection_.screen().root_depth, GetParam());
  for (const int border : {0, 3}) {
    RawSource source(connection_, {.border = border});
    mirror_.start(source.id());
    for (const auto& picture : {fourColours, otherColours}) {
      source.paint(picture);
      EXPECT_TRUE(testbed::eventually([&] { return mirror_.wasGiven(picture); }));
      mirror_.turn();
    }
  }
}

/// On a screen that knows 256 colours and no others.
class SourcesOfFewColours : public Sources {
 protected:
  SourcesOfFewColours() : Sources(screenOfDepth(8)) {}
};

TEST_F(SourcesOfFewColours, AreRefusedInWords) {
  RawSource source(connection_, {});
  mirror_.start(source.id());
  mirror_.settle();
  EXPECT_EQ(mirror_.startFailure(), "The display server does not offer capturing windows.");
}

INSTANTIATE_TEST_SUITE_P(OfScreens, SourcesAtDepth, testing::Values(16, 30),
                         [](const auto& depth) { return std::to_string(depth.param); });

}  // namespace
}  // namespace vistrel::hostile
