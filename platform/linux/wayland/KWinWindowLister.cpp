#include "platform/linux/wayland/KWinWindowLister.h"

#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "platform/linux/ApplicationNames.h"
#include "platform/linux/WindowLayer.h"
#include "platform/linux/wayland/KWinWindows.h"
#include "platform/linux/wayland/MergedWindows.h"
#include "platform/linux/wayland/WaylandConnection.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// What lives with the lister's queue.
class NativeLister {
 public:
  explicit NativeLister(SerialQueue& queue) : queue_(queue) {}

  /// Topmost first; none where KWin tells nothing.
  std::optional<std::vector<KWinWindow>> list() {
    if (!connect()) return std::nullopt;
    auto windows = windows_->list();
    if (connection_->isLost()) return std::nullopt;
    return windows;
  }

  WindowRecord recordOf(const KWinWindow& window) {
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
  ApplicationNames names_;
};

NativeLister& listerOf(SerialQueue& queue) {
  auto& attachment = queue.attachment();
  if (!attachment) attachment = std::make_shared<NativeLister>(queue);
  return *static_cast<NativeLister*>(attachment.get());
}

void keepIdsOf(const std::vector<KWinWindow>& windows, NativeWindowIds& ids) {
  std::set<std::string> uuids;
  for (const auto& each : windows) uuids.insert(each.uuid);
  ids.keepOnly(uuids);
}

WindowRecord withId(const ShareableWindow& record, WindowID id) {
  auto numbered = std::make_shared<ShareableWindow>(record);
  numbered->windowID = id;
  return numbered;
}

std::vector<WindowRecord> allWindows(const std::vector<WindowRecord>& ofX, NativeLister& lister,
                                     NativeWindowIds& ids) {
  const auto windows = lister.list();
  if (!windows) return ofX;
  keepIdsOf(*windows, ids);
  lister.refreshNames();
  std::vector<WindowRecord> ofKWin;
  for (const auto& each : *windows) ofKWin.push_back(lister.recordOf(each));
  std::vector<WindowRecord> all;
  for (const auto& [from, index] : mergeWindows(ofX, ofKWin)) {
    all.push_back(from == MergedWindow::From::x
                      ? ofX[index]
                      : withId(*ofKWin[index], ids.idOf((*windows)[index].uuid)));
  }
  return all;
}

}  // namespace

KWinWindowLister::KWinWindowLister(std::unique_ptr<WindowLister> x,
                                   std::shared_ptr<NativeWindowIds> ids)
    : x_(std::move(x)),
      ids_(std::move(ids)),
      queue_(SerialQueue::make("vistrel.native-windows", QualityOfService::standard)) {}

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
