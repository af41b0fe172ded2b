#pragma once

#include <QRect>
#include <deque>

namespace vistrel::platform::linux_desktop {

/// Where a native window is in desktop space, as last asked for by code or as someone else has
/// decided. Tells the window manager's confirmations from moves that a person or the manager made:
/// during a drag several frames are under way at once, and a confirmation of an older one must not
/// pull the model back.
class PlacedFrame {
 public:
  /// Null before the first frame.
  const QRect& current() const { return current_; }
  /// Code wants the window at `frame`; false when it is there or on its way.
  bool ask(const QRect& frame);
  /// The desktop says that the window is at `frame`; whether someone other than code has put it
  /// there. If so, nothing that was asked before is waited for.
  bool isMovedTo(const QRect& frame);

  /// Whether the desktop has said something about the last frame that code asked for.
  bool isAnswered() const { return underWay_.empty(); }

  /// The desktop says that the window is at `frame`, while more may be under way: nothing is
  /// decided before `isRefused` is asked.
  void hear(const QRect& frame);
  /// Whether the desktop's last word was about a frame that code has not asked for.
  bool isElsewhere() const { return !isConfirmation_ && told_ != current_; }
  /// Whether the desktop's last word was about a frame that code asked for before others: it is
  /// likely to be busy, and to answer those too.
  bool isBehind() const { return isConfirmation_ && !isAnswered(); }
  /// The desktop has said nothing for so long that everything must be answered: whether the window
  /// stays where it was said to be last, which is not where code wants it.
  bool isRefused();

 private:
  bool confirms(const QRect& frame);

  QRect current_;
  QRect told_;                   // what the desktop said last
  bool isConfirmation_ = false;  // what it said last
  std::deque<QRect> underWay_;   // oldest first
};

}  // namespace vistrel::platform::linux_desktop
