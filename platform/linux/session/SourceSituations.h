#pragma once

#include <cstdint>

namespace vistrel::platform::linux_desktop {

/// What a person may want to be told about where a mirrored window is.
enum class SourceSituation {
  /// Nothing.
  ordinary,
  /// On a desktop that is not shown, where nothing draws it, so that its picture stands.
  onHiddenDesktop,
  /// The same though it is kept awake: the manager has it on one desktop.
  parkedOnHiddenDesktop,
  /// Kept awake, but in sight: below all other windows, where the manager lets none leave the
  /// screen.
  parkedBelowOthers,
  /// The same, not even below others.
  parkedInSight,
  /// To be kept awake, or to go back: the manager has been told, and has not answered yet.
  waitsForManager,
};

/// Knows what becomes of mirrored windows. Main thread.
class SourceSituations {
 public:
  virtual ~SourceSituations() = default;

  /// As of now, which the session is asked for; ordinary for a window that has gone.
  virtual SourceSituation of(std::uint32_t window) = 0;
};

}  // namespace vistrel::platform::linux_desktop
