#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Controls.h"
#include "platform/simulated/SimulatedBackend.h"
#include "platform/simulated/SimulatedDesktop.h"

namespace vistrel::platform::simulated {
namespace {

using testing::ElementsAre;

class SimulatedDesktopTest : public testing::Test {
 protected:
  SimulatedBackend backend_;
  SimulatedDesktop& desktop_ = backend_.windows();
};

TEST_F(SimulatedDesktopTest, MeasuresControlsByTheirText) {
  EXPECT_EQ(Label("four").intrinsicContentSize(), (Size{26, 17}));
  EXPECT_EQ(Label("äöü…").intrinsicContentSize(), (Size{26, 17}));
  EXPECT_EQ(Button("four", Action()).intrinsicContentSize(), (Size{50, 25}));
  EXPECT_EQ(TableView().intrinsicContentSize(), (Size{0, 0}));
  ImageView symbol;
  EXPECT_EQ(symbol.intrinsicContentSize(), (Size{0, 0}));
  symbol.setImage({.name = "symbol", .accessibilityDescription = "", .pointSize = 16});
  EXPECT_EQ(symbol.intrinsicContentSize(), (Size{16, 16}));
}

TEST_F(SimulatedDesktopTest, ClosesAlertsWithTheirLastButton) {
  const Alert alert{.messageText = "?", .informativeText = "", .buttonTitles = {"Yes", "No"}};
  EXPECT_EQ(alert.runModal(), alertFirstButtonReturn + 1);
  desktop_.setAlertAnswer([](const Alert&) { return alertFirstButtonReturn; });
  EXPECT_EQ(alert.runModal(), alertFirstButtonReturn);
  EXPECT_EQ(desktop_.alerts().size(), 2U);
  EXPECT_EQ(desktop_.alerts().front().messageText, "?");
}

TEST_F(SimulatedDesktopTest, StacksWindowsAsTheyAreOrderedFront) {
  const auto make = [] {
    return makeOwnedByMain<Window>(rect(0, 0, 9, 9), styleBorderless, BackingStore::buffered,
                                   false);
  };
  const auto a = make();
  const auto b = make();
  const auto c = make();
  EXPECT_THAT(desktop_.windowsFrontToBack(), ElementsAre(a.get(), b.get(), c.get()));
  c->orderFrontRegardless();
  b->makeKeyAndOrderFront();
  EXPECT_THAT(desktop_.windowsFrontToBack(), ElementsAre(b.get(), c.get(), a.get()));
}

TEST_F(SimulatedDesktopTest, HasOneScreenUnlessTold) {
  ASSERT_EQ(screens().size(), 1U);
  EXPECT_EQ(mainScreen(), screens().front());
  desktop_.setScreens({});
  EXPECT_TRUE(screens().empty());
  EXPECT_EQ(mainScreen(), std::nullopt);
}

TEST_F(SimulatedDesktopTest, RemembersWhatTheApplicationWasAskedFor) {
  SimulatedApplication& application = backend_.application();
  application.setActivationPolicy(ActivationPolicy::regular);
  application.activateIgnoringOtherApps(true);
  application.terminate();
  EXPECT_EQ(application.activationPolicy(), ActivationPolicy::regular);
  EXPECT_THAT(application.activations(), ElementsAre(true));
  EXPECT_EQ(application.terminateCount(), 1);
  EXPECT_FALSE(application.clickIcon(false));
}

}  // namespace
}  // namespace vistrel::platform::simulated
