#include <gtest/gtest.h>

#include "platform/linux/qt/space/MonitorScales.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// 1365 pixels wide at one and a half to a point: the toolkit has whole points alone.
const NamedScreen primary{"HDMI-1", {QPoint(0, 0), QSize(910, 512), 1.5}};
const NamedScreen second{"DP-2", {QPoint(1365, 0), QSize(960, 540), 2}};

TEST(ScaledMonitors, HaveTheSessionsPixelsAndTheToolkitsScale) {
  EXPECT_EQ(scaledMonitors({primary, second},
                           {{"DP-2", {1365, 0, 1920, 1080}}, {"HDMI-1", {0, 0, 1366, 768}}}),
            (std::vector<Monitor>{{{0, 0, 1366, 768}, 1.5}, {{1365, 0, 1920, 1080}, 2}}));
}

TEST(ScaledMonitors, AreThoseThatTheToolkitShows) {
  EXPECT_EQ(scaledMonitors({second}, {{"hidden", {4000, 0, 800, 600}},
                                      {"DP-2", {1366, 0, 1920, 1080}},
                                      {"HDMI-1", {0, 0, 1366, 768}}}),
            (std::vector<Monitor>{{{1366, 0, 1920, 1080}, 2}}));
}

TEST(ScaledMonitors, AreRoundedByTheToolkitWhereTheSessionDoesNotTell) {
  EXPECT_EQ(scaledMonitors({primary, second}, {}),
            (std::vector<Monitor>{{{0, 0, 1365, 768}, 1.5}, {{1365, 0, 1920, 1080}, 2}}));
  EXPECT_EQ(scaledMonitors({primary, second}, {{"HDMI-1", {0, 0, 1366, 768}}}),
            (std::vector<Monitor>{{{0, 0, 1366, 768}, 1.5}, {{1365, 0, 1920, 1080}, 2}}));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
