#include "tests/contract/ContractTest.h"

namespace vistrel::contract {
namespace {

using platform::Color;
using platform::Image;
using platform::Panel;
using platform::Point;
using platform::rect;
using platform::SampleBuffer;
using platform::View;

struct FlippedView : View {
  using View::View;
  bool isFlipped() const override { return true; }
};

struct ScaledView : View {
  void viewDidChangeBackingProperties() override {
    scale = window() != nullptr ? window()->backingScaleFactor() : 0;
  }
  double scale = 0;
};

/// Turns a stream's frames into the contents of a layer, as a mirror does.
class Projector : public platform::StreamOutputHandler,
                  public std::enable_shared_from_this<Projector> {
 public:
  Projector(std::shared_ptr<View> screen, std::shared_ptr<platform::ImageContext> context)
      : screen_(std::move(screen)), context_(std::move(context)) {}

  void streamDidOutputSampleBuffer(platform::Stream&, const SampleBuffer& sample,
                                   platform::StreamOutputType) override {
    if (!sample.imageBuffer()) return;
    const auto image = context_->createImage(sample.imageBuffer());
    if (!image) return;
    platform::mainQueue().async([screen = screen_, image] { screen->layer()->setContents(image); });
  }

 private:
  const std::shared_ptr<View> screen_;
  const std::shared_ptr<platform::ImageContext> context_;
};

class PanelContract : public ContractTest {
 protected:
  PanelContract() {
    panel_->setFloatingPanel(true);
    panel_->setLevel(platform::levelStatusBar);
    panel_->setCollectionBehavior(platform::behaviorCanJoinAllSpaces |
                                  platform::behaviorFullScreenAuxiliary);
    panel_->setHidesOnDeactivate(false);
    card_->setWantsLayer(true);
    card_->layer()->setBackgroundColor(Color::black());
    panel_->setContentView(card_);
  }

  bool eventuallyShown() {
    return turnUntil([this] { return bed_->factsOf(*panel_).isShown; });
  }
  bool eventuallyShows(Point fromTopLeft, platform::PixelBGRA color) {
    return turnUntil(
        [&] { return testing::Value(bed_->colorShown(*panel_, fromTopLeft), IsColor(color)); });
  }

