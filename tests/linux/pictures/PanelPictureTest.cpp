#include <gtest/gtest.h>
#include <xcb/damage.h>

#include "tests/linux/pictures/TestMirror.h"
#include "tests/support/Poll.h"
#include "tests/support/PrivateDisplay.h"
#include "tests/support/ScreenReader.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testbed::eventually;
using testbed::Quadrants;
using testbed::TestWindow;

constexpr testbed::Rect sourceArea{600, 100, 200, 160};
constexpr testbed::Rect panelArea{20, 30, 100, 80};
const auto black = Quadrants::uniform(testbed::black);
const auto red = Quadrants::uniform(testbed::red);
const auto green = Quadrants::uniform(testbed::green);
const auto blue = Quadrants::uniform(testbed::blue);

/// Counts how often something is drawn into a window.
class Drawings {
 public:
  Drawings(const testbed::XConnection& connection, xcb_window_t window) : connection_(connection) {
    auto* const xcb = connection.get();
    const testbed::XReply<xcb_damage_query_version_reply_t> version(
        xcb_damage_query_version_reply(xcb, xcb_damage_query_version(xcb, 1, 1), nullptr));
    xcb_damage_create(xcb, xcb_generate_id(xcb), window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    connection.sync();
  }

  int count() {
    connection_.sync();
    const auto notify =
        xcb_get_extension_data(connection_.get(), &xcb_damage_id)->first_event + XCB_DAMAGE_NOTIFY;
    while (const auto event =
               testbed::XReply<xcb_generic_event_t>(xcb_poll_for_event(connection_.get()))) {
      if (event->response_type == notify) ++count_;
    }
    return count_;
  }

 private:
  const testbed::XConnection& connection_;
  int count_ = 0;
};

class PanelPicture : public testing::Test {
 protected:
  /// Waits until the mirror has taken a frame that shows this.
  static bool receives(const TestMirror& mirror, const Quadrants& colours) {
    const bool isGiven = eventually([&] { return mirror.wasGiven(colours); });
    mirror.settle();
    return isGiven;
  }
  /// Whether the panel shows this, without having been told anything.
  static bool hasIn(const TestMirror& mirror, const Quadrants& colours) {
    return similar(mirror.colourAt(0.25, 0.25, sourceArea), colours.topLeft, 8) &&
           similar(mirror.colourAt(0.75, 0.75, sourceArea), colours.bottomRight, 8);
  }
  /// Starts the mirror and has the panel show its picture.
  void showInPanel(TestMirror& mirror, const TestWindow& source, const Quadrants& colours) {
    mirror.start(source.id());
    ASSERT_TRUE(receives(mirror, colours));
    ASSERT_TRUE(eventually([&] { return mirror.shows(colours, sourceArea); }));
  }

