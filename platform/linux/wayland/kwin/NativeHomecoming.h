#pragma once

#include <optional>
#include <string>

#include "platform/Geometry.h"
#include "platform/linux/wayland/kwin/KWinScripts.h"
#include "platform/linux/wayland/kwin/ParkedRecord.h"

namespace vistrel::platform::linux_desktop {

/// A script that puts a window's frame without what KWin puts around it at `position`, in logical
/// pixels, and tells when it is there; nothing for a window that has gone. One that is not where it
/// was `parked` is left alone, if it was.
std::string scriptThatMoves(const std::string& uuid, Point position,
                            std::optional<Point> parked = std::nullopt);

/// Brings home what a program has left parked that has ended in whatever way, unless somebody has
/// moved it since. The record stays where KWin does not answer until the monotonic clock reaches
/// `deadline`.
void bringLeftHome(ParkedRecord& record, KWinScripts& scripts, double deadline);

}  // namespace vistrel::platform::linux_desktop
