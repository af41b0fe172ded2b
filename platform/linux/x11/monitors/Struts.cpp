#include "platform/linux/x11/monitors/Struts.h"

#include <algorithm>
#include <limits>

#include "platform/linux/x11/manager/VisibleFrame.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// The protocol's coordinates have 16 bits.
constexpr std::uint32_t lastPixel = std::numeric_limits<std::int16_t>::max();

Strut strutFrom(std::uint32_t depth, std::uint32_t first, std::uint32_t last) {
  if (depth > lastPixel || first > last || first > lastPixel) return {};
  return {static_cast<int>(depth), static_cast<int>(first),
          static_cast<int>(std::min(last, lastPixel))};
}

/// Half-open.
bool overlap(int first, int end, int otherFirst, int otherEnd) {
  return first < otherEnd && otherFirst < end;
}

int besideRows(const Strut& strut, const PixelRect& monitor, int depth) {
  return overlap(strut.first, strut.last + 1, monitor.y, monitor.y + monitor.height) ? depth : 0;
}

int besideColumns(const Strut& strut, const PixelRect& monitor, int depth) {
  return overlap(strut.first, strut.last + 1, monitor.x, monitor.x + monitor.width) ? depth : 0;
}

/// How far `struts` reach beyond the edges of `monitor`.
Extents reach(const Struts& struts, const PixelRect& monitor, const PixelSize& root) {
  const int beyondRight = root.width - (monitor.x + monitor.width);
  const int beyondBottom = root.height - (monitor.y + monitor.height);
  return {besideRows(struts.left, monitor, struts.left.depth - monitor.x),
          besideRows(struts.right, monitor, struts.right.depth - beyondRight),
          besideColumns(struts.top, monitor, struts.top.depth - monitor.y),
          besideColumns(struts.bottom, monitor, struts.bottom.depth - beyondBottom)};
}

Extents around(const PixelRect& area, const PixelRect& monitor) {
  return {area.x - monitor.x, monitor.x + monitor.width - (area.x + area.width), area.y - monitor.y,
          monitor.y + monitor.height - (area.y + area.height)};
}

/// What of it can be meant: nothing outside the monitor, and no more than half of it.
int believed(int extent, int side) { return extent < 0 || extent > side / 2 ? 0 : extent; }

Extents believed(const Extents& extents, const PixelRect& monitor) {
  return {believed(extents.left, monitor.width), believed(extents.right, monitor.width),
          believed(extents.top, monitor.height), believed(extents.bottom, monitor.height)};
}

Extents largest(const Extents& a, const Extents& b) {
  return {std::max(a.left, b.left), std::max(a.right, b.right), std::max(a.top, b.top),
          std::max(a.bottom, b.bottom)};
}

/// Opposite edges that each ask for little enough may still leave nothing between them.
Extents withoutOvercrowded(Extents extents, const PixelRect& monitor) {
  const auto leavesEnough = [](int a, int b, int side) { return 4 * (side - a - b) >= side; };
  if (!leavesEnough(extents.left, extents.right, monitor.width)) extents.left = extents.right = 0;
  if (!leavesEnough(extents.top, extents.bottom, monitor.height)) extents.top = extents.bottom = 0;
  return extents;
}

PixelRect shrunk(const PixelRect& rect, const Extents& by) {
  return {rect.x + by.left, rect.y + by.top, rect.width - by.left - by.right,
          rect.height - by.top - by.bottom};
}

bool shows(const PixelRect& monitor, const PixelRect& window) {
  return !isEmpty(intersection(monitor, window));
}

long squaredDistance(const PixelRect& a, const PixelRect& b) {
  const long dx = std::max({a.x - (b.x + b.width), b.x - (a.x + a.width), 0});
  const long dy = std::max({a.y - (b.y + b.height), b.y - (a.y + a.height), 0});
  return dx * dx + dy * dy;
}

/// The monitors that a dock is on: those that show it, or else the nearest, off which it has slid.
///
/// Struts are counted from the edges of the root window, so that of a dock at an inner edge, say at
/// the left of the right monitor, takes in all of the monitors before it. They lose nothing: only
/// where the dock itself is does its strut end at the dock's inner side. A dock that lies across
/// several monitors, like a bar at the top of them all, keeps room free on each.
std::vector<bool> monitorsOf(const PixelRect& window, const std::vector<PixelRect>& monitors) {
  std::vector<bool> isOn;
  isOn.reserve(monitors.size());
  for (const auto& each : monitors) isOn.push_back(shows(each, window));
  if (std::find(isOn.begin(), isOn.end(), true) != isOn.end()) return isOn;
  const auto nearest = std::min_element(
      monitors.begin(), monitors.end(), [&](const PixelRect& a, const PixelRect& b) {
        return squaredDistance(a, window) < squaredDistance(b, window);
      });
  if (nearest != monitors.end()) isOn[static_cast<std::size_t>(nearest - monitors.begin())] = true;
  return isOn;
}

}  // namespace

std::optional<Struts> strutsFrom(const std::vector<std::uint32_t>& partial,
                                 const std::vector<std::uint32_t>& whole) {
  if (partial.size() == 12) {
    const auto edge = [&](std::size_t i) {
      return strutFrom(partial[i], partial[4 + 2 * i], partial[5 + 2 * i]);
    };
    return Struts{edge(0), edge(1), edge(2), edge(3)};
  }
  if (whole.size() != 4) return std::nullopt;
  const auto edge = [&](std::size_t i) { return strutFrom(whole[i], 0, lastPixel); };
  return Struts{edge(0), edge(1), edge(2), edge(3)};
}

std::optional<PixelRect> workAreaFrom(const std::vector<std::uint32_t>& property,
                                      std::uint32_t desktop) {
  if (property.size() % 4 != 0 || desktop >= property.size() / 4) return std::nullopt;
  const auto* const area = property.data() + std::size_t{4} * desktop;
  if (std::any_of(area, area + 4, [](std::uint32_t each) { return each > lastPixel; })) {
    return std::nullopt;
  }
  const std::vector<int> values(area, area + 4);
  return PixelRect{values[0], values[1], values[2], values[3]};
}

std::vector<PixelRect> freeAreas(const std::vector<PixelRect>& monitors,
                                 const Reservations& reservations) {
  std::vector<Extents> reserved(monitors.size());
  const auto reserve = [&](std::size_t i, const Extents& extents) {
    reserved[i] = largest(reserved[i], believed(extents, monitors[i]));
  };
  for (const auto& dock : reservations.docks) {
    const auto isOn = monitorsOf(dock.window, monitors);
    for (std::size_t i = 0; i < monitors.size(); ++i) {
      if (isOn[i]) reserve(i, reach(dock.struts, monitors[i], reservations.root));
    }
  }
  // One rectangle for the whole desktop says nothing about a monitor among others.
  if (monitors.size() == 1 && reservations.workArea) {
    reserve(0, around(*reservations.workArea, monitors[0]));
  }
  std::vector<PixelRect> areas;
  for (std::size_t i = 0; i < monitors.size(); ++i) {
    areas.push_back(shrunk(monitors[i], withoutOvercrowded(reserved[i], monitors[i])));
  }
  return areas;
}

}  // namespace vistrel::platform::linux_desktop
