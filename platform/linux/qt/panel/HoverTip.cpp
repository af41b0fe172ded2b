#include "platform/linux/qt/panel/HoverTip.h"

#include <QApplication>
#include <QStyle>
#include <QToolTip>
#include <utility>

#include "platform/linux/qt/paint/PlainText.h"
#include "platform/linux/qt/panel/SituationText.h"

namespace vistrel::platform::linux_desktop {

HoverTip::HoverTip(std::function<std::string()> furtherLines)
    : furtherLines_(std::move(furtherLines)) {
  rest_.setSingleShot(true);
  rest_.setInterval(QApplication::style()->styleHint(QStyle::SH_ToolTip_WakeUpDelay));
  QObject::connect(&rest_, &QTimer::timeout, &rest_, [this] { show(); });
}

void HoverTip::show() {
  const std::string text = inLines(text_, furtherLines_());
  shown_ = !text.empty();
  if (shown_) QToolTip::showText(position_, withoutMarkup(text));
}

void HoverTip::pointerMoved(QPoint position, const std::string& text) {
  if (text != text_) hide();
  text_ = text;
  position_ = position;
  if (!shown_) rest_.start();
}

void HoverTip::hide() {
  rest_.stop();
  if (shown_) QToolTip::hideText();
  shown_ = false;
  text_.clear();
}

}  // namespace vistrel::platform::linux_desktop
