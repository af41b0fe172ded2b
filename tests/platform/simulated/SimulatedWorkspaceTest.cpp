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

class ComparisonTest : public testing::TestWithParam<Comparison> {};

TEST_P(ComparisonTest, IgnoresCase) {
  SimulatedWorkspace workspace;
  const auto& [a, b, result] = GetParam();
  EXPECT_EQ(workspace.localizedCaseInsensitiveCompare(a, b), result) << a << " and " << b;
  const ComparisonResult reversed =
      result == same ? same : (result == ascending ? descending : ascending);
  EXPECT_EQ(workspace.localizedCaseInsensitiveCompare(b, a), reversed);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ComparisonTest,
    testing::Values(Comparison{"alpha", "Beta", ascending}, Comparison{"Foo", "foo", same},
                    Comparison{"", "a", ascending}, Comparison{"", "", same},
                    Comparison{"a", "ab", ascending}, Comparison{"ÄPFEL", "äpfel", same},
                    Comparison{"Ж", "ж", same}, Comparison{"ЁЛКА", "ёлка", same},
                    Comparison{"ΑΩ", "αω", same}, Comparison{"z", "ä", ascending},
                    Comparison{"×", "÷", ascending}, Comparison{"a", "日本", ascending},
                    Comparison{"日本", "🙂", ascending}));

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
