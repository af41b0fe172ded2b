#pragma once

#include <QObject>
#include <functional>

namespace vistrel::platform::linux_desktop {

/// Tells the toolkit which of the program's windows has the keyboard by the display server's word,
/// if any. While a menu is open, and for as long as it takes to be sure that the keyboard has left,
/// Qt 6.4.2 goes on with the window that had it before; when the menu closes it would have that
/// one activated again.
void acknowledgeActiveWindow();

/// Calls `then`, unless `context` goes before: at once, or a little later where the keyboard has
/// left the program and the toolkit does not know yet. It closes the menus that are open when it
/// notices.
void onceKeyboardIsKnownToHaveLeft(QObject& context, std::function<void()> then);

}  // namespace vistrel::platform::linux_desktop
