#include "platform/linux/qt/menus/PickEntry.h"

#include <utility>

namespace vistrel::platform::linux_desktop {

std::shared_ptr<PickEntry> PickEntry::make(WindowPicking& picking) {
  return std::shared_ptr<PickEntry>(new PickEntry(picking));
}

PickEntry::PickEntry(WindowPicking& picking) : picking_(picking) { changed_.setSingleShot(true); }

void PickEntry::setCallbacks(Callbacks callbacks) {
  callbacks_ = std::move(callbacks);
  if (!callbacks_.parent) return;
  picking_.setOnChange([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->changed_.start();
  });
}

Action PickEntry::action() {
  return {"chooseAnotherWindow", weak_from_this(), &PickEntry::perform};
}

std::shared_ptr<MenuItem> PickEntry::item() {
  auto item = std::make_shared<MenuItem>(title, action(), "");
  item->setEnabled(isEnabled());
  return item;
}

void PickEntry::follow(const QObject& follower, const std::function<void()>& changed) {
  QObject::connect(&changed_, &QTimer::timeout, &follower, changed);
}

void PickEntry::perform() {
  if (!callbacks_.parent) return;
  picking_.pickInteractively(callbacks_.parent(),
                             [weak = weak_from_this()](const WindowRecord& picked) {
                               const auto self = weak.lock();
                               if (!self || !picked || !self->callbacks_.picked) return;
                               self->callbacks_.picked(picked);
                             });
}

}  // namespace vistrel::platform::linux_desktop
