#pragma once

#include <vector>

#include "platform/linux/x11/picture/Drawing.h"
#include "platform/linux/x11/picture/LivePicture.h"
#include "platform/linux/x11/picture/MipLevels.h"

namespace vistrel::platform::linux_desktop {

/// Which levels a chain holds: all from the finest to the coarsest.
struct LevelRange {
  int finest = 0;
  int coarsest = 0;

  friend bool operator==(const LevelRange&, const LevelRange&) = default;
};

/// Copies of a window's picture in the display server, each half the size of the one before. The
/// finest one is copied from the window, the others from their finer neighbours.
class MipChain {
 public:
  explicit MipChain(Connection& connection) : connection_(connection) {}

  bool hasPicture() const { return !levels_.empty(); }
  /// Of the whole picture, level 0, whether the chain holds that or not.
  PixelSize sourceSize() const { return sourceSize_; }
  int finest() const { return finest_; }
  int coarsest() const { return finest_ + static_cast<int>(levels_.size()) - 1; }

  /// Copies everything; false, and nothing has changed, where the server has no memory for that.
  bool rebuild(const LivePicture& source, LevelRange range);
  /// Copies what has changed of a source of the same size.
  void update(const LivePicture& source, const ChangedRects& changes);
  /// Makes coarser levels, as far as the server has memory for them, and drops those outside the
  /// range. Cannot make finer ones.
  void fitTo(LevelRange range);

  /// Draws the part of the picture in `area` of `target`, where all of it would fill `place`.
  void draw(const Picture& target, const PixelRect& place, const PixelRect& area) const;

 private:
  /// False where the server has no memory for it.
  bool addLevel();
  void fillFinest(const LivePicture& source, const PixelRect& area);
  const Canvas& level(int number) const {
    return levels_[static_cast<std::size_t>(number - finest_)];
  }

  Connection& connection_;
  PixelSize sourceSize_;
  int finest_ = 0;
  std::vector<Canvas> levels_;
};

}  // namespace vistrel::platform::linux_desktop
