#include "platform/linux/x11/picture/PictureStore.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace vistrel::platform::linux_desktop {
namespace {

/// At least the half-size level is always held: later sizes are drawn from it.
LevelRange levelRangeFor(PixelSize source, const std::vector<PixelSize>& sizes) {
  LevelRange range{1, 0};
  for (const auto& size : sizes) {
    const auto blend = levelsFor(source, size);
    range.finest = std::min(range.finest, blend.finer);
    range.coarsest = std::max(range.coarsest, blend.coarsest());
  }
  range.coarsest = std::max(range.coarsest, range.finest);
  return range;
}

}  // namespace

std::optional<PictureChanges> PictureStore::commit(std::shared_ptr<const LivePicture> source,
                                                   PictureChanges changes, CursorMark cursor,
                                                   const std::vector<PixelSize>& sizes) {
  assert(thread_.isCurrent());
  const auto range = levelRangeFor(source->size(), sizes);
  changes.everything |= chain_.sourceSize() != source->size() || range.finest < chain_.finest();
  if (changes.everything) {
    if (!chain_.rebuild(*source, range)) return std::nullopt;
  } else {
    chain_.fitTo(range);
    chain_.update(*source, changes.rects);
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
  const auto range = levelRangeFor(chain_.sourceSize(), sizes);
  if (range.finest < chain_.finest() && unchangedSource) {
    chain_.rebuild(*unchangedSource, range);
  } else {
    chain_.fitTo(range);
  }
}

void PictureStore::draw(const Picture& target, const PixelRect& place,
                        const PixelRect& area) const {
  assert(thread_.isCurrent());
  chain_.draw(target, place, area);
  if (!isEmpty(cursor_.area)) drawCursor(target, place, area);
}

void PictureStore::drawCursor(const Picture& target, const PixelRect& place,
                              const PixelRect& area) const {
  const int level = std::min(finestWholeLevel(size(), sizeOf(place)),
                             static_cast<int>(cursor_.levels->size()) - 1);
  const double reduction = 1 << level;
  auto sampling = samplingInto(place, size().width / reduction, size().height / reduction);
  sampling.originX -= cursor_.area.x / reduction;
  sampling.originY -= cursor_.area.y / reduction;
  const auto cursor =
      moved(changedInTarget(cursor_.area, size(), sizeOf(place), level), place.x, place.y);
  const auto covered = intersection(cursor, area);
  if (isEmpty(covered)) return;
  layOverScaled(connection_, cursor_.levels->at(static_cast<std::size_t>(level)).picture, sampling,
                target, covered);
}

ChangedRects PictureStore::changedIn(const PixelRect& place, const PictureChanges& changes) const {
  ChangedRects result;
  if (changes.everything) result.add(place);
  const int coarsest = levelsFor(size(), sizeOf(place)).coarsest();
  for (const auto& each : changes.rects) {
    result.add(moved(changedInTarget(each, size(), sizeOf(place), coarsest), place.x, place.y));
  }
  return result;
}

}  // namespace vistrel::platform::linux_desktop
