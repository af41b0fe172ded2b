#include "platform/linux/qt/process/XlibErrors.h"

#include <X11/Xlib.h>

#include "platform/linux/DisplayLoss.h"

namespace vistrel::platform::linux_desktop {

namespace {

int receiveInputOutputError(::Display* /*display*/) { endProgramDisplayLost(); }

}  // namespace

void endProgramOnXlibError() { XSetIOErrorHandler(receiveInputOutputError); }

}  // namespace vistrel::platform::linux_desktop
