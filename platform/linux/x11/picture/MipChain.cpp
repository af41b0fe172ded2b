#include "platform/linux/x11/picture/MipChain.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vistrel::platform::linux_desktop {
namespace {

bool isWhole(const MipLevel& level) { return level.perPixelX == 1 && level.perPixelY == 1; }

Sampling shifted(Sampling sampling, double targetPixels) {
  sampling.originX += targetPixels * sampling.scaleX;
  sampling.originY += targetPixels * sampling.scaleY;
  return sampling;
}

}  // namespace

bool MipChain::rebuild(const LivePicture& source, const std::vector<MipLevel>& levels) {
  auto finest = makeOpaqueCanvas(connection_, levels.front().size);
  if (!finest) return false;
  sourceSize_ = source.size();
  copiedFor_ = levels;
  secondSample_ = {};
  copies_.clear();
  copies_.push_back({levels.front(), *std::move(finest)});
  fillFinest(source, rectOf(levels.front().size));
  addCopies({levels.begin() + 1, levels.end()});
  return true;
}

void MipChain::derive(const std::vector<MipLevel>& levels) {
  if (!hasPicture() || isCopiedFor(levels)) return;
  copiedFor_.clear();
  secondSample_ = {};
  copies_.erase(copies_.begin() + 1, copies_.end());
  std::vector<MipLevel> coarser;
  std::ranges::copy_if(levels, std::back_inserter(coarser), [this](const MipLevel& each) {
    return each.perPixelX > copies_.front().level.perPixelX;
  });
  addCopies(coarser);
}

void MipChain::addCopies(const std::vector<MipLevel>& coarser) {
  for (const auto& each : coarser) {
    auto canvas = makeOpaqueCanvas(connection_, each.size);
    if (!canvas) return;
    copies_.push_back({each, *std::move(canvas)});
    drawFromFiner(copies_.size() - 1, rectOf(each.size));
  }
}

void MipChain::update(const LivePicture& source, const ChangedRects& changes) {
  for (auto area : changes) {
    const auto& finest = copies_.front().level;
    area = changedInCopy(area, finest.perPixelX, finest.perPixelY, finest.size);
    if (isEmpty(area)) continue;
    fillFinest(source, area);
    for (std::size_t i = 1; i < copies_.size(); ++i) {
      area = changedByFiner(i, area);
      if (isEmpty(area)) break;
      drawFromFiner(i, area);
    }
  }
}

void MipChain::fillFinest(const LivePicture& source, const PixelRect& area) {
  const auto& [level, canvas] = copies_.front();
  const Sampling sampling{level.perPixelX, level.perPixelY, static_cast<double>(source.crop.x),
                          static_cast<double>(source.crop.y), Filter::bilinear};
  drawScaled(connection_, source.picture, sampling, canvas.picture, area);
  for (const auto& each : source.outside) {
    // A pixel that is partly outside would be mixed with what must not be seen.
    const auto covered =
        intersection(changedInCopy(each, level.perPixelX, level.perPixelY, level.size), area);
    if (!isEmpty(covered)) fill(connection_, canvas.picture, Color::black(1), covered);
  }
}

std::pair<double, double> MipChain::reductionFromFiner(std::size_t copy) const {
  const auto& finer = copies_[copy - 1].level;
  const auto& level = copies_[copy].level;
  return {level.perPixelX / finer.perPixelX, level.perPixelY / finer.perPixelY};
}

PixelRect MipChain::changedByFiner(std::size_t copy, const PixelRect& changed) const {
  const auto [x, y] = reductionFromFiner(copy);
  return changedInCopy(changed, x, y, copies_[copy].level.size);
}

void MipChain::drawFromFiner(std::size_t copy, const PixelRect& area) {
  const auto [x, y] = reductionFromFiner(copy);
  drawScaled(connection_, copies_[copy - 1].canvas.picture, {x, y, 0, 0, Filter::bilinear},
             copies_[copy].canvas.picture, area);
}

std::size_t MipChain::copyFor(const PixelRect& place) const {
  const auto isSmaller = [&](const Copy& each) {
    return sourceSize_.width / each.level.perPixelX < place.width &&
           sourceSize_.height / each.level.perPixelY < place.height;
  };
  const auto smaller = std::ranges::find_if(copies_, isSmaller);
  const auto larger = smaller - copies_.begin();
  return larger == 0 ? 0 : static_cast<std::size_t>(larger - 1);
}

Sampling MipChain::samplingOf(const MipLevel& level, const PixelRect& place) const {
  return samplingInto(place, sourceSize_.width / level.perPixelX,
                      sourceSize_.height / level.perPixelY);
}

void MipChain::draw(const Picture& target, const PixelRect& place, const PixelRect& area) {
  const auto& [level, canvas] = copies_[copyFor(place)];
  const auto sampling = samplingOf(level, place);
  const double spread = sampleSpread(std::min(sampling.scaleX, sampling.scaleY), isWhole(level));
  const auto* const second = spread > 0 ? secondSampleFor(place) : nullptr;
  if (!second) return drawScaled(connection_, canvas.picture, sampling, target, area);
  drawScaled(connection_, canvas.picture, shifted(sampling, -spread), target, area);
  // Two steps, since pixman 0.42.2 takes ten times as long to lay a scaled opaque picture over
  // another at an opacity.
  drawScaled(connection_, canvas.picture, shifted(sampling, spread), second->picture, area);
  const auto opacity = makeSolid(connection_, Color::black(0.5));
  blendUnscaled(connection_, second->picture, opacity, target, area);
}

const Canvas* MipChain::secondSampleFor(const PixelRect& place) {
  const PixelSize size{std::max(secondSample_.size.width, place.x + place.width),
                       std::max(secondSample_.size.height, place.y + place.height)};
  if (size != secondSample_.size) {
    auto larger = makeOpaqueCanvas(connection_, size);
    if (!larger) return nullptr;
    secondSample_ = *std::move(larger);
  }
  return &secondSample_;
}

PixelRect MipChain::changedIn(const PixelRect& place, const PixelRect& changed) const {
  const auto& level = copies_[copyFor(place)].level;
  // The last step's filter, its samples' spread, and the filters by which the copy was made.
  const double reach = 3 * std::max(level.perPixelX, level.perPixelY);
  return moved(changedInTarget(changed, sourceSize_, sizeOf(place), reach), place.x, place.y);
}

}  // namespace vistrel::platform::linux_desktop
