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

bool comesBefore(const WindowRecord& a, const WindowRecord& b) {
  const std::string nameOfA = a->applicationNameOr("");
  const std::string nameOfB = b->applicationNameOr("");
  if (nameOfA != nameOfB) return isAscending(nameOfA, nameOfB);
  return isAscending(a->title.value_or(""), b->title.value_or(""));
}

}  // namespace

std::vector<WindowRecord> mirrorWorthyWindows(const std::vector<WindowRecord>& windows,
                                              std::int32_t ownProcessID) {
  std::vector<WindowRecord> kept;
  std::copy_if(windows.begin(), windows.end(), std::back_inserter(kept),
               [&](const WindowRecord& window) { return isMirrorWorthy(*window, ownProcessID); });
  std::stable_sort(kept.begin(), kept.end(), comesBefore);
  return kept;
}

}  // namespace vistrel
