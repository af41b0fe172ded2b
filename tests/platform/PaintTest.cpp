#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Controls.h"
#include "platform/simulated/RecordingGraphicsContext.h"
#include "platform/simulated/SimulatedFrames.h"

namespace vistrel::platform {
namespace {

using simulated::DrawCommand;
using simulated::RecordingGraphicsContext;
using testing::ElementsAre;
using enum DrawCommand::Kind;

struct FlippedView : View {
  using View::View;
  bool isFlipped() const override { return true; }
};

struct StrokingControl : Control {
  using Control::Control;
  void draw(GraphicsContext& context) override {
    context.strokePath({{{{0, 0}, {10, 5}}}}, 1, Color::white());
  }
};

std::shared_ptr<View> filled(const Rect& frame, Color color) {
  auto view = std::make_shared<View>(frame);
  view->setWantsLayer(true);
  view->layer()->setBackgroundColor(color);
  return view;
}

std::vector<DrawCommand> painted(View& view) {
  RecordingGraphicsContext context;
  paint(view, context);
  return context.commands();
}

std::vector<DrawCommand::Kind> kinds(const std::vector<DrawCommand>& commands) {
  std::vector<DrawCommand::Kind> result;
  for (const auto& command : commands) result.push_back(command.kind);
  return result;
}

TEST(Paint, GoesFromBackgroundOverOwnDrawingAndSubviewsToTheBorder) {
  StrokingControl view(rect(0, 0, 100, 50));
  view.setWantsLayer(true);
  view.layer()->setBackgroundColor(Color::black());
  view.layer()->setBorderWidth(1);
  view.addSubview(filled(rect(0, 0, 10, 10), Color::white()));
  EXPECT_THAT(kinds(painted(view)), ElementsAre(fill, path, fill, stroke));
}

TEST(Paint, LeavesOutHiddenViews) {
  View view(rect(0, 0, 100, 50));
  view.addSubview(filled(rect(0, 0, 10, 10), Color::white()));
  view.subviews().front()->setHidden(true);
  EXPECT_TRUE(painted(view).empty());
}

TEST(Paint, PlacesSubviewsOfAnUnflippedViewFromItsBottom) {
  View view(rect(0, 0, 100, 50));
  view.addSubview(filled(rect(5, 10, 20, 15), Color::white()));
  EXPECT_EQ(painted(view).front().rect, rect(5, 25, 20, 15));
}

TEST(Paint, PlacesSubviewsOfAFlippedViewFromItsTop) {
  FlippedView view(rect(0, 0, 100, 50));
  view.addSubview(filled(rect(5, 10, 20, 15), Color::white()));
  EXPECT_EQ(painted(view).front().rect, rect(5, 10, 20, 15));
}

TEST(Paint, GivesAnUnflippedViewACoordinateSystemThatRunsUp) {
  StrokingControl view(rect(0, 0, 100, 50));
  const auto commands = painted(view);
  EXPECT_EQ(commands.front().path.segments.front().first, (Point{0, 50}));
  EXPECT_EQ(commands.front().path.segments.front().second, (Point{10, 45}));
}

TEST(Paint, ShowsALayersPictureInPlaceOfItsBackground) {
  const auto view = filled(rect(0, 0, 100, 50), Color::black());
  view->layer()->setContents(std::make_shared<Image>());
  EXPECT_THAT(kinds(painted(*view)), ElementsAre(contents));
}

TEST(Paint, ClipsSubviewsToAMaskingLayer) {
  FlippedView view(rect(0, 0, 100, 50));
  view.setWantsLayer(true);
  view.layer()->setMasksToBounds(true);
  view.layer()->setCornerRadius(10);
  view.addSubview(filled(rect(90, 0, 50, 10), Color::white()));
  EXPECT_EQ(painted(view).front().clip, rect(0, 0, 100, 50));
}

TEST(ColorAt, LaysTranslucentFillsOverOneAnother) {
  FlippedView view(rect(0, 0, 100, 50));
  view.addSubview(filled(rect(0, 0, 100, 50), Color::white()));
  view.addSubview(filled(rect(0, 0, 100, 10), Color::black(0.5)));
  EXPECT_EQ(colorAt(painted(view), {50, 5}), Color::srgb(0.5, 0.5, 0.5));
  EXPECT_EQ(colorAt(painted(view), {50, 15}), Color::white());
}

TEST(ColorAt, LetterboxesAPictureThatKeepsItsAspect) {
  const auto view = filled(rect(0, 0, 100, 50), Color::black());
  view->layer()->setContentsGravity(ContentsGravity::resizeAspect);
  const auto pixels = std::dynamic_pointer_cast<const HostPixelBuffer>(
      simulated::solidPixels(10, 10, {.blue = 0, .green = 0, .red = 255, .alpha = 255}));
  view->layer()->setContents(std::make_shared<simulated::SimulatedImage>(pixels));
  EXPECT_EQ(colorAt(painted(*view), {10, 25}), Color::black());
  EXPECT_EQ(colorAt(painted(*view), {50, 25}), Color::srgb(1, 0, 0));
  EXPECT_EQ(colorAt(painted(*view), {90, 25}), Color::black());
}

}  // namespace
}  // namespace vistrel::platform
