#pragma once

namespace vistrel::platform::linux_desktop {

/// Tells the toolkit which of the program's windows has the keyboard by the display server's word,
/// if any. While a menu is open, and for as long as it takes to be sure that the keyboard has left,
/// the toolkit goes on with the window that had it before; when the menu closes it would have that
/// one activated again.
void acknowledgeActiveWindow();

}  // namespace vistrel::platform::linux_desktop
