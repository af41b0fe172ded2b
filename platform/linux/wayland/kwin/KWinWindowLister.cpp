#include "platform/linux/wayland/kwin/KWinWindowLister.h"

#include <algorithm>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/ApplicationNames.h"
#include "platform/linux/WindowLayer.h"
#include "platform/linux/wayland/compositor/WaylandConnection.h"
#include "platform/linux/wayland/kwin/KWinScripts.h"
#include "platform/linux/wayland/kwin/KWinWindows.h"
#include "platform/linux/wayland/kwin/MergedWindows.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// How long a list may wait for what only a script can tell, in seconds.
constexpr double timeForScript = 0.5;

/// Of windows that KWin decorates, whose frames alone the protocol tells.
constexpr const char* scriptThatTellsInsides = R"(
all().forEach(function (each) {
  var frame = each.frameGeometry, client = inside(each);
  if (client.width != frame.width || client.height != frame.height)
    tell([each.internalId, client.x, client.y, client.width, client.height].join(' '));
});
)";

/// What lives with the lister's queue.
class NativeLister {
 public:
  NativeLister(SerialQueue& queue, std::function<void(bool)> activeFullScreenChanged)
      : queue_(queue), activeFullScreenChanged_(std::move(activeFullScreenChanged)) {}

  /// Topmost first; none where KWin tells nothing.
  std::optional<std::vector<KWinWindow>> list() {
    if (!connect()) return std::nullopt;
    auto windows = windows_->list();
    tellActiveFullScreen();
    if (connection_->isLost()) return std::nullopt;
    return windows;
  }

  /// Makes the frames those of what is streamed, without what KWin puts around it; they stay as
  /// they are where it does not answer.
  void leaveDecorationsOut(std::vector<KWinWindow>& windows) {
    const auto told = scripts_.run(scriptThatTellsInsides, monotonicNow() + timeForScript);
    std::istringstream lines(told.value_or(""));
    std::string uuid;
    Rect inside;
    while (lines >> uuid >> inside.origin.x >> inside.origin.y >> inside.size.width >>
           inside.size.height) {
      const auto window = std::find_if(windows.begin(), windows.end(),
                                       [&](const KWinWindow& each) { return each.uuid == uuid; });
      if (window != windows.end()) window->frame = inside;
    }
  }

  std::shared_ptr<ShareableWindow> recordOf(const KWinWindow& window) {
    auto record = std::make_shared<ShareableWindow>();
    record->title = window.title;
    record->frame = window.frame;
    record->owningApplication = applicationOf(window);
    record->isOnScreen = !window.isMinimised && window.isOnShownDesktop;
    // The parts of the desktop and what only shows up for a while stay out of it.
    record->windowLayer = window.isInTaskbar ? layerOrdinary : layerDock;
    return record;
  }

  void refreshNames() { names_.refresh(); }

 private:
  /// Anew as long as nothing is offered: that is asked for at the connection's beginning, and a
  /// person may grant it later.
  bool connect() {
    if (windows_ && !connection_->isLost()) return true;
    windows_.reset();
    connection_ = WaylandConnection::open();
    if (!connection_ || !KWinWindows::isOfferedOn(*connection_)) return false;
    windows_ = std::make_unique<KWinWindows>(*connection_);
    queue_.watch(connection_->descriptor(), [this] { serve(); });
    return true;
  }

  void serve() {
    connection_->serve();
    if (connection_->isLost()) queue_.unwatch(connection_->descriptor());
    tellActiveFullScreen();
  }

  void tellActiveFullScreen() {
    const bool isActive = !connection_->isLost() && windows_->isActiveFullScreen();
    if (std::exchange(isFullScreenActive_, isActive) != isActive) {
      activeFullScreenChanged_(isActive);
    }
  }

  std::shared_ptr<const SharedApplication> applicationOf(const KWinWindow& window) const {
    const ApplicationHints hints{.applicationId = window.applicationId,
                                 .wmClass = window.applicationId,
                                 .processId = window.processId};
    return std::make_shared<SharedApplication>(
        SharedApplication{names_.nameFor(hints), window.processId.value_or(-1)});
  }

  SerialQueue& queue_;
  std::unique_ptr<WaylandConnection> connection_;
  std::unique_ptr<KWinWindows> windows_;
  KWinScripts scripts_;
  ApplicationNames names_;
  const std::function<void(bool)> activeFullScreenChanged_;
  bool isFullScreenActive_ = false;
};

NativeLister& listerOf(SerialQueue& queue) {
  return *static_cast<NativeLister*>(queue.attachment().get());
}

void keepIdsOf(const std::vector<KWinWindow>& windows, NativeWindowIds& ids) {
  std::set<std::string> uuids;
  for (const auto& each : windows) uuids.insert(each.uuid);
  ids.keepOnly(uuids);
}

std::vector<WindowRecord> allWindows(const std::vector<WindowRecord>& ofX, NativeLister& lister,
                                     NativeWindowIds& ids) {
  auto windows = lister.list();
  if (!windows) return ofX;
  keepIdsOf(*windows, ids);
  lister.refreshNames();
  std::vector<WindowRecord> ofKWin;
  for (const auto& each : *windows) ofKWin.push_back(lister.recordOf(each));
  const auto merged = mergeWindows(ofX, ofKWin);
  const auto isNative = [](const MergedWindow& each) {
    return each.from == MergedWindow::From::kwin;
  };
  if (std::any_of(merged.begin(), merged.end(), isNative)) lister.leaveDecorationsOut(*windows);
  std::vector<WindowRecord> all;
  for (const auto& each : merged) {
    if (isNative(each)) {
      const auto& window = (*windows)[each.index];
      auto record = lister.recordOf(window);
      record->windowID = ids.idOf(window.uuid);
      all.push_back(std::move(record));
    } else {
      all.push_back(ofX[each.index]);
    }
  }
  return all;
}

}  // namespace

KWinWindowLister::KWinWindowLister(std::unique_ptr<WindowLister> x,
                                   std::shared_ptr<NativeWindowIds> ids,
                                   std::function<void(bool)> activeFullScreenChanged)
    : x_(std::move(x)),
      ids_(std::move(ids)),
      queue_(SerialQueue::make("vistrel.native-windows", QualityOfService::standard)) {
  queue_->async([queue = queue_.get(), changed = std::move(activeFullScreenChanged)] {
    queue->attachment() = std::make_shared<NativeLister>(*queue, changed);
  });
}

void KWinWindowLister::request(DesktopWindows desktopWindows, ListedWindows listedWindows,
                               ShareableContentCompletion completion) {
  auto merge = [queue = queue_, ids = ids_, desktopWindows, listedWindows,
                completion](const std::shared_ptr<const ShareableContent>& ofX) {
    auto content = std::make_shared<ShareableContent>();
    content->windows = allWindows(ofX->windows, listerOf(*queue), *ids);
    std::erase_if(content->windows, [&](const WindowRecord& each) {
      return (listedWindows == ListedWindows::onScreen && !each->isOnScreen) ||
             (desktopWindows == DesktopWindows::excluded && each->windowLayer == layerDesktop);
    });
    completion(std::move(content), std::nullopt);
  };
  // Whatever both know is to be found, also where it is left out in the end.
  x_->request(DesktopWindows::included, ListedWindows::all,
              [queue = queue_, merge = std::move(merge), completion](
                  std::shared_ptr<const ShareableContent> ofX, const std::optional<Error>& error) {
                if (!ofX) return completion(nullptr, error);
                queue->async([merge, ofX = std::move(ofX)] { merge(ofX); });
              });
}

}  // namespace vistrel::platform::linux_desktop
