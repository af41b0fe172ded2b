#include "platform/linux/OpenSession.h"

#include <memory>

#include "platform/linux/WaylandModule.h"
#include "platform/linux/x11/X11Session.h"

namespace vistrel::platform::linux_desktop {

SessionOrFailure openSession(Instances instances) {
  // X11's fill in all of them: panels are windows of the X server in a Wayland session too.
  const auto openSource = std::make_shared<OpenSource>(openSourceWindow);
  auto opened = openX11Session(instances, [openSource](const auto& mirror, WindowID window) {
    return (*openSource)(mirror, window);
  });
  if (opened.session) joinWaylandSession(*opened.session, *openSource);
  return opened;
}

}  // namespace vistrel::platform::linux_desktop
