#include "tests/managed/ManagedTest.h"
#include "tests/support/ManagerProbe.h"

namespace vistrel::testbed {
namespace {

using platform::linux_desktop::SourceSituation;
using enum SourceSituation;

constexpr std::uint32_t everyDesktop = 0xffffffff;

/// What the session says of a source, manager by manager.
class SituationOfSource : public ManagedTest {
 protected:
  SourceSituation situation() { return session_.providers().sourceSituations->of(source_->id()); }
  bool isDrawn() const { return isViewable(connection(), source_->id()); }
  std::uint32_t desktop() const {
    return connection().numbers(source_->id(), "_NET_WM_DESKTOP").at(0);
  }
  /// Waits until the manager has done it; the window is mapped only afterwards.
  void sendTo(std::uint32_t desktop) {
    sendToDesktop(*source_, desktop);
    EXPECT_TRUE(eventually([&] { return this->desktop() == desktop; }));
    awaitManager(connection());
  }

  std::unique_ptr<TestWindow> source_ = open();
};

TEST_P(SituationOfSource, IsThatNothingDrawsItOnADesktopThatIsNotShown) {
  EXPECT_EQ(situation(), ordinary);
  sendTo(1);
  // mutter 43.8 goes on drawing it there.
  const bool standsThere = GetParam() != WindowManager::mutter;
  EXPECT_TRUE(eventually([&] { return (situation() == onHiddenDesktop) == standsThere; }));
  EXPECT_EQ(isDrawn(), !standsThere);
  sendTo(everyDesktop);
  EXPECT_TRUE(eventually([&] { return situation() == ordinary && isDrawn(); }));
}

TEST_P(SituationOfSource, IsAnotherWhereItWouldNotBeDrawnOnAnyDesktop) {
  source_->minimise();
  EXPECT_EQ(situation(), ordinary);
  sendTo(1);
  EXPECT_EQ(situation(), ordinary);
}

TEST_P(SituationOfSource, IsOrdinaryOnceTheSourceHasGone) {
  sendTo(1);
  source_->destroy();
  EXPECT_EQ(situation(), ordinary);
}

VISTREL_WITH_EACH_MANAGER(SituationOfSource);

}  // namespace
}  // namespace vistrel::testbed
