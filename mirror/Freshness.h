#pragma once

#include "platform/Dispatch.h"

namespace vistrel {

/// How often a mirror looks at its freshness. Seconds.
inline constexpr double freshnessInterval = 1.0;

/// Whether a mirror's last frame is so old at `now` that its picture is no longer live.
bool isStale(platform::Date lastFrameAt, platform::Date now);

}  // namespace vistrel
