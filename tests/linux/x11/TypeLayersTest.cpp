#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "platform/linux/x11/listing/TypeLayers.h"

namespace vistrel::platform::linux_desktop {
namespace {

std::optional<WindowLayer> layerOf(const std::string& type) {
  for (const auto& each : typeLayers()) {
    if (each.type == "_NET_WM_WINDOW_TYPE_" + type) return each.layer;
  }
  return std::nullopt;
}

TEST(WindowLayer, isOrdinaryForNormalWindowsAndDialogs) {
  EXPECT_EQ(layerOf("NORMAL"), layerOrdinary);
  EXPECT_EQ(layerOf("DIALOG"), layerOrdinary);
  EXPECT_EQ(layerOrdinary, 0);
}

TEST(WindowLayer, isAnotherForEverythingElse) {
  for (const auto* type : {"DESKTOP", "DOCK", "TOOLBAR", "MENU", "UTILITY", "SPLASH", "TOOLTIP",
                           "DROPDOWN_MENU", "POPUP_MENU", "NOTIFICATION", "COMBO", "DND"}) {
    ASSERT_TRUE(layerOf(type)) << type;
    EXPECT_NE(*layerOf(type), layerOrdinary) << type;
  }
}

TEST(WindowLayer, isBelowAllForTheDesktop) { EXPECT_LT(*layerOf("DESKTOP"), layerOrdinary); }

TEST(WindowLayer, isUnknownForTypesOfOneDesktopAlone) {
  EXPECT_EQ(layerOf("OVERRIDE"), std::nullopt);
  EXPECT_EQ(layerOf(""), std::nullopt);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
