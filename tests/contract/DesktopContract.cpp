#include "platform/Controls.h"
#include "platform/Text.h"
#include "platform/Workspace.h"
#include "tests/contract/ContractTest.h"

namespace vistrel::contract {
namespace {

using platform::ComparisonResult;
using platform::Label;
using platform::localizedCaseInsensitiveCompare;
using platform::rect;
using platform::Window;

class DesktopContract : public ContractTest {
 protected:
  std::shared_ptr<Window> makeWindow() {
    return platform::makeOwnedByMain<Window>(
        rect(100, 100, 400, 300),
        platform::styleTitled | platform::styleClosable | platform::styleResizable,
        platform::BackingStore::buffered, false);
  }
};

TEST_F(DesktopContract, HasAPrimaryScreenThatIsTheMainOneWhileNoWindowIsKey) {
  const auto screens = platform::screens();
  ASSERT_FALSE(screens.empty());
  EXPECT_EQ(platform::mainScreen(), screens.front());
  const auto& [frame, visible, scale] = screens.front();
  EXPECT_EQ(frame.origin, (platform::Point{0, 0}));
  EXPECT_EQ(platform::intersection(frame, visible), visible);
  EXPECT_GT(visible.width() * visible.height(), 0);
  EXPECT_GE(scale, 1);
}

TEST_F(DesktopContract, MeasuresLabelsByTheirText) {
  const platform::Size shorter = Label("Mirror").intrinsicContentSize();
  const platform::Size longer = Label("Mirror a window").intrinsicContentSize();
  EXPECT_GT(shorter.width, 0);
  EXPECT_GT(longer.width, shorter.width);
  EXPECT_EQ(longer.height, shorter.height);
  Label large("Mirror");
  large.setFont({.pointSize = 30});
  EXPECT_GT(large.intrinsicContentSize().height, shorter.height);
}

TEST_F(DesktopContract, GivesButtonsRoomForTheirTitles) {
  const platform::Size button =
      platform::Button("Mirror", platform::Action()).intrinsicContentSize();
  const platform::Size label = Label("Mirror").intrinsicContentSize();
  EXPECT_GT(button.width, label.width);
  EXPECT_GE(button.height, label.height);
}

TEST_F(DesktopContract, ComparesWithoutRegardToCase) {
  EXPECT_EQ(localizedCaseInsensitiveCompare("alpha", "Beta"), ComparisonResult::ascending);
  EXPECT_EQ(localizedCaseInsensitiveCompare("Beta", "alpha"), ComparisonResult::descending);
  EXPECT_EQ(localizedCaseInsensitiveCompare("Foo", "foo"), ComparisonResult::same);
  EXPECT_EQ(localizedCaseInsensitiveCompare("", "a"), ComparisonResult::ascending);
  EXPECT_EQ(localizedCaseInsensitiveCompare("", ""), ComparisonResult::same);
}

TEST_F(DesktopContract, GivesAWindowTheContentItWasAskedFor) {
  const auto window = makeWindow();
  EXPECT_EQ(window->contentView()->frame(), rect(0, 0, 400, 300));
  EXPECT_GE(window->frame().height(), 300);
}

TEST_F(DesktopContract, KeepsFramesByName) {
  auto window = makeWindow();
  window->setFrameAutosaveName("ContractWindow");
  window->setFrame(rect(120, 90, 480, 360), platform::Redisplay::atOnce);
  window.reset();
  bool turned = false;
  platform::mainQueue().async([&turned] { turned = true; });
  ASSERT_TRUE(turnUntil([&turned] { return turned; }));
  const auto next = makeWindow();
  next->setFrameAutosaveName("ContractWindow");
  EXPECT_EQ(next->frame(), rect(120, 90, 480, 360));
}

TEST_F(DesktopContract, KnowsItsProcess) { EXPECT_GT(platform::processIdentifier(), 0); }

}  // namespace
}  // namespace vistrel::contract
