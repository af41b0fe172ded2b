#include "platform/linux/x11/panel/AwaitedChromes.h"

#include <algorithm>
#include <utility>

namespace vistrel::platform::linux_desktop {
namespace {

constexpr std::size_t mostAwaited = 4;

/// Points come to pixels by rounding, here and in the toolkit.
constexpr int roundingSlack = 2;

bool hasRoomFor(const PanelChrome& chrome, PixelSize window) {
  return chrome.width <= window.width && chrome.height <= window.height;
}

bool fills(const PanelChrome& chrome, PixelSize window) {
  return window.width - chrome.width < roundingSlack &&
         window.height - chrome.height < roundingSlack;
}

}  // namespace

void AwaitedChromes::add(AwaitedChrome chrome) {
  if (chromes_.size() == mostAwaited) chromes_.pop_back();
  chromes_.push_back(std::move(chrome));
}

std::optional<AwaitedChrome> AwaitedChromes::takeFor(PixelSize window, Beside beside) {
  const auto newest =
      std::find_if(chromes_.rbegin(), chromes_.rend(), [&](const AwaitedChrome& each) {
        return hasRoomFor(*each.chrome, window) &&
               (beside == Beside::nothing || fills(*each.chrome, window));
      });
  std::optional<AwaitedChrome> taken;
  if (newest != chromes_.rend()) {
    taken = std::move(*newest);
    chromes_.erase(chromes_.begin(), newest.base());
  }
  if (beside == Beside::nothing) return taken;
  const auto less =
      std::find_if(chromes_.rbegin(), chromes_.rend(),
                   [&](const AwaitedChrome& each) { return hasRoomFor(*each.chrome, window); });
  if (less == chromes_.rend()) return taken;
  if (taken) {
    taken->shown = less->shown;
  } else {
    less->shown();
  }
  return taken;
}

}  // namespace vistrel::platform::linux_desktop
