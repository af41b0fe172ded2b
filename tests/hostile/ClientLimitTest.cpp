#include <memory>
#include <string>
#include <vector>

#include "tests/hostile/HostileTest.h"

namespace vistrel::hostile {
namespace {

/// A display that takes few clients.
class ClientLimit : public HostileTest {
 protected:
  ClientLimit()
      : HostileTest({.windowManager = testbed::WindowManager::none,
                     .serverArguments = {"-maxclients", "64"}}) {}

  /// Why the mirror cannot be started; empty when it has been.
  static std::string start(TestMirror& mirror, const RawSource& source) {
    mirror.start(source.id());
    EXPECT_TRUE(testbed::eventually([&] { return mirror.answered() == mirror.asked(); }));
    return mirror.startFailure();
  }
  /// Opens mirrors of `source` until one cannot be started, and gives why.
  std::string fillWithMirrors(const RawSource& source) {
    while (true) {
      mirrors_.push_back(std::make_unique<TestMirror>(connection_, panelArea));
      const auto failure = start(*mirrors_.back(), source);
      if (!failure.empty()) return failure;
    }
  }

  void connectOthers(int count) {
    for (int i = 0; i < count; ++i) {
      others_.push_back(std::make_unique<testbed::XConnection>(display_.name()));
    }
  }

  std::vector<std::unique_ptr<TestMirror>> mirrors_;
  std::vector<std::unique_ptr<testbed::XConnection>> others_;
};

TEST_F(ClientLimit, MirrorsLeaveRoomForOthersAndSayWhyTheyDoNotStart) {
  RawSource source(connection_, {.area = {20, 20, 200, 160}});
  source.paint(otherColours);
  EXPECT_EQ(fillWithMirrors(source), "The display server has no room for another mirror.");
  EXPECT_GT(mirrors_.size(), 30);
  connectOthers(16);
  others_.clear();
  mirrors_.erase(mirrors_.begin());
  // The server notices by and by that clients have gone.
  ASSERT_TRUE(testbed::eventually([&] { return start(*mirrors_.back(), source).empty(); }));
  EXPECT_TRUE(testbed::eventually([&] { return mirrors_.back()->wasGiven(otherColours); }));
}

TEST_F(ClientLimit, AMirrorThatIsThrownOutWhileThereIsNoRoomEndsAndStartsAfresh) {
  RawSource source(connection_, {.area = {20, 20, 200, 160}});
  source.paint(testbed::fourColours);
  TestMirror mirror(connection_, panelArea);
  mirror.start(source.id());
  ASSERT_TRUE(
      testbed::eventually([&] { return mirror.shows(testbed::fourColours, source.area()); }));
  connectOthers(50);
  mirror.throwOut();
  EXPECT_TRUE(testbed::eventually([&] { return mirror.ends() == 1; }));
  others_.clear();
  source.paint(otherColours);
  mirror.start(source.id());
  EXPECT_TRUE(testbed::eventually([&] { return mirror.shows(otherColours, source.area()); }));
}

}  // namespace
}  // namespace vistrel::hostile
