#include "platform/linux/wayland/compositor/NativeWindowIds.h"

#include <algorithm>

namespace vistrel::platform::linux_desktop {

WindowID NativeWindowIds::idOf(const std::string& uuid) {
  const std::lock_guard lock(mutex_);
  const auto [found, isNew] = ids_.try_emplace(uuid, next_);
  if (isNew) ++next_;
  return found->second;
}

std::string NativeWindowIds::uuidOf(WindowID id) const {
  const std::lock_guard lock(mutex_);
  const auto found =
      std::find_if(ids_.begin(), ids_.end(), [id](const auto& each) { return each.second == id; });
  return found == ids_.end() ? std::string() : found->first;
}

std::optional<WindowID> NativeWindowIds::knownIdOf(const std::string& uuid) const {
  const std::lock_guard lock(mutex_);
  const auto found = ids_.find(uuid);
  if (found == ids_.end()) return std::nullopt;
  return found->second;
}

void NativeWindowIds::keepOnly(const std::set<std::string>& uuids) {
  const std::lock_guard lock(mutex_);
  std::erase_if(ids_, [&](const auto& each) { return !uuids.contains(each.first); });
}

}  // namespace vistrel::platform::linux_desktop
