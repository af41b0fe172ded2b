#include "platform/linux/wayland/MergedWindows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

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

/// KWin tells windows of the same title apart by what it appends: "Document <2>" and a mark of the
/// direction of writing.
bool hasNumberedTitle(const ShareableWindow& x, const ShareableWindow& kwin) {
  const std::string beginning = x.title.value_or("") + " <";
  const std::string title = kwin.title.value_or("");
  if (!title.starts_with(beginning)) return false;
  const auto numberEnd =
      std::min(title.find_first_not_of("0123456789", beginning.size()), title.size());
  const auto rest = title.substr(numberEnd);
  return numberEnd > beginning.size() && (rest == ">" || rest == ">\u200e");
}

/// Both round, each in its own way.
bool isAtSamePlace(const ShareableWindow& x, const ShareableWindow& kwin) {
  constexpr double rounding = 2;
  const auto isClose = [](double a, double b) { return std::abs(a - b) <= rounding; };
  return isClose(x.frame.minX(), kwin.frame.minX()) && isClose(x.frame.minY(), kwin.frame.minY()) &&
         isClose(x.frame.width(), kwin.frame.width()) &&
         isClose(x.frame.height(), kwin.frame.height());
}

/// The surest first.
constexpr std::array<Likeness, 5> likenesses = {
    [](const ShareableWindow& x, const ShareableWindow& kwin) {
      return hasSameProcess(x, kwin) && hasSameTitle(x, kwin) && isAtSamePlace(x, kwin);
    },
    [](const ShareableWindow& x, const ShareableWindow& kwin) {
      return hasSameProcess(x, kwin) && hasSameTitle(x, kwin);
    },
    [](const ShareableWindow& x, const ShareableWindow& kwin) {
      return hasSameProcess(x, kwin) && isAtSamePlace(x, kwin);
    },
    // The server does not know of the frames that KWin draws, so the place need not be the same.
    [](const ShareableWindow& x, const ShareableWindow& kwin) {
      return hasSameProcess(x, kwin) && hasNumberedTitle(x, kwin);
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
