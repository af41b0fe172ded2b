#include <gtest/gtest.h>

#include "platform/Controls.h"
#include "platform/Window.h"
#include "platform/simulated/SimulatedBackend.h"

namespace vistrel::platform {
namespace {

struct Rows : TableViewDataSource, TableViewDelegate {
  int numberOfRows(const TableView&) const override { return static_cast<int>(texts.size()); }

  std::shared_ptr<View> viewForRow(TableView& tableView, const TableColumn& column,
                                   int row) override {
    lastColumn = column.identifier;
    ++asked;
    auto cell = tableView.reusableView("cell");
    if (!cell) {
      ++made;
      cell = std::make_shared<TableCellView>();
      cell->setIdentifier("cell");
      cell->setTextField(std::make_shared<Label>());
    }
    cell->textField()->setStringValue(texts[static_cast<std::size_t>(row)]);
    return cell;
  }

  std::vector<std::string> texts = {"a", "b", "c"};
  std::string lastColumn;
  int asked = 0;
  int made = 0;
};

struct Counter {
  int count = 0;
  void doubleClicked() { ++count; }
};

class TableViewTest : public testing::Test {
 protected:
  TableViewTest() {
    table_->addTableColumn({.identifier = "win", .title = "Window", .width = 420});
    table_->setDataSource(rows_);
    table_->setDelegate(rows_);
  }

  std::string textOf(int row) const {
    const auto cell = std::dynamic_pointer_cast<TableCellView>(table_->cellForRow(row));
    return cell ? cell->textField()->stringValue() : "none";
  }

  std::shared_ptr<Rows> rows_ = std::make_shared<Rows>();
  std::shared_ptr<TableView> table_ = std::make_shared<TableView>();
};

TEST_F(TableViewTest, HasAsManyRowsAsItsDataSourceCounts) {
  EXPECT_EQ(table_->numberOfRows(), 3);
  rows_->texts.emplace_back("d");
  EXPECT_EQ(table_->numberOfRows(), 3);
  table_->reloadData();
  EXPECT_EQ(table_->numberOfRows(), 4);
}

TEST_F(TableViewTest, AsksForACellOnceAndOnlyWhenItIsShown) {
  EXPECT_EQ(rows_->asked, 0);
  EXPECT_EQ(textOf(1), "b");
  EXPECT_EQ(textOf(1), "b");
  EXPECT_EQ(rows_->asked, 1);
  EXPECT_EQ(rows_->lastColumn, "win");
}

TEST_F(TableViewTest, HasNoCellOutsideItsRows) {
  EXPECT_EQ(table_->cellForRow(-1), nullptr);
  EXPECT_EQ(table_->cellForRow(3), nullptr);
}

TEST_F(TableViewTest, OffersCellsForReuseAfterAReload) {
  textOf(0);
  textOf(1);
  textOf(2);
  table_->reloadData();
  EXPECT_EQ(textOf(0), "a");
  EXPECT_EQ(textOf(1), "b");
  EXPECT_EQ(textOf(2), "c");
  EXPECT_EQ(rows_->asked, 6);
  EXPECT_EQ(rows_->made, 3);
}

TEST_F(TableViewTest, OffersNoCellOfAnotherIdentifier) {
  textOf(0);
  table_->reloadData();
  EXPECT_EQ(table_->reusableView("other"), nullptr);
  EXPECT_NE(table_->reusableView("cell"), nullptr);
  EXPECT_EQ(table_->reusableView("cell"), nullptr);
}

TEST_F(TableViewTest, ReloadingOneRowAsksForThatRowAlone) {
  textOf(0);
  textOf(1);
  rows_->texts = {"A", "B", "C"};
  table_->reloadRows({1, 17});
  EXPECT_EQ(textOf(0), "a");
  EXPECT_EQ(textOf(1), "B");
}

TEST_F(TableViewTest, SaysWhichOfItsRowsWereReloadedLast) {
  EXPECT_EQ(table_->reloadedRows(), std::nullopt);
  table_->reloadRows({1, 17});
  EXPECT_EQ(table_->reloadedRows(), std::set<int>{1});
  table_->reloadData();
  EXPECT_EQ(table_->reloadedRows(), std::nullopt);
}

TEST_F(TableViewTest, MakesACellEachTimeForADesktopThatKeepsCellsItself) {
  const auto noneToReuse = [](const std::string&) { return nullptr; };
  const auto first = table_->makeCell(1, noneToReuse);
  EXPECT_NE(table_->makeCell(1, noneToReuse), first);
  EXPECT_EQ(rows_->asked, 2);
  EXPECT_EQ(rows_->made, 2);
  EXPECT_EQ(table_->makeCell(3, noneToReuse), nullptr);
}

TEST_F(TableViewTest, ReusesTheCellsOfADesktopThatKeepsThemItselfOnlyWhileItAsks) {
  const auto kept = std::make_shared<TableCellView>();
  kept->setTextField(std::make_shared<Label>());
  std::string asked;
  const auto reused = table_->makeCell(1, [&](const std::string& identifier) {
    asked = identifier;
    return kept;
  });
  EXPECT_EQ(asked, "cell");
  EXPECT_EQ(reused, kept);
  EXPECT_EQ(kept->textField()->stringValue(), "b");
  EXPECT_EQ(table_->reusableView("cell"), nullptr);
}

TEST_F(TableViewTest, KeepsItsSelectionOverAReloadWhileTheRowIsThere) {
  EXPECT_EQ(table_->selectedRow(), -1);
  table_->personDidSelectRow(1);
  table_->reloadData();
  EXPECT_EQ(table_->selectedRow(), 1);
  rows_->texts = {"a"};
  table_->reloadData();
  EXPECT_EQ(table_->selectedRow(), -1);
}

TEST_F(TableViewTest, HasTheSelectionOfADesktopThatKeepsItWhileItIsInAWindow) {
  simulated::SimulatedBackend desktop;
  desktop.windows().setSelectedRow(2);
  table_->personDidSelectRow(1);
  EXPECT_EQ(table_->selectedRow(), 1);
  const auto window =
      makeOwnedByMain<Window>(rect(0, 0, 100, 100), styleTitled, BackingStore::buffered, false);
  window->contentView()->addSubview(table_);
  EXPECT_EQ(table_->selectedRow(), 2);
}

TEST_F(TableViewTest, SelectsNothingOutsideItsRows) {
  table_->personDidSelectRow(1);
  table_->personDidSelectRow(5);
  EXPECT_EQ(table_->selectedRow(), -1);
}

TEST_F(TableViewTest, SendsItsDoubleAction) {
  const auto counter = std::make_shared<Counter>();
  table_->setDoubleAction(Action("doubleClicked", std::weak_ptr(counter), &Counter::doubleClicked));
  table_->personDidDoubleClick();
  EXPECT_EQ(counter->count, 1);
}

TEST_F(TableViewTest, IsEmptyOnceItsDataSourceIsGone) {
  rows_.reset();
  table_->reloadData();
  EXPECT_EQ(table_->numberOfRows(), 0);
}

}  // namespace
}  // namespace vistrel::platform
