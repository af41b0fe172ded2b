#include "platform/linux/qt/panel/HoverTip.h"

#include <QApplication>
#include <QStyle>
#include <QToolTip>

#include "platform/linux/qt/paint/PlainText.h"

namespace vistrel::platform::linux_desktop {

HoverTip::HoverTip() {
  rest_.setSingleShot(true);
  rest_.setInterval(QApplication::style()->styleHint(QStyle::SH_ToolTip_WakeUpDelay));
  QObject::connect(&rest_, &QTimer::timeout, &rest_, [this] {
    shown_ = true;
    QToolTip::showText(position_, withoutMarkup(text_));
  });
}

void HoverTip::pointerMoved(QPoint position, const std::string& text) {
  if (text != text_) hide();
  text_ = text;
  position_ = position;
  if (!text_.empty() && !shown_) rest_.start();
}

void HoverTip::hide() {
  rest_.stop();
  if (shown_) QToolTip::hideText();
  shown_ = false;
  text_.clear();
}

}  // namespace vistrel::platform::linux_desktop
