#include "platform/linux/qt/paint/TextLines.h"

#include <QFontMetricsF>
#include <QTextLayout>
#include <algorithm>

#include "platform/linux/qt/paint/Fonts.h"
#include "platform/linux/qt/paint/PlainText.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// A line feed breaks the line in a layout only as a line separator.
QString withLineSeparators(QString text) {
  return text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
}

int mostLines(const TextStyle& style, double height, double lineHeight) {
  const int fitting = std::max(1, static_cast<int>(height / lineHeight));
  return style.maximumNumberOfLines > 0 ? std::min(style.maximumNumberOfLines, fitting) : fitting;
}

QStringList wrappedLines(const QString& text, const QFont& font, double width, int most) {
  const QFontMetricsF metrics(font);
  QTextLayout layout(withLineSeparators(text), font);
  QStringList lines;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    if (lines.size() == most - 1) {
      const QString rest = layout.text().mid(line.textStart()).simplified();
      lines.append(metrics.elidedText(rest, Qt::ElideRight, width));
      break;
    }
    lines.append(layout.text().mid(line.textStart(), line.textLength()).trimmed());
  }
  layout.endLayout();
  return lines;
}

}  // namespace

QStringList linesOf(const QString& text, const TextStyle& style, QSizeF area) {
  const QString beginning = readableBeginning(text);
  const QFont font = qtFont(style.font);
  const QFontMetricsF metrics(font);
  if (style.lineBreakMode == LineBreakMode::wordWrapping) {
    return wrappedLines(beginning, font, area.width(),
                        mostLines(style, area.height(), metrics.height()));
  }
  return {metrics.elidedText(beginning.simplified(), Qt::ElideRight, area.width())};
}

}  // namespace vistrel::platform::linux_desktop
