#include <gtest/gtest.h>

#include "tests/hostile/Walk.h"

namespace vistrel::hostile {
namespace {

TEST(Walk, AgreesWithAModelAndLeavesNothingBehind) {
  testbed::PrivateDisplay display({.server = testbed::DisplayServer::growable});
  display.adoptEnvironment();
  Walk walk(display, 2026);
  ASSERT_EQ(walk.goOnceRound(), "");
  const Footprint before = walk.footprint();
  ASSERT_EQ(walk.go(500), "");
  ASSERT_EQ(walk.rest(), "");
  const Footprint after = walk.footprint();
  EXPECT_TRUE(hasNotGrown(before, after)) << "from " << before << "\nto " << after;
}

}  // namespace
}  // namespace vistrel::hostile
