#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/Geometry.h"
#include "platform/linux/session/ParkedSources.h"
#include "platform/linux/wayland/compositor/NativeWindowIds.h"
#include "platform/linux/wayland/kwin/KWinGuard.h"
#include "platform/linux/wayland/kwin/KWinScripts.h"
#include "platform/linux/wayland/kwin/ParkedRecord.h"

namespace vistrel::platform::linux_desktop {

/// Moves KWin's native windows, which stay drawn wherever they are, and knows which of them are
/// parked: those that are not where they were found. KWin puts them exactly where it is told;
/// maximised and full-screen ones keep those states meanwhile. Whatever is parked of X's stays with
/// X's half. Windows are known by the numbers that they have been listed under; positions are of
/// the frames that they are listed with, in points of global display space. Main thread.
class KWinMover final : public ParkedSources {
 public:
  /// Brings home what a program has left parked that has ended in whatever way, unless somebody has
  /// moved it since.
  KWinMover(std::shared_ptr<ParkedSources> x, std::shared_ptr<NativeWindowIds> ids,
            std::shared_ptr<KWinGuard> guard);
  KWinMover(const KWinMover&) = delete;
  KWinMover& operator=(const KWinMover&) = delete;
  /// As `leaveHomeFirst`.
  ~KWinMover() override;

  /// The native ones of a process.
  std::vector<WindowID> windowsOf(std::int32_t processID);
  /// None for a window that has gone.
  std::optional<Point> positionOf(WindowID window);
  /// Returns once it is there; false for a window that has gone.
  bool move(WindowID window, Point position);
  /// All windows of a process, in the order in which they lie; the frontmost one gets the keyboard,
  /// on the desktop that is shown if there is any. False when it has none.
  bool activateWindows(std::int32_t processID);

  void sendAllHome() override;
  void parkAgain() override;
  void leaveHomeFirst() override;

 private:
  /// Whether KWin has done so.
  bool moveAll(Point ParkedPlaces::*place, double patience);

  const std::shared_ptr<ParkedSources> x_;
  const std::shared_ptr<NativeWindowIds> ids_;
  const std::shared_ptr<KWinGuard> guard_;
  KWinScripts scripts_;
  ParkedRecord record_;
  ParkedWindowsByUuid parked_;
};

}  // namespace vistrel::platform::linux_desktop
