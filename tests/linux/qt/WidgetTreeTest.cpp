#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/qt/widgets/WidgetTree.h"
#include "platform/simulated/SimulatedBackend.h"
#include "tests/linux/qt/OffscreenQt.h"
#include "tests/linux/qt/TestPicking.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// A list in a window, realised.
class WidgetTreeTest : public ::testing::Test {
 protected:
  WidgetTreeTest() {
    OffscreenQt::start();
    parent_ = std::make_unique<QWidget>();
    parent_->resize(400, 300);
    content_->setFrame(rect(0, 0, 400, 300));
    const auto list = std::make_shared<ScrollView>();
    list->setDocumentView(std::make_shared<TableView>());
    list->setFrame(rect(20, 50, 360, 200));
    content_->addSubview(list);
  }

  /// Where the list is, among nothing but what `notice` and `entry` make.
  QRect listWith(const std::string& notice, const std::shared_ptr<PickEntry>& entry = nullptr) {
    widgets_ = std::make_unique<WidgetTree>(*parent_, notice, entry);
    widgets_->rebuild(*content_);
    return list()->geometry();
  }
  QListView* list() const { return parent_->findChild<QListView*>(); }
  const QLabel* label() const { return parent_->findChild<QLabel*>(); }
  QPushButton* button() const { return parent_->findChild<QPushButton*>(); }
  std::vector<std::string> shownLabels() const {
    std::vector<std::string> texts;
    for (const QLabel* each : parent_->findChildren<QLabel*>()) {
      if (!each->isHidden()) texts.push_back(each->text().toStdString());
    }
    return texts;
  }

  static constexpr QRect room{20, 50, 360, 200};

  simulated::SimulatedBackend desktop_;
  std::unique_ptr<QWidget> parent_;
  const std::shared_ptr<View> content_ = std::make_shared<View>();
  std::unique_ptr<WidgetTree> widgets_;
};

TEST_F(WidgetTreeTest, GivesAListAllOfItsRoomWithoutANotice) {
  EXPECT_EQ(listWith("").height(), 200);
  EXPECT_EQ(label(), nullptr);
  EXPECT_EQ(button(), nullptr);
}

TEST_F(WidgetTreeTest, PutsANoticeUnderTheListIntoTheListsRoom) {
  const QRect list = listWith(
      "Some words about this display that take more than one line "
      "in a window that is as narrow as this one is here.");
  ASSERT_NE(label(), nullptr);
  const QRect notice = label()->geometry();
  EXPECT_TRUE(label()->isVisibleTo(parent_.get()));
  EXPECT_GT(notice.top(), list.bottom());
  EXPECT_EQ(list.united(notice), room);
  EXPECT_GT(notice.height(), 2 * label()->fontMetrics().height() - 1) << "all lines have room";
}

TEST_F(WidgetTreeTest, MakesANoticeAnewWithItsTree) {
  listWith("Some words.");
  widgets_->rebuild(*content_);
  EXPECT_THAT(shownLabels(), testing::ElementsAre("Some words."));
}

/// The same in a session where windows are picked in the desktop's dialog.
class PickingWidgetTreeTest : public WidgetTreeTest {
 protected:
  PickingWidgetTreeTest() {
    entry_->setCallbacks({.parent = [] { return 0U; }, .picked = [](const WindowRecord&) {}});
  }

  TestPicking picking_;
  const std::shared_ptr<PickEntry> entry_ = PickEntry::make(picking_);
};

TEST_F(PickingWidgetTreeTest, PutsTheEntryUnderTheListAtItsLeft) {
  const QRect list = listWith("", entry_);
  ASSERT_NE(button(), nullptr);
  const QRect entry = button()->geometry();
  EXPECT_FALSE(button()->isHidden());
  EXPECT_TRUE(button()->isEnabled());
  EXPECT_EQ(button()->text().toStdString(), PickEntry::title);
  EXPECT_EQ(entry.bottomLeft(), room.bottomLeft());
  EXPECT_LT(entry.width(), room.width());
  EXPECT_GT(entry.top(), list.bottom());
  EXPECT_EQ(list.united(entry), room) << "nothing to tell takes no room";
  EXPECT_THAT(shownLabels(), testing::IsEmpty());
}

TEST_F(PickingWidgetTreeTest, FollowsTheEntryAndWhatIsToldOfIt) {
  const QRect before = listWith("", entry_);
  const std::string status = "The service that shows the dialog does not answer.";
  picking_.become(false, status);
  widgets_->dress();
  widgets_->place();
  EXPECT_FALSE(button()->isEnabled());
  EXPECT_EQ(button()->accessibleDescription().toStdString(), status);
  EXPECT_THAT(shownLabels(), testing::ElementsAre(status));
  EXPECT_GT(label()->geometry().top(), button()->geometry().bottom());
  EXPECT_EQ(label()->geometry().bottomRight(), room.bottomRight());
  EXPECT_LT(list()->geometry().height(), before.height());

  picking_.become(true, "");
  widgets_->dress();
  widgets_->place();
  EXPECT_TRUE(button()->isEnabled());
  EXPECT_EQ(button()->accessibleDescription(), "");
  EXPECT_EQ(list()->geometry(), before);
}

TEST_F(PickingWidgetTreeTest, HasANoticeBelowTheEntry) {
  picking_.become(true, "Told.");
  listWith("Noticed.", entry_);
  EXPECT_THAT(shownLabels(), testing::ElementsAre("Told.", "Noticed."));
  const auto labels = parent_->findChildren<QLabel*>();
  EXPECT_GT(labels.at(0)->geometry().top(), button()->geometry().bottom());
  EXPECT_GT(labels.at(1)->geometry().top(), labels.at(0)->geometry().bottom());
  EXPECT_EQ(labels.at(1)->geometry().bottom(), room.bottom());
}

TEST_F(PickingWidgetTreeTest, OpensTheDialogWhenTheEntryIsPressed) {
  listWith("", entry_);
  button()->click();
  EXPECT_EQ(picking_.parents().size(), 1U);
}

TEST_F(PickingWidgetTreeTest, LeadsFromTheListToTheEntryByTab) {
  content_->addSubview(std::make_shared<Button>("Another"));
  listWith("Some words.", entry_);
  const QWidget* next = list()->nextInFocusChain();
  while ((next->focusPolicy() & Qt::TabFocus) == 0) next = next->nextInFocusChain();
  EXPECT_EQ(next, button());
  EXPECT_EQ(button()->text().toStdString(), PickEntry::title);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
