#pragma once

#include <QRect>
#include <deque>

namespace vistrel::platform::linux_desktop {

/// Tells the window manager's confirmations of frames set by code from moves that a person or the
/// manager made. During a drag several frames are under way at once; a confirmation of an older one
/// must not pull the model back.
class FrameEchoes {
 public:
  /// A frame was asked for.
  void asked(const QRect& frame);
  /// Whether `frame`, which the window has now, is one that was asked for and not confirmed yet. If
  /// it is not, someone else has decided, and nothing that was asked before is waited for.
  bool isEcho(const QRect& frame);

 private:
  std::deque<QRect> underWay_;  // oldest first
};

}  // namespace vistrel::platform::linux_desktop
