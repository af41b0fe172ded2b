#pragma once

#include <QIcon>

namespace vistrel::platform::linux_desktop {

/// The program's own icon in all the sizes that it is drawn in.
QIcon applicationIcon();

}  // namespace vistrel::platform::linux_desktop
