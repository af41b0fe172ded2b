#include <atomic>
#include <utility>

#include "tests/managed/ClientDecoratedWindow.h"
#include "tests/managed/ManagedTest.h"
#include "tests/support/InputDriver.h"

namespace vistrel::testbed {
namespace {

bool isAll(const Picture& picture, Rgb colour) {
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.at(x, y) != colour) {
        return false;
      }
    }
  }
  return picture.width() > 0;
}

class ManagedPicture : public ManagedTest {
 protected:
  /// Streams `window` and waits for its picture.
  std::unique_ptr<StreamedWindow> stream(xcb_window_t window) {
    auto stream = session_.stream(window);
    EXPECT_TRUE(eventually([&] { return matchesScreen(*stream, window); }));
    return stream;
  }
  void expectLive(const StreamedWindow& stream, TestWindow& window, const Quadrants& colours) {
    window.show(colours);
    EXPECT_TRUE(eventually([&] { return showsClient(stream, window, colours); }));
  }
  /// By its title bar: one manager lets nobody but a person move a window off the screen.
  void dragPartlyOffScreen(const TestWindow& window) {
    const Rect frame = listedFrame(window.id());
    const Point titleBar{frame.x + frame.width / 2, frame.y + 10};
    InputDriver input(connection());
    input.moveTo(titleBar);
    input.press();
    int step = 0;
    EXPECT_TRUE(eventually([&] {
      // The manager takes hold of the window some time after the press.
      input.moveTo({titleBar.x + 690 + ++step % 2, titleBar.y + 600});
      const Rect area = window.area();
      return area.x + area.width > wholeScreen.width && area.y + area.height > wholeScreen.height;
    }));
    input.release();
  }
  /// Whether the window's own part of the picture shows the four colours, wherever the window is.
  bool showsClient(const StreamedWindow& stream, const TestWindow& window,
                   const Quadrants& colours) {
    const Picture picture = stream.picture();
    const Rect frame = listedFrame(window.id());
    const Rect area = window.area();
    const Rect client{area.x - frame.x, area.y - frame.y, area.width, area.height};
    if (picture.width() != frame.width || picture.height() != frame.height || client.x < 0 ||
        client.y < 0 || client.x + client.width > frame.width ||
        client.y + client.height > frame.height) {
      return false;
    }
    return picture.at(client.at(0.25, 0.25)) == colours.topLeft &&
           picture.at(client.at(0.75, 0.25)) == colours.topRight &&
           picture.at(client.at(0.25, 0.75)) == colours.bottomLeft &&
           picture.at(client.at(0.75, 0.75)) == colours.bottomRight;
  }
};

TEST_P(ManagedPicture, IsTheVisibleFrameWhateverBecomesOfIt) {
  const auto window = open();
  const auto streamed = stream(window->id());
  const auto follows = [&] { return matchesScreen(*streamed, window->id()); };

  addStates(*window, {"_NET_WM_STATE_MAXIMIZED_HORZ", "_NET_WM_STATE_MAXIMIZED_VERT"});
  EXPECT_TRUE(eventually([&] { return listedFrame(window->id()) == wholeScreen; }));
  EXPECT_TRUE(eventually(follows)) << "maximised";
  removeStates(*window, {"_NET_WM_STATE_MAXIMIZED_HORZ", "_NET_WM_STATE_MAXIMIZED_VERT"});
  EXPECT_TRUE(eventually([&] { return listedFrame(window->id()) != wholeScreen; }));
  EXPECT_TRUE(eventually(follows)) << "restored";

  addStates(*window, {"_NET_WM_STATE_FULLSCREEN"});
  EXPECT_TRUE(eventually([&] { return window->area() == wholeScreen; }));
  EXPECT_TRUE(eventually(follows)) << "full screen";
  // A compositor may let such a window draw on the screen itself.
  window->resize(wholeScreen.width, wholeScreen.height);
  expectLive(*streamed, *window, otherColours);
  removeStates(*window, {"_NET_WM_STATE_FULLSCREEN"});
  EXPECT_TRUE(eventually([&] { return window->area() != wholeScreen; }));
  EXPECT_TRUE(eventually(follows)) << "restored from full screen";

  setDecorated(*window, false);
  EXPECT_TRUE(eventually([&] { return listedFrame(window->id()) == window->area(); }));
  EXPECT_TRUE(eventually(follows)) << "without a frame";
  setDecorated(*window, true);
  EXPECT_TRUE(eventually([&] { return listedFrame(window->id()) != window->area(); }));
  // One compositor does not always paint the new frame by itself, so the screen is no measure here.
  const Rect area = window->area();
  window->resize(area.width, area.height);
  expectLive(*streamed, *window, fourColours);
}

TEST_P(ManagedPicture, StaysWholeWhileTheWindowIsPutAwayAndGoesLiveAgain) {
  const auto window = open();
  const auto streamed = stream(window->id());
  const Rect frame = listedFrame(window->id());
  const auto isUnlisted = [&] { return session_.listed(window->id()) == nullptr; };
  const auto isBack = [&] { return listedFrame(window->id()) == frame; };
  const auto keepsPicture = [&] { return showsClient(*streamed, *window, fourColours); };

  addStates(*window, {"_NET_WM_STATE_SHADED"});
  EXPECT_TRUE(eventually(isUnlisted));
  EXPECT_EQ(streamed->picture().height(), frame.height) << "rolled up";
  removeStates(*window, {"_NET_WM_STATE_SHADED"});
  EXPECT_TRUE(eventually(isBack));
  EXPECT_TRUE(eventually(keepsPicture));
  expectLive(*streamed, *window, otherColours);

  constexpr std::uint32_t iconicState = 3;
  connection().sendToManager(window->id(), "WM_CHANGE_STATE", {iconicState});
  EXPECT_TRUE(eventually(isUnlisted));
  EXPECT_EQ(streamed->picture().height(), frame.height) << "minimised";
  activate(*window);
  EXPECT_TRUE(eventually(isBack));
  expectLive(*streamed, *window, fourColours);

  sendToDesktop(*window, 1);
  EXPECT_TRUE(eventually(isUnlisted));
  EXPECT_EQ(streamed->picture().height(), frame.height) << "on another desktop";
  sendToDesktop(*window, 0);
  EXPECT_TRUE(eventually(isBack));
  expectLive(*streamed, *window, otherColours);
  for (const auto& size : streamed->sizes()) {
    EXPECT_EQ(size, std::pair(frame.width, frame.height)) << "not the whole window";
  }
}

