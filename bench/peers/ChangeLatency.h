#pragma once

#include <chrono>
#include <vector>

#include "bench/peers/ChangingSource.h"
#include "bench/peers/Subject.h"

namespace vistrel::bench {

/// What another program saw of a source's changes in a subject's own window.
struct SeenChanges {
  /// For each change that was seen: milliseconds from when it had been sent to the server to when
  /// it was first seen. In no order.
  std::vector<double> milliseconds;
  double perSecond = 0;

  /// Of the milliseconds; `share` from 0 to 1. 0 where nothing was seen.
  double percentile(double share) const;
};

/// Looks at one pixel of it again and again. What looking costs is the server's, so costs are to be
/// measured at another time.
SeenChanges seenChanges(const Bed& bed, const ChangingSource& source, const Subject& subject,
                        std::chrono::duration<double> howLong);

/// Waits until the subject shows a change that comes after this call. Throws std::runtime_error.
void awaitLivePicture(const Bed& bed, const ChangingSource& source, const Subject& subject);

}  // namespace vistrel::bench
