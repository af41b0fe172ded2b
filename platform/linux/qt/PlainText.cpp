#include "platform/linux/qt/PlainText.h"

#include <QTextDocument>

namespace vistrel::platform::linux_desktop {

QString withoutMnemonics(const std::string& text) {
  return QString::fromStdString(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString withoutMarkup(const std::string& text) {
  if (text.empty()) return {};
  return Qt::convertFromPlainText(QString::fromStdString(text));
}

}  // namespace vistrel::platform::linux_desktop