  const std::shared_ptr<Panel> panel_ = platform::makeOwnedByMain<Panel>(
      rect(200, 300, 320, 240),
      platform::styleBorderless | platform::styleResizable | platform::styleNonactivatingPanel,
      platform::BackingStore::buffered, false);
  const std::shared_ptr<FlippedView> card_ = std::make_shared<FlippedView>();
};

TEST_F(PanelContract, IsShownWhereItsFrameSays) {
  EXPECT_FALSE(bed_->factsOf(*panel_).isShown);
  panel_->orderFrontRegardless();
  ASSERT_TRUE(eventuallyShown());
  EXPECT_TRUE(turnUntil([this] { return bed_->factsOf(*panel_).frame == panel_->frame(); }));
  EXPECT_EQ(panel_->frame(), rect(200, 300, 320, 240));
}

TEST_F(PanelContract, FloatsOnEveryDesktopAndLeavesTheKeyboardAlone) {
  panel_->orderFrontRegardless();
  ASSERT_TRUE(eventuallyShown());
  const PanelFacts facts = bed_->factsOf(*panel_);
  EXPECT_TRUE(facts.floatsAboveOthers);
  EXPECT_TRUE(facts.isOnEveryDesktop);
  EXPECT_FALSE(facts.hasKeyboardFocus);
}

TEST_F(PanelContract, FollowsFramesSetByCode) {
  panel_->orderFrontRegardless();
  ASSERT_TRUE(eventuallyShown());
  for (const platform::Rect& frame :
       {rect(250, 320, 320, 240), rect(250, 280, 300, 26), rect(240, 200, 400, 310)}) {
    panel_->setFrame(frame, platform::Redisplay::atOnce, platform::FrameChange::animated);
    EXPECT_EQ(panel_->frame(), frame);
    EXPECT_TRUE(turnUntil([&] { return bed_->factsOf(*panel_).frame == frame; }));
    EXPECT_EQ(panel_->frame(), frame);
  }
}

TEST_F(PanelContract, GoesWhenItIsOrderedOut) {
  panel_->orderFrontRegardless();
  ASSERT_TRUE(eventuallyShown());
  panel_->orderOut();
  EXPECT_TRUE(turnUntil([this] { return !bed_->factsOf(*panel_).isShown; }));
  panel_->orderFrontRegardless();
  EXPECT_TRUE(eventuallyShown());
}

TEST_F(PanelContract, TellsItsViewsTheScaleOfTheScreenThatItMovesTo) {
  bed_->makeTwoScreens();
  ASSERT_TRUE(turnUntil([] { return platform::screens().size() == 2; }));
  const auto screens = platform::screens();
  ASSERT_EQ(screens[0].backingScaleFactor, 1);
  ASSERT_EQ(screens[1].backingScaleFactor, 2);
  const auto view = std::make_shared<ScaledView>();
  card_->addSubview(view);
  panel_->orderFrontRegardless();
  ASSERT_TRUE(eventuallyShown());
  EXPECT_EQ(view->scale, 1);
  for (const platform::Screen& screen : {screens[1], screens[0]}) {
    panel_->setFrame(rect(screen.frame.midX() - 100, screen.frame.midY() - 75, 200, 150),
                     platform::Redisplay::atOnce);
    EXPECT_TRUE(turnUntil([&] { return view->scale == screen.backingScaleFactor; }));
    EXPECT_EQ(panel_->backingScaleFactor(), screen.backingScaleFactor);
  }
}

TEST_F(PanelContract, ShowsTheColoursOfItsViews) {
  const auto view = std::make_shared<View>(rect(100, 50, 60, 40));
  view->setWantsLayer(true);
  view->layer()->setBackgroundColor(Color::srgb(1, 0, 0));
  card_->addSubview(view);
  panel_->orderFrontRegardless();
  ASSERT_TRUE(eventuallyShown());
  EXPECT_TRUE(eventuallyShows({130, 70}, {.blue = 0, .green = 0, .red = 255, .alpha = 255}));
  EXPECT_TRUE(eventuallyShows({90, 70}, {.blue = 0, .green = 0, .red = 0, .alpha = 255}));
  view->layer()->setBackgroundColor(Color::srgb(0, 0, 1));
  EXPECT_TRUE(eventuallyShows({130, 70}, {.blue = 255, .green = 0, .red = 0, .alpha = 255}));
}

TEST_F(PanelContract, ShowsALivePictureInAllFourQuarters) {
  const auto source = bed_->openSource({.size = {400, 300}, .colors = fourColors});
  const auto record = listed(source->id());
  const auto screen = std::make_shared<View>(rect(0, 0, 320, 240));
  screen->setWantsLayer(true);
  screen->layer()->setBackgroundColor(Color::black());
  screen->layer()->setContentsGravity(platform::ContentsGravity::resizeAspect);
  card_->addSubview(screen);
  panel_->orderFrontRegardless();

  const auto queue =
      platform::makeSerialQueue("samples", platform::QualityOfService::userInteractive);
  const auto projector = std::make_shared<Projector>(screen, platform::makeImageContext({}));
  const auto stream = platform::makeStream(
      {.desktopIndependentWindow = record},
      {.width = 400, .height = 300, .minimumFrameInterval = {1, 30}, .scalesToFit = true}, {});
  ASSERT_FALSE(stream->addStreamOutput(projector, platform::StreamOutputType::screen, queue));
  stream->startCapture([](const auto&) {});

  const auto eventuallyShowsAll = [this](const Quadrants& colors) {
    return eventuallyShows({80, 60}, colors[0]) && eventuallyShows({240, 60}, colors[1]) &&
           eventuallyShows({80, 180}, colors[2]) && eventuallyShows({240, 180}, colors[3]);
  };
  EXPECT_TRUE(eventuallyShowsAll(fourColors));
  source->paint(otherColors);
  EXPECT_TRUE(eventuallyShowsAll(otherColors));
  stream->stopCapture([](const auto&) {});
}

}  // namespace
}  // namespace vistrel::contract
