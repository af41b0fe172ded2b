#include "platform/linux/OpenSession.h"

#include "platform/linux/Environment.h"
#include "platform/linux/x11/X11Session.h"

namespace vistrel::platform::linux_desktop {

SessionOrFailure openSession(Instances instances) {
  // X11's fill in all of them.
  auto opened = openX11Session(instances);
  if (opened.session) {
    opened.session->mayHaveForeignWindows = !environmentVariable("WAYLAND_DISPLAY").empty();
  }
  return opened;
}

}  // namespace vistrel::platform::linux_desktop
