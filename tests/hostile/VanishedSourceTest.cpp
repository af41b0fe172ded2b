#include "mirror/WindowMirrorHUDController.h"
#include "tests/contract/ContractTest.h"
#include "tests/core/MirrorInsides.h"
#include "tests/core/PanelParts.h"

namespace vistrel::hostile {
namespace {

/// A mirror with its views, on the real backend under a window manager.
using VanishedSource = contract::ContractTest;

TEST_F(VanishedSource, IsReportedInThePanelInTheseWords) {
  auto source = bed_->openSource({});
  const auto record = listed(source->id());
  ASSERT_NE(record, nullptr);
  source->close();
  const auto mirror = WindowMirrorHUDController::make(record, 0, [](platform::WindowID) {});
  mirror->show();
  ASSERT_TRUE(turnUntil([&mirror] { return !partsOf(*mirror).statusLabel->isHidden(); }));
  EXPECT_EQ(partsOf(*mirror).statusLabel->stringValue(), "Source window is no longer available.");
  EXPECT_EQ(inside(*mirror).stream(), nullptr);
  mirror->close();
}

TEST_F(VanishedSource, KeepsItsPictureAndIsReportedWhenItsMirrorIsStartedAgain) {
  auto source = bed_->openSource({.colors = contract::fourColors});
  const auto mirror =
      WindowMirrorHUDController::make(listed(source->id()), 0, [](platform::WindowID) {});
  mirror->show();
  ASSERT_TRUE(turnUntil([&mirror] { return inside(*mirror).lastImage() != nullptr; }));
  source->close();
  mirror->stopCapture();
  mirror->startCapture();
  ASSERT_TRUE(turnUntil([&mirror] { return !partsOf(*mirror).statusLabel->isHidden(); }));
  EXPECT_EQ(partsOf(*mirror).statusLabel->stringValue(), "Source window is no longer available.");
  EXPECT_NE(inside(*mirror).lastImage(), nullptr);
  mirror->close();
}

}  // namespace
}  // namespace vistrel::hostile
