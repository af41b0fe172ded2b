#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace vistrel::platform::linux_desktop {

/// The pixels of a panel's chrome, 0xAARRGGBB in the host's byte order, premultiplied, top row
/// first. Kept as runs of equal ones: what the chrome leaves to the picture, most of it, takes
/// hardly any memory.
class ChromePixels {
 public:
  ChromePixels() = default;
  /// Of as many whole rows of `width` pixels as there are.
  ChromePixels(int width, std::span<const std::uint32_t> pixels);

  int height() const { return static_cast<int>(ends_.size()); }
  /// `count` rows from `first` on, all of them there.
  std::vector<std::uint32_t> rows(int first, int count) const;
  /// As many rows from the first on, all of them there.
  ChromePixels top(int count) const;

 private:
  struct Run {
    std::uint32_t pixel;
    std::uint32_t length;

    friend bool operator==(const Run&, const Run&) = default;
  };

  std::span<const Run> runsOf(int row) const;

  friend std::pair<int, int> differingRows(const ChromePixels& a, const ChromePixels& b);

  int width_ = 0;
  std::vector<Run> runs_;
  std::vector<std::size_t> ends_;  // where each row ends in `runs_`
};

/// The rows from the first to the last that differ between two of the same size: the first, and how
/// many.
std::pair<int, int> differingRows(const ChromePixels& a, const ChromePixels& b);

}  // namespace vistrel::platform::linux_desktop
