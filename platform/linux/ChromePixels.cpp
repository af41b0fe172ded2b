#include "platform/linux/ChromePixels.h"

#include <algorithm>
#include <cassert>

namespace vistrel::platform::linux_desktop {

ChromePixels::ChromePixels(int width, std::span<const std::uint32_t> pixels) : width_(width) {
  const auto rowLength = static_cast<std::size_t>(width);
  for (; pixels.size() >= rowLength && rowLength > 0; pixels = pixels.subspan(rowLength)) {
    const auto row = pixels.first(rowLength);
    for (auto begin = row.begin(); begin != row.end();) {
      const auto end = std::find_if(begin, row.end(), [&](auto each) { return each != *begin; });
      runs_.push_back({*begin, static_cast<std::uint32_t>(end - begin)});
      begin = end;
    }
    ends_.push_back(runs_.size());
  }
  runs_.shrink_to_fit();
}

std::span<const ChromePixels::Run> ChromePixels::runsOf(int row) const {
  const auto index = static_cast<std::size_t>(row);
  const auto begin = index == 0 ? 0 : ends_[index - 1];
  return std::span(runs_).subspan(begin, ends_[index] - begin);
}

std::vector<std::uint32_t> ChromePixels::rows(int first, int count) const {
  assert(first >= 0 && count >= 0 && first + count <= height());
  std::vector<std::uint32_t> pixels;
  pixels.reserve(static_cast<std::size_t>(width_) * static_cast<std::size_t>(count));
  for (int row = first; row < first + count; ++row) {
    for (const auto& [pixel, length] : runsOf(row)) pixels.insert(pixels.end(), length, pixel);
  }
  return pixels;
}

ChromePixels ChromePixels::top(int count) const {
  assert(count >= 0 && count <= height());
  ChromePixels top;
  top.width_ = width_;
  top.ends_.assign(ends_.begin(), ends_.begin() + count);
  const auto runs = top.ends_.empty() ? 0 : top.ends_.back();
  top.runs_.assign(runs_.begin(), runs_.begin() + static_cast<std::ptrdiff_t>(runs));
  return top;
}

std::pair<int, int> differingRows(const ChromePixels& a, const ChromePixels& b) {
  assert(a.width_ == b.width_ && a.height() == b.height());
  const auto isSame = [&](int row) { return std::ranges::equal(a.runsOf(row), b.runsOf(row)); };
  int first = 0;
  int end = a.height();
  while (first < end && isSame(first)) ++first;
  while (end > first && isSame(end - 1)) --end;
  return first == end ? std::pair(0, 0) : std::pair(first, end - first);
}

}  // namespace vistrel::platform::linux_desktop
