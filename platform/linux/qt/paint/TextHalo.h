#pragma once

#include <QImage>

namespace vistrel::platform::linux_desktop {

/// How far a halo reaches beyond the letters, in points.
inline constexpr double haloReach = 4;

/// A soft dark ground for light letters over a picture of any colours, so that they stand out from
/// it with a contrast of 4.5 at least (WCAG 2.1, 1.4.3). `letters` are the letters alone, opaque,
/// with room for the halo around them; the answer is as large, of the same pixels to a point.
QImage haloAround(const QImage& letters);

}  // namespace vistrel::platform::linux_desktop
