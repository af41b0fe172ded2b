#include "platform/linux/OpenSession.h"

#include "platform/linux/WaylandModule.h"
#include "platform/linux/x11/X11Session.h"

namespace vistrel::platform::linux_desktop {

SessionOrFailure openSession(Instances instances) {
  // X11's fill in all of them: panels are windows of the X server in a Wayland session too.
  auto opened = openX11Session(instances);
  if (opened.session) joinWaylandSession(*opened.session);
  return opened;
}

}  // namespace vistrel::platform::linux_desktop
