#include "platform/linux/x11/picture/PictureStore.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace vistrel::platform::linux_desktop {
namespace {

/// Those for the largest of the sizes. Nothing is coarser than half the size at the finest, since
/// later sizes may have to be drawn from that.
std::vector<MipLevel> levelsForLargest(PixelSize source, const std::vector<PixelSize>& sizes) {
  if (sizes.empty()) return {halfLevel(source, 1)};
  return levelsFor(source, *std::ranges::max_element(sizes, {}, &PixelSize::width));
}

}  // namespace

std::optional<PictureChanges> PictureStore::commit(std::shared_ptr<const LivePicture> source,
                                                   PictureChanges changes, CursorMark cursor,
                                                   const std::vector<PixelSize>& sizes) {
  assert(thread_.isCurrent());
  const auto levels = levelsForLargest(source->size(), sizes);
  changes.everything |= chain_.sourceSize() != source->size() || !chain_.isCopiedFor(levels);
  if (!changes.everything) {
    chain_.update(*source, changes.rects);
  } else if (!chain_.rebuild(*source, levels)) {
    return std::nullopt;
  }
  source_ = std::move(source);
  if (cursor != cursor_) {
    changes.rects.add(cursor_.area);
    changes.rects.add(cursor.area);
    cursor_ = std::move(cursor);
  }
  return changes;
}

void PictureStore::prepareFor(const std::vector<PixelSize>& sizes,
                              const LivePicture* unchangedSource) {
  assert(thread_.isCurrent());
  if (!hasPicture()) return;
  const auto levels = levelsForLargest(chain_.sourceSize(), sizes);
  if (chain_.isCopiedFor(levels)) return;
  if (!unchangedSource || !chain_.rebuild(*unchangedSource, levels)) chain_.derive(levels);
}

void PictureStore::draw(const Picture& target, const PixelRect& place, const PixelRect& area) {
  assert(thread_.isCurrent());
  chain_.draw(target, place, area);
  if (!isEmpty(cursor_.area)) drawCursor(target, place, area);
}

void PictureStore::drawCursor(const Picture& target, const PixelRect& place,
                              const PixelRect& area) const {
  const int level = std::min(finestWholeLevel(size(), sizeOf(place)),
                             static_cast<int>(cursor_.levels->size()) - 1);
  const double perPixel = 1 << level;
  auto sampling = samplingInto(place, size().width / perPixel, size().height / perPixel);
  sampling.originX -= cursor_.area.x / perPixel;
  sampling.originY -= cursor_.area.y / perPixel;
  const auto cursor =
      moved(changedInTarget(cursor_.area, size(), sizeOf(place), 2 * perPixel), place.x, place.y);
  const auto covered = intersection(cursor, area);
  if (isEmpty(covered)) return;
  layOverScaled(connection_, cursor_.levels->at(static_cast<std::size_t>(level)).picture, sampling,
                target, covered);
}

ChangedRects PictureStore::changedIn(const PixelRect& place, const PictureChanges& changes) const {
  ChangedRects result;
  if (changes.everything) result.add(place);
  for (const auto& each : changes.rects) result.add(chain_.changedIn(place, each));
  return result;
}

}  // namespace vistrel::platform::linux_desktop
