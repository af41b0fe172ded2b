#include <QApplication>
#include <QFontInfo>
#include <QKeyEvent>
#include <QScreen>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/linux/qt/menus/ShownMenu.h"
#include "platform/linux/qt/paint/Legibility.h"
#include "platform/simulated/SimulatedBackend.h"
#include "tests/linux/qt/OffscreenQt.h"

namespace vistrel::platform::linux_desktop {
namespace {

using testing::ElementsAre;

struct Chooser {
  std::vector<std::string> chosen;
  void choose(const MenuItem& sender) { chosen.push_back(sender.title()); }
};

/// Fills the menu with what the test says.
struct Filler : MenuDelegate {
  std::vector<std::string> titles;
  int updates = 0;
  void menuNeedsUpdate(Menu& menu) override {
    ++updates;
    fill(menu);
  }
  void fill(Menu& menu) const {
    menu.removeAllItems();
    for (const std::string& title : titles) {
      menu.addItem(std::make_shared<MenuItem>(title, Action(), ""));
    }
  }
};

class ShownMenuTest : public testing::Test {
 protected:
  ShownMenuTest() { OffscreenQt::start(); }

  std::shared_ptr<MenuItem> add(const std::string& title, const std::string& key = "") {
    auto item = std::make_shared<MenuItem>(
        title, Action("choose:", std::weak_ptr(chooser_), &Chooser::choose), key);
    menu_->addItem(item);
    return item;
  }
  static std::vector<std::string> texts(const QMenu& shown) {
    std::vector<std::string> texts;
    for (const QAction* line : shown.actions()) {
      texts.push_back(line->isSeparator() ? "--" : line->text().toStdString());
    }
    return texts;
  }
  static void turnEventLoop() {
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
  }

