#include <QAccessible>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/linux/qt/widgets/AlertBox.h"
#include "tests/linux/qt/OffscreenQt.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// What a screen reader finds in the open alert: role and name of each object that shows.
struct ReadObject {
  QAccessible::Role role;
  std::string name;

  friend bool operator==(const ReadObject&, const ReadObject&) = default;
};

void readShown(QAccessibleInterface& object, std::vector<ReadObject>& read) {
  if (object.state().invisible) return;
  read.push_back({object.role(), object.text(QAccessible::Name).toStdString()});
  for (int i = 0; i < object.childCount(); ++i) readShown(*object.child(i), read);
}

void press(QAccessibleInterface& object, const QString& name) {
  auto* actions = object.actionInterface();
  const bool isButton = object.role() == QAccessible::PushButton && actions != nullptr;
  if (isButton && object.text(QAccessible::Name) == name) {
    return actions->doAction(QAccessibleActionInterface::pressAction());
  }
  for (int i = 0; i < object.childCount(); ++i) press(*object.child(i), name);
}

class AlertBox : public ::testing::Test {
 protected:
  void SetUp() override { OffscreenQt::start(); }

  /// Runs the alert and, once it is open, presses that button of it.
  int runAndPress(const QString& button) {
    QTimer::singleShot(0, qApp, [this, button] {
      auto* box = QAccessible::queryAccessibleInterface(QApplication::activeModalWidget());
      readShown(*box, read_);
      press(*box, button);
    });
    return runAlertBox(alert_);
  }

  bool isRead(QAccessible::Role role, const std::string& name) const {
    return std::ranges::count(read_, ReadObject{role, name}) == 1;
  }

  const Alert alert_{.messageText = "Allow <this>",
                     .informativeText = "First line.\n\nSecond & last.",
                     .buttonTitles = {"Relaunch & Go", "Later"}};
  std::vector<ReadObject> read_;
};

TEST_F(AlertBox, IsReadWithItsTextsAndButtons) {
  runAndPress("Later");
  ASSERT_FALSE(read_.empty());
  EXPECT_EQ(read_.front(), (ReadObject{QAccessible::AlertMessage, "Vistrel"}));
  EXPECT_TRUE(isRead(QAccessible::StaticText, "Allow <this>"));
  EXPECT_TRUE(isRead(QAccessible::StaticText, "First line.\n\nSecond & last."));
  EXPECT_TRUE(isRead(QAccessible::PushButton, "Relaunch & Go"));
  EXPECT_TRUE(isRead(QAccessible::PushButton, "Later"));
}

TEST_F(AlertBox, IsAnsweredByAScreenReader) {
  EXPECT_EQ(runAndPress("Relaunch & Go"), alertFirstButtonReturn);
  EXPECT_EQ(runAndPress("Later"), alertFirstButtonReturn + 1);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
