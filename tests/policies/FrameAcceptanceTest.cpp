#include <gtest/gtest.h>

#include "mirror/FrameAcceptance.h"

namespace vistrel {
namespace {

TEST(FrameAcceptance, CompleteFrameIsShown) { EXPECT_TRUE(isCompleteFrame(0)); }

TEST(FrameAcceptance, FrameOfAnyOtherStatusIsNot) {
  for (const std::int64_t status : {1, 2, 3, 4, 5, 6, 99, -1}) {
    EXPECT_FALSE(isCompleteFrame(status)) << status;
  }
}

TEST(FrameAcceptance, FrameWithoutAStatusIsShown) { EXPECT_TRUE(isCompleteFrame(std::nullopt)); }

}  // namespace
}  // namespace vistrel
