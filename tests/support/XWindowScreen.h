#pragma once

#include "tests/support/ScreenReader.h"

namespace vistrel::testbed {

/// What the windows of X draw in a Wayland session, whose whole screen nobody may look at: of each
/// place what the uppermost one there draws, whatever native window lies above it.
class XWindowScreen final : public ScreenReader {
 public:
  /// `connection` outlives this object.
  explicit XWindowScreen(const XConnection& connection)
      : ScreenReader(connection), connection_(&connection) {}

  /// Black where no window holds all of the area.
  Picture read(Rect area) const override;

 private:
  /// Throws std::runtime_error where a window goes meanwhile.
  Picture readAtOnce(Rect area) const;

  const XConnection* connection_;
};

}  // namespace vistrel::testbed
