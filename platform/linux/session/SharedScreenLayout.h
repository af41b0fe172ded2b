#pragma once

#include <memory>

#include "platform/Guarded.h"
#include "platform/linux/ScreenLayout.h"

namespace vistrel::platform::linux_desktop {

/// The session's one screen layout. The toolkit's half sets it whenever it has become another one;
/// everybody else takes it from here when they need it. Until it is set a pixel is a point.
class SharedScreenLayout {
 public:
  /// Never null. Any thread.
  std::shared_ptr<const ScreenLayout> get() const { return layout_.load(); }
  /// Main thread.
  void set(ScreenLayout layout);

 private:
  Guarded<std::shared_ptr<const ScreenLayout>> layout_{std::make_shared<const ScreenLayout>()};
};

}  // namespace vistrel::platform::linux_desktop
