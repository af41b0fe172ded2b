#include "platform/linux/OpenSession.h"

#include "platform/linux/x11/X11Session.h"

namespace vistrel::platform::linux_desktop {

SessionOrFailure openSession(Instances instances) {
  // X11's fill in all of them.
  return openX11Session(instances);
}

}  // namespace vistrel::platform::linux_desktop
