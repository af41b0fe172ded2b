#include <utility>

#include "tests/core/MirrorInsides.h"
#include "tests/core/PanelParts.h"
#include "tests/hostile/MirrorOnDesktop.h"

namespace vistrel::hostile {
namespace {

using VanishedSource = MirrorOnDesktop;

TEST_F(VanishedSource, IsReportedInThePanelInTheseWords) {
  auto source = bed_->openSource({});
  const auto record = listed(source->id());
  ASSERT_NE(record, nullptr);
  source->close();
  auto mirror = mirrorOf(record);
  mirror->show();
  ASSERT_TRUE(turnUntil([&mirror] { return !partsOf(*mirror).statusLabel->isHidden(); }));
  EXPECT_EQ(partsOf(*mirror).statusLabel->stringValue(), "Source window is no longer available.");
  EXPECT_EQ(inside(*mirror).stream(), nullptr);
  closeAndDrop(std::move(mirror));
}

TEST_F(VanishedSource, KeepsItsPictureAndIsReportedWhenItsMirrorIsStartedAgain) {
  auto source = bed_->openSource({.colors = contract::fourColors});
  auto mirror = mirrorOf(listed(source->id()));
  mirror->show();
  ASSERT_TRUE(turnUntil([&mirror] { return inside(*mirror).lastImage() != nullptr; }));
  source->close();
  mirror->stopCapture();
  mirror->startCapture();
  ASSERT_TRUE(turnUntil([&mirror] { return !partsOf(*mirror).statusLabel->isHidden(); }));
  EXPECT_EQ(partsOf(*mirror).statusLabel->stringValue(), "Source window is no longer available.");
  EXPECT_NE(inside(*mirror).lastImage(), nullptr);
  closeAndDrop(std::move(mirror));
}

}  // namespace
}  // namespace vistrel::hostile
