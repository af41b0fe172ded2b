#include <gtest/gtest.h>

#include "mirror/FrameAcceptance.h"

namespace vistrel {
namespace {

using platform::SampleAttachments;
using platform::streamFrameInfoStatus;

using Attachments = std::optional<std::vector<SampleAttachments>>;

Attachments withStatus(platform::AttachmentValue status) {
  return {{{{streamFrameInfoStatus, std::move(status)}}}};
}

TEST(FrameAcceptance, CompleteFrameIsShown) { EXPECT_TRUE(isCompleteFrame(withStatus(0L))); }

TEST(FrameAcceptance, FrameOfAnyOtherStatusIsNot) {
  for (const std::int64_t status : {1, 2, 3, 4, 5, 6, 99, -1}) {
    EXPECT_FALSE(isCompleteFrame(withStatus(status))) << status;
  }
}

TEST(FrameAcceptance, FrameWithoutAttachmentsIsShown) {
  EXPECT_TRUE(isCompleteFrame(std::nullopt));
}

TEST(FrameAcceptance, FrameWithAnEmptyListOfAttachmentsIsShown) {
  EXPECT_TRUE(isCompleteFrame(Attachments{std::in_place}));
}

TEST(FrameAcceptance, FrameWithoutAStatusIsShown) {
  EXPECT_TRUE(isCompleteFrame(Attachments{{SampleAttachments{}}}));
  EXPECT_TRUE(isCompleteFrame(Attachments{{SampleAttachments{{"other", std::int64_t{1}}}}}));
}

TEST(FrameAcceptance, FrameWhoseStatusIsNoIntegerIsShown) {
  EXPECT_TRUE(isCompleteFrame(withStatus(1.0)));
  EXPECT_TRUE(isCompleteFrame(withStatus(std::string("1"))));
}

TEST(FrameAcceptance, OnlyTheFirstAttachmentsCount) {
  const SampleAttachments complete{{streamFrameInfoStatus, std::int64_t{0}}};
  const SampleAttachments idle{{streamFrameInfoStatus, std::int64_t{1}}};
  EXPECT_TRUE(isCompleteFrame(Attachments{{complete, idle}}));
  EXPECT_FALSE(isCompleteFrame(Attachments{{idle, complete}}));
  EXPECT_TRUE(isCompleteFrame(Attachments{{SampleAttachments{}, idle}}));
}

}  // namespace
}  // namespace vistrel
