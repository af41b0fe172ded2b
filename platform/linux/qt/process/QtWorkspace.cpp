#include "platform/linux/qt/process/QtWorkspace.h"

#include <QCollator>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QProcess>
#include <QUrl>
#include <utility>

#include "platform/linux/XdgDirectories.h"
#include "platform/linux/qt/process/UrlSchemes.h"

namespace vistrel::platform::linux_desktop {

namespace {

QCollator caseInsensitiveCollator() {
  QCollator collator;
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  return collator;
}

/// Known by the windows of its process.
class WindowedApplication : public RunningApplication {
 public:
  WindowedApplication(WindowActivation& activation, std::int32_t processID)
      : activation_(activation), processID_(processID) {}

  bool activate(ActivationOptions /*options*/) override {
    return activation_.activateWindows(processID_);
  }

 private:
  WindowActivation& activation_;
  const std::int32_t processID_;
};

/// Without what was said about this process's own start (Startup Notification Protocol 0.2,
/// xdg-activation).
QProcessEnvironment environmentOfNewInstance() {
  auto environment = QProcessEnvironment::systemEnvironment();
  environment.remove(QStringLiteral("DESKTOP_STARTUP_ID"));
  environment.remove(QStringLiteral("XDG_ACTIVATION_TOKEN"));
  return environment;
}

}  // namespace

// Later on the system may know the file as a deleted one.
QtWorkspace::QtWorkspace(PeerHost& windows, WindowActivation& activation, ProgramInstance& instance,
                         Unserved unserved)
    : windows_(windows),
      activation_(activation),
      instance_(instance),
      unserved_(std::move(unserved)),
      programPath_(QCoreApplication::applicationFilePath().toStdString()) {}

bool QtWorkspace::openURL(const std::string& url) {
  const auto lists = handlerLists(xdgConfigDirectories(), xdgDataDirectories());
  if (!isSchemeServed(schemeOf(url), lists)) return unserved_(url);
  return QDesktopServices::openUrl(QUrl(QString::fromStdString(url)));
}

bool QtWorkspace::openNewInstance(const std::string& bundlePath) {
  windows_.saveFrames();
  instance_.letOthersStart();
  QProcess instance;
  instance.setProgram(QString::fromStdString(bundlePath));
  instance.setProcessEnvironment(environmentOfNewInstance());
  return instance.startDetached();
}

std::int32_t QtWorkspace::processIdentifier() {
  return static_cast<std::int32_t>(QCoreApplication::applicationPid());
}

std::shared_ptr<RunningApplication> QtWorkspace::runningApplication(std::int32_t processID) {
  if (!activation_.hasWindows(processID)) return nullptr;
  return std::make_shared<WindowedApplication>(activation_, processID);
}

std::optional<std::string> QtWorkspace::bundleInfo(const std::string& key) {
  if (key != "CFBundleShortVersionString") return std::nullopt;
  return VISTREL_VERSION;
}

std::string QtWorkspace::mainBundlePath() { return programPath_; }

ComparisonResult QtWorkspace::localizedCaseInsensitiveCompare(const std::string& a,
                                                              const std::string& b) {
  // One per thread: a collator is reentrant but not made for use by several threads at once.
  thread_local const QCollator collator = caseInsensitiveCollator();
  const int order = collator.compare(QString::fromStdString(a), QString::fromStdString(b));
  if (order == 0) return ComparisonResult::same;
  return order < 0 ? ComparisonResult::ascending : ComparisonResult::descending;
}

}  // namespace vistrel::platform::linux_desktop
