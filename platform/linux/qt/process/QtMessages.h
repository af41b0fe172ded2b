#pragma once

struct xcb_connection_t;

namespace vistrel::platform::linux_desktop {

/// Keeps the toolkit's own messages off standard error, which carries fatal start errors alone. A
/// message that the toolkit dies of is such an error: its text is written and the process ends with
/// status 1.
void quietenQt();

/// Makes the loss of the toolkit's connection end the program by `endProgramDisplayLost`, in
/// whichever way it is noticed. Qt 6.4.2 and Xlib 1.8.4 call `exit` then, which would run
/// destructors under threads that live.
void watchQtConnection(xcb_connection_t* connection);
/// The connection is about to be closed in good order.
void unwatchQtConnection();

}  // namespace vistrel::platform::linux_desktop
