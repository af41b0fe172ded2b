#include "platform/linux/x11/picture/MipChain.h"

#include <algorithm>
#include <utility>

namespace vistrel::platform::linux_desktop {

bool MipChain::rebuild(const LivePicture& source, LevelRange range) {
  auto finest = makeOpaqueCanvas(connection_, sizeOfLevel(source.size(), range.finest));
  if (!finest) return false;
  sourceSize_ = source.size();
  finest_ = range.finest;
  levels_.clear();
  levels_.push_back(*std::move(finest));
  fillFinest(source, rectOf(levels_.front().size));
  fitTo(range);
  return true;
}

void MipChain::update(const LivePicture& source, const ChangedRects& changes) {
  for (auto area : changes) {
    if (finest_ == 1) area = changedInNextLevel(area, levels_.front().size);
    if (isEmpty(area)) continue;
    fillFinest(source, area);
    for (std::size_t i = 1; i < levels_.size(); ++i) {
      area = changedInNextLevel(area, levels_[i].size);
      if (isEmpty(area)) break;
      drawScaled(connection_, levels_[i - 1].picture, halving, levels_[i].picture, area);
    }
  }
}

void MipChain::fitTo(LevelRange range) {
  if (!hasPicture()) return;
  while (coarsest() < range.coarsest && addLevel()) {
  }
  while (finest_ < range.finest) {
    levels_.erase(levels_.begin());
    ++finest_;
  }
  const int levels = std::max(range.coarsest, finest_) - finest_ + 1;
  const auto wanted = static_cast<std::size_t>(levels);
  levels_.resize(std::min(wanted, levels_.size()));
}

bool MipChain::addLevel() {
  auto next = makeOpaqueCanvas(connection_, sizeOfLevel(sourceSize_, coarsest() + 1));
  if (!next) return false;
  drawScaled(connection_, levels_.back().picture, halving, next->picture, rectOf(next->size));
  levels_.push_back(*std::move(next));
  return true;
}

void MipChain::fillFinest(const LivePicture& source, const PixelRect& area) {
  const double scale = 1 << finest_;
  const Sampling sampling{scale, scale, static_cast<double>(source.crop.x),
                          static_cast<double>(source.crop.y), Filter::bilinear};
  const auto& finest = levels_.front();
  drawScaled(connection_, source.picture, sampling, finest.picture, area);
  for (auto outside : source.outside) {
    // A pixel that is partly outside would be mixed with what must not be seen.
    if (finest_ == 1) outside = changedInNextLevel(outside, finest.size);
    const auto covered = intersection(outside, area);
    if (!isEmpty(covered)) fill(connection_, finest.picture, Color::black(1), covered);
  }
}

void MipChain::draw(const Picture& target, const PixelRect& place, const PixelRect& area) const {
  const auto samplingOf = [&](int number) {
    const double reduction = 1 << number;
    return samplingInto(place, sourceSize_.width / reduction, sourceSize_.height / reduction);
  };
  const auto blend = levelsFor(sourceSize_, sizeOf(place));
  const int finer = std::clamp(blend.finer, finest_, coarsest());
  drawScaled(connection_, level(finer).picture, samplingOf(finer), target, area);
  if (blend.coarserWeight <= 0 || finer != blend.finer || finer == coarsest()) return;
  const auto opacity = makeSolid(connection_, Color::black(blend.coarserWeight));
  blendScaled(connection_, level(finer + 1).picture, samplingOf(finer + 1), opacity, target, area);
}

}  // namespace vistrel::platform::linux_desktop
