#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>

#include "platform/linux/PanelSurface.h"

namespace vistrel::platform::linux_desktop {

/// The height of a panel on its way from one height to another, in pixels; `progress` is the part
/// of the time that has passed. Starts and ends gently.
int heightOnTheWay(int from, int to, double progress);

/// The upper part of a chrome. The picture stays where it is, though the chrome may now end above
/// its lower edge.
PanelChrome topOf(const PanelChrome& chrome, int height);

/// How long a panel takes to roll up or down, in milliseconds; 0 where the desktop wants no motion.
int rollDuration();

/// The time in which a panel is rolled up or down. Main thread.
class RollAnimation {
 public:
  /// Calls `step` now and then while it runs, and once when it has come to its end.
  explicit RollAnimation(std::function<void()> step);

  /// Does not run where the desktop wants no motion.
  void start(int from, int to);
  void stop() { steps_.stop(); }
  bool isRunning() const { return steps_.isActive(); }
  /// Of the panel now, while it runs.
  int height() const { return height_; }
  bool isRollingUp() const { return to_ < from_; }

 private:
  void step();

  const std::function<void()> step_;
  QTimer steps_;
  QElapsedTimer sinceStart_;
  int duration_ = 0;
  int from_ = 0;
  int to_ = 0;
  int height_ = 0;
};

}  // namespace vistrel::platform::linux_desktop
