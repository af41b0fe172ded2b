#pragma once

#include <chrono>

#include "tests/support/XConnection.h"

namespace vistrel::testbed {

/// A question to the display's window manager, which it answers once it has dealt with all that it
/// was told before. It is about a window that nobody sees: for its frame (EWMH 1.5,
/// _NET_REQUEST_FRAME_EXTENTS), and, since not all managers know that, for another size, which they
/// grant too (ICCCM 4.1.5).
class ManagerProbe {
 public:
  /// `connection` outlives this object.
  explicit ManagerProbe(const XConnection& connection);
  ~ManagerProbe();
  ManagerProbe(const ManagerProbe&) = delete;
  ManagerProbe& operator=(const ManagerProbe&) = delete;

  /// Whether a manager runs and has answered. Asks anew each time, since some managers overlook
  /// what comes in while they start.
  bool isAnswered() const;

 private:
  bool tellsFrame() const;
  bool grantsSize() const;

  const XConnection& connection_;
  const xcb_window_t window_;
};

/// Whether the manager, if any, has dealt with all that it was told so far, by the deadline.
[[nodiscard]] bool isManagerDone(const XConnection& connection, std::chrono::milliseconds deadline);

/// Waits until the manager, if any, has dealt with all that it was told so far. Throws
/// std::runtime_error when it does not by a generous deadline.
void awaitManager(const XConnection& connection);

}  // namespace vistrel::testbed
