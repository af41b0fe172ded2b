#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

/// What a window keeps free along one edge of the root window: so many pixels from that edge, and
/// along it from the first to the last pixel, both included.
struct Strut {
  int depth = 0;
  int first = 0;
  int last = 0;

  friend bool operator==(const Strut&, const Strut&) = default;
};

struct Struts {
  Strut left;
  Strut right;
  Strut top;
  Strut bottom;

  friend bool operator==(const Struts&, const Struts&) = default;
};

/// From `_NET_WM_STRUT_PARTIAL`, or where that is missing or malformed from `_NET_WM_STRUT` (EWMH
/// 1.5), which means the whole of an edge. None when both are missing or malformed; an edge whose
/// values make no sense has none.
std::optional<Struts> strutsFrom(const std::vector<std::uint32_t>& partial,
                                 const std::vector<std::uint32_t>& whole);

/// The part of `_NET_WORKAREA` (EWMH 1.5) that is about `desktop`; none when it is missing or
/// malformed.
std::optional<PixelRect> workAreaFrom(const std::vector<std::uint32_t>& property,
                                      std::uint32_t desktop);

/// A window that keeps room free.
struct Dock {
  PixelRect window;
  Struts struts;

  friend bool operator==(const Dock&, const Dock&) = default;
};

/// Everything that a desktop says about room to keep free. Pixels of the root window.
struct Reservations {
  PixelSize root;
  std::vector<Dock> docks;
  /// What the manager leaves of the current desktop.
  std::optional<PixelRect> workArea;

  friend bool operator==(const Reservations&, const Reservations&) = default;
};

/// What is left of each monitor, in their order. Never less than a quarter of a side: who claims
/// more is not believed.
std::vector<PixelRect> freeAreas(const std::vector<PixelRect>& monitors,
                                 const Reservations& reservations);

}  // namespace vistrel::platform::linux_desktop
