#include "tests/linux/pictures/MirrorInPanel.h"

#include <stdexcept>

namespace vistrel::platform::linux_desktop {

MirrorInPanel::MirrorInPanel(const testbed::PrivateDisplay& display, const Options& options)
    : connection_(display.name()), mirror_(connection_, options.panel) {
  auto configuration = TestMirror::usualConfiguration();
  configuration.minimumFrameInterval = options.interval;
  configuration.showsCursor = options.showsCursor;
  mirror_.start(options.source, configuration);
  if (!testbed::eventually([&] { return mirror_.samples() > 0; })) {
    throw std::runtime_error("the stream hands out nothing; " + mirror_.startFailure());
  }
}

Bitmap MirrorInPanel::shown() {
  mirror_.turn();
  return mirror_.panelPicture();
}

}  // namespace vistrel::platform::linux_desktop
