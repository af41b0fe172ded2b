#include "catalogue/MirrorWorthyWindows.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "platform/Text.h"

namespace vistrel {

using platform::ComparisonResult;
using platform::ShareableWindow;
using platform::WindowRecord;

namespace {

constexpr double minWidth = 80;
constexpr double minHeight = 60;

bool isMirrorWorthy(const ShareableWindow& window, std::int32_t ownProcessID) {
  const bool isOwn =
      window.owningApplication && window.owningApplication->processID == ownProcessID;
  return window.isOnScreen && window.windowLayer == 0 && window.title && !window.title->empty() &&
         window.frame.width() >= minWidth && window.frame.height() >= minHeight && !isOwn;
}

bool isAscending(const std::string& a, const std::string& b) {
  return platform::localizedCaseInsensitiveCompare(a, b) == ComparisonResult::ascending;
}

bool comesBeforeByTitle(const WindowRecord& a, const WindowRecord& b) {
  return isAscending(a->title.value_or(""), b->title.value_or(""));
}

bool comesBeforeByApplication(const WindowRecord& a, const WindowRecord& b) {
  return isAscending(a->applicationNameOr(""), b->applicationNameOr(""));
}

/// Sorts neighbours whose application's name is spelt alike. A window of another spelling between
/// them compares with neither, so nothing moves past it.
void sortNeighboursByTitle(std::vector<WindowRecord>& windows) {
  for (auto first = windows.begin(); first != windows.end();) {
    const std::string name = (*first)->applicationNameOr("");
    const auto end = std::find_if(first, windows.end(), [&](const WindowRecord& window) {
      return window->applicationNameOr("") != name;
    });
    std::stable_sort(first, end, comesBeforeByTitle);
    first = end;
  }
}

}  // namespace

std::vector<WindowRecord> mirrorWorthyWindows(const std::vector<WindowRecord>& windows,
                                              std::int32_t ownProcessID) {
  std::vector<WindowRecord> kept;
  std::copy_if(windows.begin(), windows.end(), std::back_inserter(kept),
               [&](const WindowRecord& window) { return isMirrorWorthy(*window, ownProcessID); });
  // In two steps, since titles count within one spelling alone: as one comparison that would be no
  // strict weak ordering where names differ in letter case only.
  std::stable_sort(kept.begin(), kept.end(), comesBeforeByApplication);
  sortNeighboursByTitle(kept);
  return kept;
}

}  // namespace vistrel
