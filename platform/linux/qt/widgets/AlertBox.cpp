#include "platform/linux/qt/widgets/AlertBox.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <cassert>
#include <vector>

#include "platform/linux/CurrentThread.h"
#include "platform/linux/qt/paint/ApplicationIcon.h"
#include "platform/linux/qt/paint/PlainText.h"

namespace vistrel::platform::linux_desktop {

namespace {

constexpr int iconSize = 48;
constexpr int textWidth = 360;

/// The first accepts and the last rejects, so that the desktop's style puts them where its people
/// look for them.
QMessageBox::ButtonRole roleOf(std::size_t index, std::size_t count) {
  if (index == 0) return QMessageBox::AcceptRole;
  return index + 1 == count ? QMessageBox::RejectRole : QMessageBox::ActionRole;
}

std::vector<QPushButton*> addButtons(const Alert& alert, QMessageBox& box) {
  std::vector<QPushButton*> buttons;
  const std::size_t count = alert.buttonTitles.size();
  for (std::size_t i = 0; i < count; ++i) {
    buttons.push_back(box.addButton(withoutMnemonics(alert.buttonTitles[i]), roleOf(i, count)));
  }
  return buttons;
}

void setTexts(const Alert& alert, QMessageBox& box) {
  box.setWindowTitle(QStringLiteral("Vistrel"));
  box.setIconPixmap(applicationIcon().pixmap(iconSize));
  // Qt 6.4.2 sets both texts in one weight; the message is what a person reads first.
  box.setTextFormat(Qt::RichText);
  box.setText(QStringLiteral("<b>") + QString::fromStdString(alert.messageText).toHtmlEscaped() +
              QStringLiteral("</b>"));
  box.setInformativeText(QString::fromStdString(alert.informativeText));
  // Qt 6.4.2 would break it to the width of the message.
  if (auto* informative = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))) {
    informative->setTextFormat(Qt::PlainText);
    informative->setFixedWidth(textWidth);
  }
}

}  // namespace

int runAlertBox(const Alert& alert) {
  assert(isMainThread());
  QMessageBox box(QApplication::activeWindow());
  setTexts(alert, box);
  const auto buttons = addButtons(alert, box);
  if (!buttons.empty()) {
    box.setDefaultButton(buttons.front());
    box.setEscapeButton(buttons.back());
  }
  box.exec();
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    if (box.clickedButton() == buttons[i]) return alertFirstButtonReturn + static_cast<int>(i);
  }
  return answerOfClosing(alert);
}

int answerOfClosing(const Alert& alert) {
  const auto count = static_cast<int>(alert.buttonTitles.size());
  return alertFirstButtonReturn + (count > 0 ? count - 1 : 0);
}

}  // namespace vistrel::platform::linux_desktop
