#include "platform/linux/qt/process/QtMessages.h"

#include <QString>
#include <QtGlobal>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>
#include <xcb/xcb.h>

#include "platform/linux/DisplayLoss.h"
#include "platform/linux/qt/process/XlibErrors.h"

namespace vistrel::platform::linux_desktop {

namespace {

std::atomic<xcb_connection_t*> watched = nullptr;

void endProgramIfDisplayLost() {
  xcb_connection_t* connection = watched;
  if (connection != nullptr && xcb_connection_has_error(connection) != 0) endProgramDisplayLost();
}

/// The toolkit says that its connection broke before it calls `exit`.
void receiveMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  endProgramIfDisplayLost();
  if (type != QtFatalMsg) return;
  std::fprintf(stderr, "vistrel: %s\n", qUtf8Printable(text.simplified()));
  _exit(1);
}

}  // namespace

void quietenQt() { qInstallMessageHandler(receiveMessage); }

void watchQtConnection(xcb_connection_t* connection) {
  watched = connection;
  endProgramOnXlibError();
  static const bool atExit = std::atexit(endProgramIfDisplayLost) == 0;
  static_cast<void>(atExit);
}

void unwatchQtConnection() { watched = nullptr; }

}  // namespace vistrel::platform::linux_desktop
