#include "tests/macos/scenarios/MirrorScenario.h"

namespace vistrel {
namespace {

using testing::Contains;

/// A screen of scale 2 with one of scale 1 on its right.
class BackingScale : public MirrorScenario {
 protected:
  BackingScale() {
    desktop().screens.push_back({{{1440, 0}, {1920, 1080}}, {{1440, 0}, {1920, 1080}}, 1});
  }

  void dragPanel(CGSize by) {
    fake::forgetMessages();
    drag(panel(), onTitleBar(panel()), by);
    drop();
  }
  static CGFloat contentsScale() { return card().subviews.firstObject.layer.contentsScale; }
};

TEST_F(BackingScale, ThePictureTakesTheScaleOfItsScreen) {
  runWithMirror([&] {
    fake::deliver(stream(), {});
    EXPECT_EQ(contentsScale(), 2);
    const std::string layer = fake::describe(card().subviews.firstObject.layer);
    dragPanel({1230, 0});  // nearly half of it
    EXPECT_EQ(contentsScale(), 2);
    dragPanel({20, 0});
    EXPECT_EQ(contentsScale(), 1);
    EXPECT_THAT(fake::messages(), Contains(layer + " setContentsScale:1"));
    EXPECT_TRUE(picture() != nil);
    dragPanel({-1000, 0});
    EXPECT_EQ(contentsScale(), 2);
  });
}

TEST_F(BackingScale, ThePictureIsCapturedForItsScreenAnew) {
  runWithMirror([&] {
    EXPECT_EQ(stream().configuration.width, 2000U);
    dragPanel({1600, 0});
    EXPECT_EQ(stream().configuration.width, 2000U);
    command(recapture);
    EXPECT_EQ(stream().configuration.width, 1000U);
    EXPECT_EQ(stream().configuration.height, 500U);
  });
}

TEST_F(BackingScale, AMirrorThatOpensTakesTheScaleOfTheMainScreen) {
  desktop().screens.front().backingScaleFactor = 1;
  runWithMirror([] {
    EXPECT_EQ(contentsScale(), 1);
    EXPECT_EQ(stream().configuration.width, 1000U);
  });
}

TEST_F(BackingScale, AMirrorOpensWhereThereIsNoScreen) {
  run([&] {
    desktop().screens.clear();
    openMirror();
    EXPECT_EQ(fake::describe(panel().frame), "{{32,672},{340,196}}");
    EXPECT_EQ(contentsScale(), 2);
    EXPECT_EQ(stream().configuration.width, 2000U);
    drag(panel(), onTitleBar(panel()), {-25, 30});
    drop();
    EXPECT_EQ(fake::describe(panel().frame), "{{0,704},{340,196}}");
    closeMirror();
  });
}

TEST_F(BackingScale, AMirrorMayCloseBeforeItIsTold) {
  runWithMirror([&] {
    const NSPoint place = onTitleBar(panel());
    fake::mouseDown(panel(), place);
    closeLater(0);
    desktop().mouse.x += 1600;
    fake::mouseDragged(place);
    drop();
    EXPECT_TRUE(panels().empty());
  });
}

}  // namespace
}  // namespace vistrel
