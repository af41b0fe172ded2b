#include <gtest/gtest.h>

#include "mirror/PanelLayout.h"

namespace vistrel {
namespace {

using platform::Point;
using platform::rect;
using platform::Size;

TEST(UsableSourceSize, RaisesEachSideToOnePoint) {
  EXPECT_EQ(usableSourceSize({0, -5}), (Size{1, 1}));
  EXPECT_EQ(usableSourceSize({0.5, 30}), (Size{1, 30}));
  EXPECT_EQ(usableSourceSize({1.5, 30.25}), (Size{1.5, 30.25}));
}

TEST(InitialPanelSize, IsAboutAThirdOfTheSourcesWidthPlusTheTitleBar) {
  EXPECT_EQ(initialPanelSize({1000, 500}), (Size{340, 196}));
}

TEST(InitialPanelSize, IsNeverNarrowerThanItsLowerBound) {
  EXPECT_EQ(initialPanelSize({400, 200}), (Size{220, 136}));
  EXPECT_EQ(initialPanelSize({1, 1}), (Size{220, 246}));
}

TEST(InitialPanelSize, IsNeverWiderThanItsUpperBound) {
  EXPECT_EQ(initialPanelSize({2000, 1000}), (Size{520, 286}));
}

TEST(InitialPanelSize, KeepsTheAspectOfATallSource) {
  EXPECT_EQ(initialPanelSize({1000, 4000}), (Size{340, 1386}));
}

TEST(InitialPanelOrigin, IsInsetFromTheTopLeftOfTheVisibleArea) {
  EXPECT_EQ(initialPanelOrigin(rect(0, 25, 1440, 850), 196, 0), (Point{32, 647}));
}

TEST(InitialPanelOrigin, StepsRightAndDownPerMirror) {
  EXPECT_EQ(initialPanelOrigin(rect(0, 25, 1440, 850), 196, 3), (Point{116, 563}));
}

TEST(InitialPanelOrigin, ProtectsTheBottomEdgeAndNotTheRightOne) {
  EXPECT_EQ(initialPanelOrigin(rect(0, 25, 1440, 850), 196, 100), (Point{2832, 49}));
  EXPECT_EQ(initialPanelOrigin(rect(0, 25, 1440, 850), 2000, 0), (Point{32, 49}));
}

TEST(InitialPanelOrigin, FollowsAScreenThatDoesNotBeginAtZero) {
  EXPECT_EQ(initialPanelOrigin(rect(-1920, 100, 1920, 1000), 200, 1), (Point{-1860, 840}));
}

TEST(PanelLayout, PlacesEverythingForTheCardsSize) {
  const PanelLayout layout = panelLayout({340, 196});
  EXPECT_EQ(layout.titleBar, rect(0, 0, 340, 26));
  EXPECT_EQ(layout.brandIcon, rect(8, 5, 17, 16));
  EXPECT_EQ(layout.liveDot, rect(30, 9, 8, 8));
  EXPECT_EQ(layout.closeButton, rect(316, 4, 18, 18));
  EXPECT_EQ(layout.titleLabel, rect(44, 5, 268, 16));
  EXPECT_EQ(layout.content, rect(0, 26, 340, 170));
  EXPECT_EQ(layout.statusLabel, rect(12, 87, 316, 48));
  EXPECT_EQ(layout.grip, rect(324, 180, 16, 16));
}

TEST(PanelLayout, KeepsTheLabelsOfANarrowCardTenPointsWide) {
  EXPECT_EQ(panelLayout({82, 196}).titleLabel.width(), 10);
  EXPECT_EQ(panelLayout({81, 196}).titleLabel.width(), 10);
  EXPECT_EQ(panelLayout({83, 196}).titleLabel.width(), 11);
  EXPECT_EQ(panelLayout({30, 196}).statusLabel.width(), 10);
}

TEST(PanelLayout, LeavesNoContentInACardLowerThanItsTitleBar) {
  EXPECT_EQ(panelLayout({340, 20}).content, rect(0, 26, 340, 0));
  EXPECT_EQ(panelLayout({340, 26}).content.height(), 0);
}

}  // namespace
}  // namespace vistrel
