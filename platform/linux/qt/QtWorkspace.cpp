#include "platform/linux/qt/QtWorkspace.h"

#include <QCollator>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <filesystem>
#include <vector>

#include "platform/linux/qt/UrlSchemes.h"

namespace vistrel::platform::linux_desktop {

namespace {

std::vector<std::filesystem::path> directories(QStandardPaths::StandardLocation location) {
  std::vector<std::filesystem::path> paths;
  for (const QString& path : QStandardPaths::standardLocations(location)) {
    paths.emplace_back(path.toStdString());
  }
  return paths;
}

QCollator caseInsensitiveCollator() {
  QCollator collator;
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  return collator;
}

}  // namespace

bool QtWorkspace::openURL(const std::string& url) {
  const auto lists = handlerLists(directories(QStandardPaths::GenericConfigLocation),
                                  directories(QStandardPaths::GenericDataLocation));
  if (!isSchemeServed(schemeOf(url), lists)) return false;
  return QDesktopServices::openUrl(QUrl(QString::fromStdString(url)));
}

bool QtWorkspace::openNewInstance(const std::string& bundlePath) {
  return QProcess::startDetached(QString::fromStdString(bundlePath), {});
}

std::int32_t QtWorkspace::processIdentifier() {
  return static_cast<std::int32_t>(QCoreApplication::applicationPid());
}

std::string QtWorkspace::mainBundlePath() {
  return QCoreApplication::applicationFilePath().toStdString();
}

ComparisonResult QtWorkspace::localizedCaseInsensitiveCompare(const std::string& a,
                                                              const std::string& b) {
  // One per thread: a collator is reentrant but not made for use by several threads at once.
  thread_local const QCollator collator = caseInsensitiveCollator();
  const int order = collator.compare(QString::fromStdString(a), QString::fromStdString(b));
  if (order == 0) return ComparisonResult::same;
  return order < 0 ? ComparisonResult::ascending : ComparisonResult::descending;
}

}  // namespace vistrel::platform::linux_desktop
