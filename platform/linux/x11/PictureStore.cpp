#include "platform/linux/x11/PictureStore.h"

#include <algorithm>
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

PictureChanges PictureStore::commit(std::shared_ptr<const LivePicture> source,
                                    PictureChanges changes, CursorMark cursor,
                                    const std::vector<PixelSize>& sizes) {
  source_ = std::move(source);
  const auto range = levelRangeFor(source_->size(), sizes);
  changes.everything |= chain_.sourceSize() != source_->size() || range.finest < chain_.finest();
  if (changes.everything) {
    chain_.rebuild(*source_, range);
  } else {
    chain_.fitTo(range);
    chain_.update(*source_, changes.rects);
  }
  if (cursor != cursor_) {
    changes.rects.add(cursor_.area);
    changes.rects.add(cursor.area);
    cursor_ = std::move(cursor);
  }
  return changes;
}

void PictureStore::prepareFor(const std::vector<PixelSize>& sizes,
                              const LivePicture* unchangedSource) {
  if (!hasPicture()) return;
  const auto range = levelRangeFor(chain_.sourceSize(), sizes);
  if (range.finest < chain_.finest() && unchangedSource) {
    chain_.rebuild(*unchangedSource, range);
  } else {
    chain_.fitTo(range);
  }
}

ChangedRects PictureStore::redraw(const Picture& target, PixelSize size,
                                  const PictureChanges& changes) const {
  const auto source = chain_.sourceSize();
  const int coarsest = levelsFor(source, size).coarsest();
  ChangedRects result;
  if (changes.everything) result.add(rectOf(size));
  for (const auto& each : changes.rects) {
    result.add(changedInTarget(each, source, size, coarsest));
  }
  // The cursor can be laid over once only, so it is drawn whole or not at all.
  const auto cursor =
      isEmpty(cursor_.area) ? PixelRect{} : changedInTarget(cursor_.area, source, size, 0);
  const bool meetsCursor = std::any_of(result.begin(), result.end(), [&](const PixelRect& each) {
    return !isEmpty(intersection(each, cursor));
  });
  if (meetsCursor) result.add(cursor);
  for (const auto& each : result) chain_.draw(target, size, each);
  if (meetsCursor) drawCursor(target, size, cursor);
  return result;
}

void PictureStore::drawCursor(const Picture& target, PixelSize size, const PixelRect& area) const {
  const auto source = chain_.sourceSize();
  const Sampling sampling{static_cast<double>(source.width) / size.width,
                          static_cast<double>(source.height) / size.height,
                          static_cast<double>(-cursor_.area.x),
                          static_cast<double>(-cursor_.area.y), Filter::bilinear};
  layOverScaled(connection_, *cursor_.picture, sampling, target, area);
}

}  // namespace vistrel::platform::linux_desktop
