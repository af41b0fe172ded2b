#pragma once

#include <utility>
#include <vector>

#include "platform/linux/x11/picture/Drawing.h"
#include "platform/linux/x11/picture/LivePicture.h"
#include "platform/linux/x11/picture/MipLevels.h"

namespace vistrel::platform::linux_desktop {

/// Copies of a window's picture in the display server, each smaller than the one before. The finest
/// one is copied from the window, the others from their finer neighbours.
class MipChain {
 public:
  explicit MipChain(Connection& connection) : connection_(connection) {}

  bool hasPicture() const { return !copies_.empty(); }
  /// Of the whole picture, whether the chain holds a copy of that size or not.
  PixelSize sourceSize() const { return sourceSize_; }
  /// Whether it was copied for these levels.
  bool isCopiedFor(const std::vector<MipLevel>& levels) const { return copiedFor_ == levels; }

  /// Copies everything, the coarser levels as far as the server has memory for them. False, and
  /// nothing has changed, where it has none for the finest.
  bool rebuild(const LivePicture& source, const std::vector<MipLevel>& levels);
  /// Copies what has changed of a source of the same size.
  void update(const LivePicture& source, const ChangedRects& changes);
  /// Makes of the finest copy at hand what is coarser among `levels`, in place of what there is.
  void derive(const std::vector<MipLevel>& levels);

  /// Draws the part of the picture in `area` of `target`, where all of it would fill `place`.
  void draw(const Picture& target, const PixelRect& place, const PixelRect& area);
  /// What of `place` depends on `changed` of the source.
  PixelRect changedIn(const PixelRect& place, const PixelRect& changed) const;

 private:
  struct Copy {
    MipLevel level;
    Canvas canvas;
  };

  /// As far as the server has memory for them.
  void addCopies(const std::vector<MipLevel>& coarser);
  void fillFinest(const LivePicture& source, const PixelRect& area);
  /// How many pixels of the copy before it each of a copy's own stands for, along both axes.
  std::pair<double, double> reductionFromFiner(std::size_t copy) const;
  PixelRect changedByFiner(std::size_t copy, const PixelRect& changed) const;
  void drawFromFiner(std::size_t copy, const PixelRect& area);
  /// The coarsest copy that is not smaller than `place`, or the finest.
  std::size_t copyFor(const PixelRect& place) const;
  Sampling samplingOf(const MipLevel& level, const PixelRect& place) const;
  /// With room for `place` where it lies. Null where the server has no memory for it.
  const Canvas* secondSampleFor(const PixelRect& place);

  Connection& connection_;
  PixelSize sourceSize_;
  std::vector<Copy> copies_;
  std::vector<MipLevel> copiedFor_;
  Canvas secondSample_;  // as large as these copies have needed
};

}  // namespace vistrel::platform::linux_desktop