  const testbed::PrivateDisplay display_{{.windowManager = testbed::WindowManager::none}};
  const testbed::XConnection connection_ = [this] {
    display_.adoptEnvironment();
    return testbed::XConnection(display_.name());
  }();
  TestWindow source_{display_.name(), {.area = sourceArea, .picture = red, .managed = false}};
};

TEST_F(PanelPicture, FollowsTheSourceOnceItIsShown) {
  TestMirror mirror(connection_, panelArea);
  showInPanel(mirror, source_, red);
  for (const auto& colours : {blue, green, testbed::fourColours}) {
    source_.show(colours);
    EXPECT_TRUE(eventually([&] { return hasIn(mirror, colours); }));
  }
  mirror.resizePanel(150, 120);
  source_.show(blue);
  EXPECT_TRUE(eventually([&] { return hasIn(mirror, blue); }));
}

TEST_F(PanelPicture, IsNotThereBeforeItIsShown) {
  TestMirror mirror(connection_, panelArea);
  mirror.start(source_.id());
  for (const auto& colours : {red, blue, green}) {
    source_.show(colours);
    ASSERT_TRUE(receives(mirror, colours));
    EXPECT_TRUE(hasIn(mirror, black));
  }
  mirror.resizePanel(150, 120);
  mirror.settle();
  EXPECT_TRUE(hasIn(mirror, black));
  EXPECT_TRUE(eventually([&] { return mirror.shows(green, sourceArea); }));
}

TEST_F(PanelPicture, StaysAwayOnceItIsTakenAway) {
  TestMirror mirror(connection_, panelArea);
  showInPanel(mirror, source_, red);
  mirror.takePictureAway();
  source_.show(blue);
  ASSERT_TRUE(receives(mirror, blue));
  EXPECT_TRUE(hasIn(mirror, black));
  EXPECT_TRUE(eventually([&] { return mirror.shows(blue, sourceArea); })) << "shown again";
}

TEST_F(PanelPicture, GivesWayToTheOneOfAnotherMirror) {
  TestWindow another(display_.name(), {.area = {900, 100, 200, 160},
                                       .picture = Quadrants::uniform(testbed::yellow),
                                       .managed = false});
  TestMirror mirror(connection_, panelArea);
  TestMirror other(connection_, {20, 300, 100, 80});
  showInPanel(mirror, source_, red);
  showInPanel(other, another, Quadrants::uniform(testbed::yellow));
  another.show(green);
  ASSERT_TRUE(receives(other, green));
  mirror.showPictureOf(other);
  source_.show(blue);
  ASSERT_TRUE(receives(mirror, blue));
  EXPECT_TRUE(eventually([&] { return hasIn(mirror, green); }));
  another.show(red);
  EXPECT_TRUE(eventually([&] { return hasIn(mirror, red) && hasIn(other, red); }));
}

TEST_F(PanelPicture, IsNeverOneThatWasNotTakenOver) {
  TestMirror mirror(connection_, panelArea);
  showInPanel(mirror, source_, red);
  mirror.setAccepting(false);
  source_.show(blue);
  ASSERT_TRUE(receives(mirror, blue));
  EXPECT_TRUE(hasIn(mirror, red));
  mirror.resizePanel(150, 120);
  mirror.settle();
  EXPECT_TRUE(eventually([&] { return hasIn(mirror, red); }));
  { const TestWindow cover(display_.name(), {.area = {0, 0, 300, 300}, .managed = false}); }
  mirror.settle();
  EXPECT_TRUE(eventually([&] { return hasIn(mirror, red); }));
  mirror.setAccepting(true);
  source_.show(green);
  EXPECT_TRUE(eventually([&] { return hasIn(mirror, green); }));
}

TEST_F(PanelPicture, GoesOnOverAnotherConnectionWhenItsOwnIsThrownOut) {
  TestMirror mirror(connection_, panelArea);
  showInPanel(mirror, source_, red);
  for (const auto& colours : {blue, green}) {
    mirror.throwOut();
    source_.show(colours);
    EXPECT_TRUE(eventually([&] { return hasIn(mirror, colours); }));
    mirror.resizePanel(150, 120);
    EXPECT_TRUE(eventually([&] { return hasIn(mirror, colours); }));
  }
  EXPECT_EQ(mirror.ends(), 0);
}

TEST_F(PanelPicture, ComesToLightWithoutBeingDrawn) {
  TestMirror mirror(connection_, panelArea);
  showInPanel(mirror, source_, red);
  const TestWindow cover(display_.name(),
                         {.area = {0, 0, 300, 300}, .picture = blue, .managed = false});
  const testbed::ScreenReader screen(connection_);
  ASSERT_TRUE(eventually([&] {
    return screen.pixel({panelArea.x + 20, panelArea.y + 20}) == testbed::blue;
  }));
  mirror.settle();
  // A look at the panel raises it.
  mirror.whileQueueIsHeldUp([&] { EXPECT_TRUE(hasIn(mirror, red)); });
}

TEST_F(PanelPicture, IsDrawnOnceForEachFrame) {
  TestMirror mirror(connection_, panelArea);
  showInPanel(mirror, source_, red);
  Drawings drawings(connection_, mirror.panel());
  source_.show(blue);
  ASSERT_TRUE(eventually([&] { return hasIn(mirror, blue); }));
  mirror.settle();
  const int before = drawings.count();
  EXPECT_GT(before, 0);
  mirror.turn();
  mirror.settle();
  EXPECT_EQ(drawings.count(), before);
}

TEST_F(PanelPicture, IsDrawnOnceMoreAtRestForACompositingManagerThatOverlooksDrawings) {
  const auto drawingsOfFirstPicture = [this](TestMirror& mirror) {
    mirror.start(source_.id());
    EXPECT_TRUE(receives(mirror, red));
    const Drawings drawings(connection_, mirror.panel());
    mirror.turn();
    mirror.settle();
    return drawings;
  };
  int withoutManager = 0;
  {
    TestMirror mirror(connection_, panelArea);
    withoutManager = drawingsOfFirstPicture(mirror).count();
  }
  const auto manager = connection_.atom("_NET_WM_CM_S0");
  xcb_set_selection_owner(connection_.get(), source_.id(), manager, XCB_CURRENT_TIME);
  connection_.sync();
  TestMirror mirror(connection_, panelArea);
  Drawings drawings = drawingsOfFirstPicture(mirror);
  EXPECT_TRUE(eventually([&] { return drawings.count() == withoutManager + 1; }));
  EXPECT_TRUE(hasIn(mirror, red));

  // On a busy machine the drawing at rest may come before its frame's have been counted.
  EXPECT_TRUE(eventually([&] {
    const auto next = hasIn(mirror, blue) ? red : blue;
    source_.show(next);
    if (!eventually([&] { return hasIn(mirror, next); })) return false;
    mirror.settle();
    constexpr std::chrono::seconds aFewRests{3};
    const int ofFrame = drawings.count();
    return eventually([&] { return drawings.count() > ofFrame; }, aFewRests);
  }));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
