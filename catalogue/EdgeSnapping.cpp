#include "catalogue/EdgeSnapping.h"

#include <array>
#include <cmath>

#include "catalogue/WindowMirrorManager.h"
#include "platform/Screen.h"

namespace vistrel {

using platform::Rect;

std::optional<double> best(std::span<const double> edges, std::span<const double> candidates,
                           double distance) {
  std::optional<double> nearest;
  for (const double edge : edges) {
    for (const double candidate : candidates) {
      const double offset = candidate - edge;
      // Written so that a distance that is not a number never counts.
      const bool isWithin = std::abs(offset) <= distance;
      if (isWithin && (!nearest || std::abs(offset) < std::abs(*nearest))) nearest = offset;
    }
  }
  return nearest;
}

Rect snapped(const Rect& rect, const Rect& area, const std::vector<Rect>& others) {
  std::vector<double> vertical{area.minX(), area.maxX()};
  std::vector<double> horizontal{area.minY(), area.maxY()};
  for (const Rect& other : others) {
    vertical.insert(vertical.end(), {other.minX(), other.maxX()});
    horizontal.insert(horizontal.end(), {other.minY(), other.maxY()});
  }
  Rect result = rect;
  result.origin.x += best(std::array{rect.minX(), rect.maxX()}, vertical, snapDistance).value_or(0);
  result.origin.y +=
      best(std::array{rect.minY(), rect.maxY()}, horizontal, snapDistance).value_or(0);
  return result;
}

Rect WindowMirrorManager::snap(const Rect& rect, const WindowMirrorHUDController& excluding) const {
  std::vector<Rect> others;
  for (const auto& [windowID, controller] : mirrors_) {
    if (controller.get() != &excluding) others.push_back(controller->panel()->frame());
  }
  return snapped(rect, excluding.visibleArea(), others);
}

}  // namespace vistrel
