#include "platform/linux/x11/listing/ShareableContentService.h"

#include <utility>

#include "platform/linux/x11/listing/WindowList.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// What lives with the service's queue.
struct Lister {
  std::unique_ptr<Connection> connection;
  ApplicationNames names;

  /// False when the display refuses.
  bool connect() {
    if (!connection || connection->isLost()) connection = Connection::open();
    return connection != nullptr;
  }
};

Lister& listerOf(SerialQueue& queue) {
  auto& attachment = queue.attachment();
  if (!attachment) attachment = std::make_shared<Lister>();
  return *static_cast<Lister*>(attachment.get());
}

void answer(Lister& lister, const ScreenLayout& layout, DesktopWindows desktopWindows,
            ListedWindows listedWindows, const ShareableContentCompletion& completion) {
  const Error noAnswer{"The display server does not answer."};
  if (!lister.connect()) return completion(nullptr, noAnswer);
  auto content =
      listWindows(*lister.connection, lister.names, layout, desktopWindows, listedWindows);
  if (lister.connection->isLost()) return completion(nullptr, noAnswer);
  completion(std::move(content), std::nullopt);
}

}  // namespace

ShareableContentService::ShareableContentService(std::shared_ptr<const SharedScreenLayout> layout)
    : layout_(std::move(layout)),
      queue_(SerialQueue::make("vistrel.windows", QualityOfService::standard)) {}

void ShareableContentService::request(DesktopWindows desktopWindows, ListedWindows listedWindows,
                                      ShareableContentCompletion completion) {
  queue_->async([queue = queue_, layout = layout_, desktopWindows, listedWindows,
                 completion = std::move(completion)] {
    answer(listerOf(*queue), *layout->get(), desktopWindows, listedWindows, completion);
  });
}

}  // namespace vistrel::platform::linux_desktop
