#include "mirror/Freshness.h"

namespace vistrel {

namespace {

constexpr double staleAfterSeconds = 1.5;

}  // namespace

bool isStale(platform::Date lastFrameAt, platform::Date now) {
  return now.timeIntervalSince(lastFrameAt) > staleAfterSeconds;
}

}  // namespace vistrel
