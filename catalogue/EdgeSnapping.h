#pragma once

#include <optional>
#include <span>
#include <vector>

#include "platform/Geometry.h"

namespace vistrel {

/// How near, in points, an edge has to come to a line to jump onto it.
inline constexpr double snapDistance = 12;

/// The signed way from the edge to the line that come nearest to each other, both along one axis;
/// none when no pair is within `distance`. Of pairs equally near the first counts, edge by edge.
std::optional<double> best(std::span<const double> edges, std::span<const double> candidates,
                           double distance);

/// `rect` with its edges pulled onto those of `area` and of `others`, on each axis by itself. Only
/// the origin changes. Screen space.
platform::Rect snapped(const platform::Rect& rect, const platform::Rect& area,
                       const std::vector<platform::Rect>& others);

}  // namespace vistrel
