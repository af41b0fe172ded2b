#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/x11/picture/MipChain.h"

namespace vistrel::platform::linux_desktop {

/// The pointer's picture and where it lies over a source, in the source's pixels.
struct CursorMark {
  /// As it is, and its reductions: each half the size of the one before. Transparent outside their
  /// edges.
  std::shared_ptr<const std::vector<Canvas>> levels;
  PixelRect area;

  friend bool operator==(const CursorMark&, const CursorMark&) = default;
};

/// What differs between two pictures of one source, in the source's pixels.
struct PictureChanges {
  /// Other pixels altogether, perhaps of another size.
  bool everything = false;
  ChangedRects rects;

  bool empty() const { return !everything && rects.empty(); }
};

/// The picture that a mirror has accepted last, whatever its source has become since: enough of it
/// to draw it at any size. Lives on the mirror's queue.
class PictureStore {
 public:
  explicit PictureStore(Connection& connection) : connection_(connection), chain_(connection) {}

  bool hasPicture() const { return chain_.hasPicture(); }
  PixelSize size() const { return chain_.sourceSize(); }
  /// What the picture was taken from. That may have other pixels by now.
  const LivePicture* source() const { return source_.get(); }

  /// Takes the source's pixels over, with the copies that drawing at `sizes` takes. Answers what
  /// that changed, the cursor included; none, and the former picture stays, where the server has no
  /// memory for it.
  std::optional<PictureChanges> commit(std::shared_ptr<const LivePicture> source,
                                       PictureChanges changes, CursorMark cursor,
                                       const std::vector<PixelSize>& sizes);

  /// Holds the copies that drawing at `sizes` takes, made anew of `unchangedSource`; where that is
  /// null, they are made of those at hand until the next commit.
  void prepareFor(const std::vector<PixelSize>& sizes, const LivePicture* unchangedSource);

  /// Draws the part of the picture in `area` of `target`, where all of it fills `place`.
  void draw(const Picture& target, const PixelRect& place, const PixelRect& area);
  /// What of `place` a change has altered.
  ChangedRects changedIn(const PixelRect& place, const PictureChanges& changes) const;

 private:
  void drawCursor(const Picture& target, const PixelRect& place, const PixelRect& area) const;

  const OwnThread thread_;
  Connection& connection_;
  MipChain chain_;
  std::shared_ptr<const LivePicture> source_;
  CursorMark cursor_;
};

}  // namespace vistrel::platform::linux_desktop
