#include <QLabel>
#include <QListView>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "platform/linux/qt/widgets/WidgetTree.h"
#include "tests/linux/qt/OffscreenQt.h"

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

  /// Where the list is, among nothing but what `notice` makes.
  QRect listWithNotice(const std::string& notice) {
    widgets_ = std::make_unique<WidgetTree>(*parent_, notice);
    widgets_->rebuild(*content_);
    return parent_->findChild<QListView*>()->geometry();
  }
  const QLabel* label() const { return parent_->findChild<QLabel*>(); }

  std::unique_ptr<QWidget> parent_;
  const std::shared_ptr<View> content_ = std::make_shared<View>();
  std::unique_ptr<WidgetTree> widgets_;
};

TEST_F(WidgetTreeTest, GivesAListAllOfItsRoomWithoutANotice) {
  EXPECT_EQ(listWithNotice("").height(), 200);
  EXPECT_EQ(label(), nullptr);
}

TEST_F(WidgetTreeTest, PutsANoticeUnderTheListIntoTheListsRoom) {
  const QRect list = listWithNotice(
      "Some words about this display that take more than one line "
      "in a window that is as narrow as this one is here.");
  ASSERT_NE(label(), nullptr);
  const QRect notice = label()->geometry();
  EXPECT_TRUE(label()->isVisibleTo(parent_.get()));
  EXPECT_GT(notice.top(), list.bottom());
  EXPECT_EQ(list.united(notice), QRect(20, 50, 360, 200));
  EXPECT_GT(notice.height(), 2 * label()->fontMetrics().height() - 1) << "all lines have room";
}

TEST_F(WidgetTreeTest, MakesANoticeAnewWithItsTree) {
  listWithNotice("Some words.");
  widgets_->rebuild(*content_);
  int shown = 0;
  for (const QLabel* each : parent_->findChildren<QLabel*>()) shown += each->isHidden() ? 0 : 1;
  EXPECT_EQ(shown, 1);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