TEST_P(ManagedPicture, IsLiveWhileTheWindowIsPartlyOffScreenAndCovered) {
  const auto window = open();
  const auto streamed = stream(window->id());
  dragPartlyOffScreen(*window);
  expectLive(*streamed, *window, otherColours);
  const auto cover = open({.title = "Cover", .area = {600, 500, 600, 450}});
  cover->raiseAbove(*window);
  expectLive(*streamed, *window, fourColours);
}

TEST_P(ManagedPicture, LeavesTheShadowOutThatAClientDrawsAroundItself) {
  ClientDecoratedWindow window(session_.display().name(), {400, 300, 300, 200}, 30);
  const auto streamed = stream(window.id());
  EXPECT_TRUE(eventually([&] { return isAll(streamed->picture(), green); }));
  EXPECT_TRUE(eventually([&] { return listedFrame(window.id()) == window.visible(); }));
  EXPECT_EQ(window.visible().width, 300);

  // A maximised window has no shadow. Until the client draws itself so, its former shadow may lie
  // within the window.
  connection().sendToManager(window.id(), "_NET_WM_STATE",
                             {1, connection().atom("_NET_WM_STATE_MAXIMIZED_HORZ"),
                              connection().atom("_NET_WM_STATE_MAXIMIZED_VERT"), byPerson});
  window.setShadow(0);
  EXPECT_TRUE(eventually([&] { return listedFrame(window.id()) == wholeScreen; }));
  window.paint(red);
  EXPECT_TRUE(eventually([&] {
    return streamed->picture().width() == wholeScreen.width && isAll(streamed->picture(), red);
  }));
  EXPECT_TRUE(eventually([&] { return matchesScreen(*streamed, window.id()); }));
}

TEST_P(ManagedPicture, LeavesTheScreenAsItWas) {
  const auto window = open();
  const auto cover =
      open({.title = "Cover", .area = {500, 350, 300, 300}, .picture = Quadrants::uniform(white)});
  cover->raiseAbove(*window);
  // Without the frames, which managers paint anew in their own time.
  const Rect area = window->area();
  ASSERT_TRUE(eventually([&] {
    return session_.screen().pixel(area.at(0.1, 0.1)) == red &&
           session_.screen().pixel(area.at(0.9, 0.9)) == white;
  }));
  settledScreen();
  const Picture before = session_.screen().read(area);
  auto streamed = session_.stream(window->id());
  ASSERT_TRUE(eventually([&] { return showsClient(*streamed, *window, fourColours); }));
  const auto isAsBefore = [&] { return session_.screen().read(area) == before; };
  EXPECT_TRUE(eventually(isAsBefore)) << "while the window is streamed";
  streamed.reset();
  EXPECT_TRUE(eventually(isAsBefore)) << "afterwards";
  window->show(otherColours);
  EXPECT_TRUE(eventually(
      [&] { return session_.screen().pixel(area.at(0.1, 0.1)) == otherColours.topLeft; }));
}

VISTREL_WITH_EACH_MANAGER(ManagedPicture);

class PictureWithoutDecoration : public ManagedPicture {};

TEST_P(PictureWithoutDecoration, IsTheClientsAloneWhereTheManagerDrawsTheRestOnTheScreenAlone) {
  const auto window = open();
  ASSERT_TRUE(eventually([&] { return listedFrame(window->id()) == window->area(); }));
  const auto streamed = session_.stream(window->id());
  EXPECT_TRUE(eventually([&] { return showsClient(*streamed, *window, fourColours); }));
}

VISTREL_WITH_MANAGERS(WindowManagers, PictureWithoutDecoration, windowManagersThatDrawNoFrames);

class UnmanagedPicture : public ManagedTest {
 protected:
  UnmanagedPicture() : ManagedTest(WindowManager::none) {}
};

// Reading a picture waits for the server's answer, which the word of a change precedes.
TEST_F(UnmanagedPicture, MissesNoChangeThatIsToldOfWhileAnotherPictureIsRead) {
  // Where the pointer is not: over a source it is looked at again and again.
  const auto window = open({.area = {50, 50, 400, 300}, .picture = Quadrants::uniform(yellow)});
  std::atomic<bool> armed = false;
  const auto streamed = session_.stream(window->id(), [&] {
    if (armed.exchange(false)) {
      window->show(Quadrants::uniform(green));
    }
  });
  ASSERT_TRUE(eventually([&] { return isAll(streamed->picture(), yellow); }));
  settledScreen();
  armed = true;
  window->show(Quadrants::uniform(red));
  EXPECT_TRUE(eventually([&] { return isAll(streamed->picture(), green); }));
  window->show(Quadrants::uniform(blue));
  EXPECT_TRUE(eventually([&] { return isAll(streamed->picture(), blue); }));
}

}  // namespace
}  // namespace vistrel::testbed
