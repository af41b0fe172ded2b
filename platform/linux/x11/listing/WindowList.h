#pragma once

#include <memory>

#include "platform/ScreenCapture.h"
#include "platform/linux/ApplicationNames.h"
#include "platform/linux/ScreenLayout.h"
#include "platform/linux/x11/server/Connection.h"

namespace vistrel::platform::linux_desktop {

/// The windows of applications as they are now, topmost first. Windows that go meanwhile are left
/// out. `windowID` is the client's own window, whatever frame a manager put around it.
/// Frames are in points by `layout`.
std::shared_ptr<const ShareableContent> listWindows(Connection& connection, ApplicationNames& names,
                                                    const ScreenLayout& layout,
                                                    DesktopWindows desktopWindows,
                                                    ListedWindows listedWindows);

}  // namespace vistrel::platform::linux_desktop
