#include "platform/linux/wayland/kwin/MergedWindows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace vistrel::platform::linux_desktop {
namespace {

using Likeness = bool (*)(const ShareableWindow& x, const ShareableWindow& kwin);
/// For each of KWin's windows, which of X's it is.
using Matches = std::vector<std::optional<std::size_t>>;

bool isProcessKnown(const ShareableWindow& window) {
  return window.owningApplication && window.owningApplication->processID >= 0;
}

bool hasSameProcess(const ShareableWindow& x, const ShareableWindow& kwin) {
  return isProcessKnown(x) && isProcessKnown(kwin) &&
         x.owningApplication->processID == kwin.owningApplication->processID;
}

bool hasSameTitle(const ShareableWindow& x, const ShareableWindow& kwin) {
  return x.title.value_or("") == kwin.title.value_or("");
}

/// Whether KWin's frame may be X's with KWin's decoration around it, which X's half leaves out.
bool isAtSamePlace(const ShareableWindow& x, const ShareableWindow& kwin) {
  // Both round, each in its own way.
  constexpr double rounding = 2;
  constexpr double widestDecoration = 100;
  const auto isWidth = [](double width) { return width >= -rounding && width <= widestDecoration; };
  return isWidth(x.frame.minX() - kwin.frame.minX()) &&
         isWidth(x.frame.minY() - kwin.frame.minY()) &&
         isWidth(kwin.frame.maxX() - x.frame.maxX()) && isWidth(kwin.frame.maxY() - x.frame.maxY());
}

/// The surest first.
constexpr std::array<Likeness, 4> likenesses = {
    [](const ShareableWindow& x, const ShareableWindow& kwin) {
      return hasSameProcess(x, kwin) && hasSameTitle(x, kwin) && isAtSamePlace(x, kwin);
    },
    [](const ShareableWindow& x, const ShareableWindow& kwin) {
      return hasSameProcess(x, kwin) && hasSameTitle(x, kwin);
    },
    // KWin tells windows of the same title apart by what it appends: "Document <2>".
    [](const ShareableWindow& x, const ShareableWindow& kwin) {
      return hasSameProcess(x, kwin) && isAtSamePlace(x, kwin);
    },
    // A client on another machine, whose process is not known.
    [](const ShareableWindow& x, const ShareableWindow& kwin) {
      return !isProcessKnown(kwin) && hasSameTitle(x, kwin) && isAtSamePlace(x, kwin);
    }};

Matches matchesOf(const std::vector<WindowRecord>& x, const std::vector<WindowRecord>& kwin) {
  Matches matches(kwin.size());
  std::vector<bool> isTaken(x.size());
  for (const auto isAlike : likenesses) {
    for (std::size_t k = 0; k < kwin.size(); ++k) {
      for (std::size_t i = 0; i < x.size() && !matches[k]; ++i) {
        if (isTaken[i] || !isAlike(*x[i], *kwin[k])) continue;
        matches[k] = i;
        isTaken[i] = true;
      }
    }
  }
  return matches;
}

/// Those that KWin does not know, each by the next lower one that it knows: none at the bottom.
std::vector<std::optional<std::size_t>> knownBelow(std::size_t count, const Matches& matches) {
  std::vector<std::optional<std::size_t>> below(count);
  std::optional<std::size_t> known;
  for (std::size_t i = count; i-- > 0;) {
    if (std::find(matches.begin(), matches.end(), i) != matches.end()) known = i;
    below[i] = known;
  }
  return below;
}

}  // namespace

std::vector<MergedWindow> mergeWindows(const std::vector<WindowRecord>& x,
                                       const std::vector<WindowRecord>& kwin) {
  const auto matches = matchesOf(x, kwin);
  const auto below = knownBelow(x.size(), matches);
  std::vector<MergedWindow> merged;
  const auto addFromX = [&](std::optional<std::size_t> known) {
    for (std::size_t i = 0; i < x.size(); ++i) {
      if (below[i] == known) merged.push_back({MergedWindow::From::x, i});
    }
  };
  for (std::size_t k = 0; k < kwin.size(); ++k) {
    if (matches[k]) {
      addFromX(matches[k]);
    } else {
      merged.push_back({MergedWindow::From::kwin, k});
    }
  }
  addFromX(std::nullopt);
  return merged;
}

}  // namespace vistrel::platform::linux_desktop
