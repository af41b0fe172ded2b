#include <gtest/gtest.h>

#include "parking/WindowParker.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

/// On a system whose function for window numbers is missing.
class WithoutWindowNumbers : public MirrorTest {
 protected:
  WithoutWindowNumbers() { desktop_.accessibility().setHasWindowNumberFunction(false); }
};

TEST_F(WithoutWindowNumbers, NoWindowIsReached) {
  EXPECT_EQ(WindowParker::axWindow(openSource()->windowID, 99), nullptr);
}

TEST_F(WithoutWindowNumbers, ASourceIsNotKeptAwakeAndTheMirrorSaysSo) {
  showMirror();
  desktop_.journal().clear();
  mirror_->toggleKeepAwake();
  EXPECT_EQ(status(), "Couldn't reach that window via Accessibility.");
  EXPECT_FALSE(inside(*mirror_).keepAwake());
  EXPECT_THAT(desktop_.journal().calls(), IsEmpty());
}

TEST_F(WithoutWindowNumbers, TheFunctionIsLookedForOnceInAProcess) {
  const WindowID id = openSource()->windowID;
  EXPECT_EQ(WindowParker::axWindow(id, 99), nullptr);
  desktop_.accessibility().setHasWindowNumberFunction(true);
  EXPECT_EQ(WindowParker::axWindow(id, 99), nullptr);
}

}  // namespace
}  // namespace vistrel
