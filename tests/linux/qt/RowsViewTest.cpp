#include <QAccessible>
#include <QStyleOptionViewItem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/qt/Accessibles.h"
#include "platform/linux/qt/widgets/RowsView.h"
#include "tests/linux/qt/OffscreenQt.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// Rows of these texts.
struct Texts : TableViewDataSource, TableViewDelegate {
  explicit Texts(std::vector<std::string> all) : texts(std::move(all)) {}

  int numberOfRows(const TableView& /*table*/) const override {
    return static_cast<int>(texts.size());
  }
  std::shared_ptr<View> viewForRow(TableView& /*table*/, const TableColumn& /*column*/,
                                   int row) override {
    auto label = std::make_shared<Label>();
    label->setStringValue(texts[static_cast<std::size_t>(row)]);
    auto cell = std::make_shared<TableCellView>();
    cell->setTextField(std::move(label));
    return cell;
  }

  const std::vector<std::string> texts;
};

class RowsViewTest : public ::testing::Test {
 protected:
  RowsViewTest() {
    OffscreenQt::start();
    installAccessibles();
  }

  /// What a row of that text shows, and what a screen reader reads there.
  std::vector<std::string> shownAndRead(const std::string& text) {
    const auto texts = std::make_shared<Texts>(std::vector{text});
    TableView table;
    table.addTableColumn({});
    table.setDataSource(texts);
    table.setDelegate(texts);
    table.reloadData();
    RowsView rows(table, nullptr);
    rows.reload();
    auto* const accessible = QAccessible::queryAccessibleInterface(&rows);
    return {rows.rowAt(0).data().toString().toStdString(),
            accessible->child(0)->text(QAccessible::Name).toStdString()};
  }
};

using Both = std::vector<std::string>;

TEST_F(RowsViewTest, ShowsEveryBlankOfARow) {
  for (const std::string text : {"Notes — ", "  two  between", "no\u00a0break, \u2003wide", ""}) {
    EXPECT_EQ(shownAndRead(text), (Both{text, text}));
  }
}

TEST_F(RowsViewTest, IsOneLineWhateverBreaksTheText) {
  for (const std::string lineBreak : {"\n", "\r\n", "\t", "\v\f", "\u0085", "\u2028", "\u2029"}) {
    EXPECT_EQ(shownAndRead("one" + lineBreak + "two "), (Both{"one two ", "one two "}));
  }
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
