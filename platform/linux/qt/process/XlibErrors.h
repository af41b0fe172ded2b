#pragma once

namespace vistrel::platform::linux_desktop {

/// Makes Xlib, of which the toolkit uses a little, end the program by `endProgramDisplayLost` when
/// its connection breaks, instead of writing lines of its own. In a file of its own since Xlib's
/// header defines macros that others do not bear.
void endProgramOnXlibError();

}  // namespace vistrel::platform::linux_desktop
