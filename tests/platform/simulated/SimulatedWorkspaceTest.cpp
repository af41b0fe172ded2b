#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulated/SimulatedWorkspace.h"

namespace vistrel::platform::simulated {
namespace {

using testing::ElementsAre;
using enum ComparisonResult;

struct Comparison {
  std::string a;
  std::string b;
  ComparisonResult result;
};

const Comparison comparisons[] = {
    {"alpha", "Beta", ascending},
    {"Foo", "foo", same},
    {"", "a", ascending},
    {"", "", same},
    {"a", "ab", ascending},
    {"ÄPFEL", "äpfel", same},
    {"Ж", "ж", same},
    {"ЁЛКА", "ёлка", same},
    {"ΑΩ", "αω", same},
    {"z", "ä", ascending},
    {"×", "÷", ascending},
    {"a", "日本", ascending},
    {"日本", "🙂", ascending},
};

TEST(SimulatedWorkspace, ComparesByCodePointWithoutRegardToCase) {
  SimulatedWorkspace workspace;
  for (const auto& [a, b, result] : comparisons) {
    const auto reversed = result == same ? same : descending;
    EXPECT_EQ(workspace.localizedCaseInsensitiveCompare(a, b), result) << a << " and " << b;
    EXPECT_EQ(workspace.localizedCaseInsensitiveCompare(b, a), reversed) << b << " and " << a;
  }
}

TEST(SimulatedWorkspace, RemembersWhatItWasAskedFor) {
  SimulatedWorkspace workspace;
  EXPECT_TRUE(workspace.openURL("a:b"));
  workspace.setOpensURLs(false);
  EXPECT_FALSE(workspace.openURL("c:d"));
  EXPECT_TRUE(workspace.openNewInstance("/bundle"));
  workspace.setStartsInstances(false);
  EXPECT_FALSE(workspace.openNewInstance("/bundle"));
  EXPECT_THAT(workspace.openedURLs(), ElementsAre("a:b", "c:d"));
  EXPECT_THAT(workspace.startedInstances(), ElementsAre("/bundle", "/bundle"));
}

}  // namespace
}  // namespace vistrel::platform::simulated
