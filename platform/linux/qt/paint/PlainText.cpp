#include "platform/linux/qt/paint/PlainText.h"

#include <QTextDocument>

namespace vistrel::platform::linux_desktop {

QString inOneLine(QString text) {
  constexpr QChar wideBlank(0x2003);
  return text.replace(QLatin1Char('\t'), wideBlank).replace(QLatin1Char('\n'), QLatin1Char(' '));
}

QString withoutLineBreaks(const QString& text) {
  const auto breaks = [](QChar c) {
    const bool separates = c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
    return separates || (c.isSpace() && c.category() == QChar::Other_Control);
  };
  QString line;
  line.reserve(text.size());
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (!breaks(text[i])) {
      line += text[i];
    } else if (i == 0 || !breaks(text[i - 1])) {
      line += QLatin1Char(' ');
    }
  }
  return line;
}

QString withoutAccessKeys(QString text) {
  return text.replace(QLatin1Char('_'), QLatin1String("__"));
}

QString withoutAccessKeysForQt(const QString& text) {
  QString plain = withoutAccessKeys(text);
  if (!plain.contains(QLatin1Char('&'))) return plain;
  // The one mark that it makes goes to a character that nobody sees and no key gives.
  constexpr QChar wordJoiner(0x2060);
  return QLatin1Char('&') + QString(wordJoiner) + plain;
}

QString withoutMnemonics(const std::string& text) {
  return QString::fromStdString(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString withoutMarkup(const std::string& text) {
  if (text.empty()) return {};
  return Qt::convertFromPlainText(QString::fromStdString(text));
}

QString readableBeginning(const QString& text) {
  constexpr qsizetype most = 2000;
  if (text.size() <= most) return text;
  const bool endsInHalf = text.at(most - 1).isHighSurrogate();
  constexpr char16_t ellipsis = u'\u2026';
  return text.left(endsInHalf ? most - 1 : most) + QChar(ellipsis);
}

}  // namespace vistrel::platform::linux_desktop