  simulated::SimulatedBackend desktop_;
  const std::shared_ptr<Menu> menu_ = std::make_shared<Menu>("Menu");
  const std::shared_ptr<Chooser> chooser_ = std::make_shared<Chooser>();
  const std::shared_ptr<Filler> filler_ = std::make_shared<Filler>();
};

TEST_F(ShownMenuTest, IsWrittenInTheDesktopsFontButNoLargerThanOurOtherTexts) {
  const QFont former = QApplication::font("QMenu");
  const auto sizeWhereTheDesktopsIs = [this](int pixels) {
    QFont font = QApplication::font();
    font.setPixelSize(pixels);
    QApplication::setFont(font, "QMenu");
    return QFontInfo(ShownMenu(menu_).font()).pixelSize();
  };
  EXPECT_EQ(sizeWhereTheDesktopsIs(11), 11);
  EXPECT_EQ(sizeWhereTheDesktopsIs(24), 13);
  QApplication::setFont(former, "QMenu");
}

TEST_F(ShownMenuTest, ShowsEachItemAsOneLine) {
  add("Plain", "n");
  add("Marked")->setState(MenuItemState::on);
  menu_->addItem(MenuItem::separatorItem());
  add("Header")->setEnabled(false);
  const ShownMenu shown(menu_);
  EXPECT_THAT(texts(shown), ElementsAre("Plain", "Marked", "--", "Header"));
  const auto lines = shown.actions();
  EXPECT_EQ(lines[0]->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_N));
  EXPECT_FALSE(lines[0]->isCheckable());
  EXPECT_TRUE(lines[1]->isChecked());
  EXPECT_FALSE(lines[3]->isEnabled());
}

TEST_F(ShownMenuTest, ShowsTitlesAsTheyAre) {
  add("Save & &Close");
  add("a_b\tc\nd");
  add("שלום 🙂");
  const ShownMenu shown(menu_);
  EXPECT_THAT(texts(shown), ElementsAre("Save && &&Close", "a_b\u2003c d", "שלום 🙂"));
}

// The toolkit makes "_" of the first "&" there, and desktops take "_" for the mark of an access
// key.
TEST_F(ShownMenuTest, HasNoAccessKeysInADesktopsBarEither) {
  add("Save & &Close");
  add("a_b");
  const ShownMenu shown(menu_, nullptr, ShownMenu::Shower::desktopsBar);
  EXPECT_THAT(texts(shown), ElementsAre("&\u2060Save & &Close", "a__b"));
}

TEST_F(ShownMenuTest, LooksTheSameInTheWindowWhereADesktopsBarShowsItToo) {
  add("Save & &Close a_b");
  const auto look = [this](ShownMenu::Shower shower) {
    ShownMenu shown(menu_, nullptr, shower);
    return shown.grab().toImage();
  };
  EXPECT_EQ(look(ShownMenu::Shower::desktopsBar), look(ShownMenu::Shower::program));
}

TEST_F(ShownMenuTest, CutsTitlesThatWouldNotFitAScreen) {
  add(std::string(10'000, 'W'));
  const ShownMenu shown(menu_);
  EXPECT_TRUE(texts(shown).front().ends_with("…"));
  EXPECT_LT(shown.sizeHint().width(), 700);
}

TEST_F(ShownMenuTest, ItsHeadersCanBeRead) {
  add("Header")->setEnabled(false);
  ShownMenu shown(menu_);
  shown.popup({10, 10});
  const QPalette& colours = shown.palette();
  EXPECT_GE(
      contrast(colours.color(QPalette::Disabled, QPalette::Text), colours.color(QPalette::Base)),
      4.5);
}

TEST_F(ShownMenuTest, SendsTheActionAtALaterTurn) {
  add("One");
  const ShownMenu shown(menu_);
  shown.actions().front()->trigger();
  EXPECT_TRUE(chooser_->chosen.empty()) << "the menu is still being taken off the screen";
  desktop_.turnMainQueue();
  EXPECT_THAT(chooser_->chosen, ElementsAre("One"));
}

TEST_F(ShownMenuTest, SendsTheActionAlsoOnceItIsGone) {
  add("One");
  auto shown = std::make_unique<ShownMenu>(menu_);
  shown->actions().front()->trigger();
  shown.reset();
  menu_->removeAllItems();
  desktop_.turnMainQueue();
  EXPECT_THAT(chooser_->chosen, ElementsAre("One"));
}

TEST_F(ShownMenuTest, HasItsDelegateFillItEachTimeItOpens) {
  menu_->setDelegate(filler_);
  ShownMenu shown(menu_);
  EXPECT_EQ(filler_->updates, 0);
  filler_->titles = {"a"};
  shown.popup({10, 10});
  EXPECT_THAT(texts(shown), ElementsAre("a"));
  shown.hide();
  filler_->titles = {"b", "c"};
  shown.popup({10, 10});
  EXPECT_THAT(texts(shown), ElementsAre("b", "c"));
  EXPECT_EQ(filler_->updates, 2);
}

TEST_F(ShownMenuTest, IsRefilledInPlaceWhileItIsOpen) {
  menu_->setDelegate(filler_);
  filler_->titles = {"a", "b", "d"};
  ShownMenu shown(menu_);
  shown.popup({10, 10});
  const QAction* const first = shown.actions().front();
  const int height = shown.height();
  shown.setActiveAction(shown.actions()[2]);
  filler_->titles = {"a", "b", "c", "d", "e"};
  filler_->fill(*menu_);
  turnEventLoop();
  EXPECT_THAT(texts(shown), ElementsAre("a", "b", "c", "d", "e"));
  EXPECT_EQ(shown.actions().front(), first) << "what stays is left alone";
  EXPECT_EQ(shown.activeAction(), shown.actions()[3]) << "what was pointed at still is";
  EXPECT_GT(shown.height(), height);
  EXPECT_TRUE(shown.isVisible());
}

TEST_F(ShownMenuTest, StaysOnTheScreenWhenItGrows) {
  menu_->setDelegate(filler_);
  filler_->titles = {"a"};
  ShownMenu shown(menu_);
  const QRect available = shown.screen()->availableGeometry();
  shown.popup(available.bottomLeft() - QPoint(0, 60));
  filler_->titles = {"a", "b", "c", "d", "e", "f", "g", "h"};
  filler_->fill(*menu_);
  turnEventLoop();
  EXPECT_TRUE(available.contains(shown.frameGeometry()));
}

/// Goes down an open menu by keys and notes the lines that are not whole where they are reached.
class Descent {
 public:
  explicit Descent(ShownMenu& shown) : shown_(shown) {}

  std::vector<std::string> unreached() {
    std::vector<std::string> unreached;
    for (QAction* const line : shown_.actions()) {
      press(Qt::Key_Down);
      const bool isWhole = shown_.rect().contains(shown_.actionGeometry(line));
      if (shown_.activeAction() != line || !isWhole) {
        unreached.push_back(line->text().toStdString());
      }
    }
    return unreached;
  }

 private:
  void press(Qt::Key key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&shown_, &event);
  }

  ShownMenu& shown_;
};

std::vector<std::string> manyTitles(int count) {
  std::vector<std::string> titles;
  for (int i = 0; i < count; ++i) titles.push_back("Window " + std::to_string(i));
  return titles;
}

TEST_F(ShownMenuTest, EveryLineOfALongOneIsReachedByScrolling) {
  menu_->setDelegate(filler_);
  filler_->titles = manyTitles(2000);
  ShownMenu shown(menu_);
  shown.popup({10, 10});
  EXPECT_TRUE(shown.screen()->availableGeometry().contains(shown.frameGeometry()));
  EXPECT_THAT(Descent(shown).unreached(), testing::IsEmpty());
}

TEST_F(ShownMenuTest, OneThatGrowsLongWhileItIsOpenScrollsTooAndNoMoreWhenItIsShort) {
  menu_->setDelegate(filler_);
  filler_->titles = {"Looking for windows…"};
  ShownMenu shown(menu_);
  shown.popup({10, 10});
  const int height = shown.height();
  filler_->titles = manyTitles(2000);
  filler_->fill(*menu_);
  turnEventLoop();
  EXPECT_LE(shown.height(), shown.screen()->availableGeometry().height());
  EXPECT_THAT(Descent(shown).unreached(), testing::IsEmpty());
  EXPECT_EQ(filler_->updates, 1);

  filler_->titles = {"One"};
  filler_->fill(*menu_);
  turnEventLoop();
  EXPECT_EQ(shown.height(), height);
  EXPECT_TRUE(shown.rect().contains(shown.actionGeometry(shown.actions().front())));
}

TEST_F(ShownMenuTest, ALongOneShowsWhatIsPointedAtAlsoWhenItIsFilledAnew) {
  menu_->setDelegate(filler_);
  filler_->titles = manyTitles(2000);
  ShownMenu shown(menu_);
  shown.popup({10, 10});
  shown.setActiveAction(shown.actions()[1000]);
  filler_->titles.insert(filler_->titles.begin(), "Another");
  filler_->fill(*menu_);
  turnEventLoop();
  EXPECT_EQ(shown.activeAction(), shown.actions()[1001]);
  EXPECT_TRUE(shown.rect().contains(shown.actionGeometry(shown.activeAction())));
}

TEST_F(ShownMenuTest, ALineThatStaysStandsForTheNewItem) {
  add("One");
  ShownMenu shown(menu_);
  shown.popup({10, 10});
  menu_->removeAllItems();
  const auto replacement = add("One");
  replacement->setState(MenuItemState::on);
  turnEventLoop();
  EXPECT_TRUE(shown.actions().front()->isChecked());
  replacement->setEnabled(false);
  shown.actions().front()->trigger();
  desktop_.turnMainQueue();
  EXPECT_TRUE(chooser_->chosen.empty()) << "the former item was chosen";
}

TEST_F(ShownMenuTest, ShowsSubmenus) {
  const auto submenu = std::make_shared<Menu>("Scale");
  submenu->addItem(std::make_shared<MenuItem>("25%", Action(), ""));
  add("Scale")->setSubmenu(submenu);
  const ShownMenu shown(menu_);
  ASSERT_NE(shown.actions().front()->menu(), nullptr);
  EXPECT_THAT(texts(*shown.actions().front()->menu()), ElementsAre("25%"));
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
