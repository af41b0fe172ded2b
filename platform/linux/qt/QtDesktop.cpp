#include "platform/linux/qt/QtDesktop.h"

#include <QApplication>
#include <QThreadPool>
#include <array>
#include <functional>
#include <optional>
#include <utility>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/SettingsAdvice.h"
#include "platform/linux/qt/Accessibles.h"
#include "platform/linux/qt/QtApplication.h"
#include "platform/linux/qt/QtWindows.h"
#include "platform/linux/qt/paint/ApplicationIcon.h"
#include "platform/linux/qt/process/EndDeadline.h"
#include "platform/linux/qt/process/QtDispatch.h"
#include "platform/linux/qt/process/QtMessages.h"
#include "platform/linux/qt/process/QtWorkspace.h"
#include "platform/linux/qt/process/SessionServices.h"
#include "platform/linux/qt/space/QtConnection.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// Qt 6.4.2 has large areas painted by threads of its pool and waits for them for ever where the
/// system has no more threads by then. One that stays is enough.
void keepPainterThread() {
  auto* const pool = QThreadPool::globalInstance();
  pool->setMaxThreadCount(1);
  pool->setExpiryTimeout(-1);
  pool->start([] {});
}

/// The toolkit under our settings. What a person passes to the program is not for the toolkit; it
/// gets the platform and the window class's instance name instead.
class ConfiguredQt {
 public:
  explicit ConfiguredQt(char* programPath)
      : arguments_{programPath, platform_.data(), xcb_.data(), name_.data(), vistrel_.data()},
        withoutHungServices_(std::in_place, askSessionServices(servicePatience)),
        application_(count_, arguments_.data()) {
    QCoreApplication::setApplicationName(QStringLiteral("Vistrel"));
    QGuiApplication::setDesktopFileName(QStringLiteral(VISTREL_APPLICATION_ID));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setWindowIcon(applicationIcon());
    keepPainterThread();
    installAccessibles();
    if (qtConnection() != nullptr) watchQtConnection(qtConnection());
    withoutHungServices_.reset();
  }
  ConfiguredQt(const ConfiguredQt&) = delete;
  ConfiguredQt& operator=(const ConfiguredQt&) = delete;
  ~ConfiguredQt() { unwatchQtConnection(); }

 private:
  static constexpr double servicePatience = 1;

  std::array<char, 10> platform_ = {"-platform"};
  std::array<char, 4> xcb_ = {"xcb"};
  std::array<char, 6> name_ = {"-name"};
  std::array<char, 8> vistrel_ = {"vistrel"};
  std::array<char*, 6> arguments_;  // the last one null
  int count_ = 5;
  std::optional<QtWithout> withoutHungServices_;
  QApplication application_;
};

class StartedQtDesktop final : public QtDesktop {
 public:
  StartedQtDesktop(char* programPath, const Session& session)
      : sessionFacts_(session.facts),
        qt_(programPath),
        windows_(session),
        workspace_(windows_.host(), *session.windowActivation, *session.instance,
                   [this](const std::string& url) { return advise(url); }),
        application_(windows_.host(), *session.windowActivation, *session.instance,
                     *session.parkedSources, [this] { finish(); }) {}

  ~StartedQtDesktop() override {
    windows_.finish();
    shutDownSerialQueues();
  }

  DispatchBackend& dispatch() override { return dispatch_; }
  WindowBackend& windows() override { return windows_; }
  WorkspaceBackend& workspace() override { return workspace_; }
  Application& application() override { return application_; }

 private:
  /// There is no page of settings to open: says what a person can do instead, and waits until they
  /// have read it.
  bool advise(const std::string& url) {
    const auto advice = settingsAdvice(url, sessionFacts_());
    if (advice) windows_.runModal(*advice);
    return advice.has_value();
  }

  /// The event loop has ended, everything else still stands: first the drawing of panels stops,
  /// then the threads, and last come the blocks that these have left.
  void finish() {
    windows_.finish();
    shutDownSerialQueues();
    dispatch_.finish();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  const std::function<SessionFacts()> sessionFacts_;
  EndDeadline endDeadline_;
  ConfiguredQt qt_;
  QtDispatch dispatch_;
  QtWindows windows_;
  QtWorkspace workspace_;
  QtApplication application_;
};

}  // namespace

std::unique_ptr<QtDesktop> QtDesktop::start(char* programPath, const Session& session) {
  quietenQt();
  return std::make_unique<StartedQtDesktop>(programPath, session);
}

}  // namespace vistrel::platform::linux_desktop
