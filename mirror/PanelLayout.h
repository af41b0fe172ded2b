#pragma once

#include "platform/Geometry.h"

namespace vistrel {

/// Height of a panel's title bar, which is also the height of a rolled-up panel. Points.
inline constexpr double panelTitleBarHeight = 26;

/// What a person may resize a panel to, unrolled and rolled up. Points.
inline constexpr platform::Size panelMinSize{160, 120};
inline constexpr platform::Size rolledUpPanelMinSize{160, panelTitleBarHeight};

/// A source's size with each side raised to at least 1 point, so that its aspect is always finite.
platform::Size usableSourceSize(platform::Size source);

/// The size that a new panel's content takes from its source: about a third of the source's width
/// within bounds, the picture at the source's aspect, and the title bar.
platform::Size initialPanelSize(platform::Size usableSource);

/// Where the panel of cascade index `cascade` goes: in from the top-left corner of the screen's
/// visible area (screen space), a step right and down per index; only the bottom edge is protected.
platform::Point initialPanelOrigin(const platform::Rect& visibleArea, double panelHeight,
                                   int cascade);

/// Frames inside a panel for a card of a given size. Card frames are from the card's top-left, y
/// downwards; title-bar frames are from the title bar's bottom-left, y upwards.
struct PanelLayout {
  platform::Rect titleBar;     // card
  platform::Rect brandIcon;    // title bar
  platform::Rect liveDot;      // title bar
  platform::Rect closeButton;  // title bar
  platform::Rect titleLabel;   // title bar
  platform::Rect content;      // card
  platform::Rect statusLabel;  // card
  platform::Rect grip;         // card
};

PanelLayout panelLayout(platform::Size card);

}  // namespace vistrel
