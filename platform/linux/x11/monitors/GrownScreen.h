#pragma once

#include <xcb/randr.h>

#include "platform/linux/x11/server/Connection.h"
#include "platform/linux/x11/server/PixelGeometry.h"

namespace vistrel::platform::linux_desktop {

// The screen that all monitors lie on (RandR 1.2, "screen size"), which has to be larger than the
// monitors that a person sees for others to have room. What it was before is kept with the server,
// so that whoever comes last can put it back: another program of ours, or a later one. To be called
// with the server grabbed.

/// As it is.
PixelSize screenSize(Connection& connection);

/// The largest that the screen can be; empty when it cannot change.
PixelSize largestScreen(Connection& connection);

/// How large an area of the screen is, going by what the screen said of itself before it grew.
PixelSize millimetresOf(Connection& connection, PixelSize pixels);

/// Makes the screen reach so far to the right; it never gets higher, since what docks keep free is
/// counted from its lower edge. Makes `primary` the primary output, unless it is none:
/// openbox 3.6.1 and mutter 43.8 would take a monitor without an output for as good a place for new
/// windows as any other. False when the server refuses.
bool growScreen(Connection& connection, int right, xcb_randr_output_t primary);

/// Puts back what `growScreen` has changed, as far as nobody else has changed it since.
void putScreenBack(Connection& connection);

}  // namespace vistrel::platform::linux_desktop
