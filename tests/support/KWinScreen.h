#pragma once

#include <string>

#include "tests/support/DBus.h"
#include "tests/support/ScreenReader.h"

namespace vistrel::testbed {

/// What a session of KWin shows, native windows and those of X as they lie over one another, in its
/// logical pixels: at every scale KWin 5.27 makes those X's pixels too.
class KWinScreen final : public ScreenReader {
 public:
  /// `connection` outlives this object; `busAddress` is that of KWin's session, which grants the
  /// test to look.
  KWinScreen(const XConnection& connection, const std::string& busAddress);

  /// Throws std::runtime_error when KWin does not show it.
  Picture read(Rect area) const override;

 private:
  const BusConnection bus_;
};

}  // namespace vistrel::testbed
