#include <gtest/gtest.h>

#include "platform/linux/x11/manager/ProcessIds.h"

namespace vistrel::platform::linux_desktop {
namespace {

TEST(ClientMachine, isThisOneByItsName) {
  EXPECT_TRUE(isSameMachine("desk", "desk"));
  EXPECT_TRUE(isSameMachine("desk.example.org", "desk.example.org"));
}

TEST(ClientMachine, isThisOneWhenOneNameLacksTheDomain) {
  EXPECT_TRUE(isSameMachine("desk.example.org", "desk"));
  EXPECT_TRUE(isSameMachine("desk", "desk.example.org"));
}

TEST(ClientMachine, isAnotherWithAnotherNameOrDomain) {
  EXPECT_FALSE(isSameMachine("server", "desk"));
  EXPECT_FALSE(isSameMachine("desk.example.com", "desk.example.org"));
}

TEST(ClientMachine, isUnknownWithoutAName) { EXPECT_FALSE(isSameMachine("", "desk")); }

}  // namespace
}  // namespace vistrel::platform::linux_desktop
