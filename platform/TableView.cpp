#include <algorithm>
#include <utility>

#include "platform/Controls.h"
#include "platform/Window.h"

namespace vistrel::platform {

void TableView::addTableColumn(TableColumn column) { columns_.push_back(std::move(column)); }

void TableView::setDataSource(std::weak_ptr<TableViewDataSource> dataSource) {
  dataSource_ = std::move(dataSource);
  reloadData();
}

void TableView::setDelegate(std::weak_ptr<TableViewDelegate> delegate) {
  delegate_ = std::move(delegate);
  reloadData();
}

int TableView::numberOfRows() const { return static_cast<int>(cells_.size()); }

void TableView::reloadData() {
  for (auto& cell : cells_) recycle(std::move(cell));
  const auto dataSource = dataSource_.lock();
  const int rows = dataSource ? dataSource->numberOfRows(*this) : 0;
  cells_.assign(static_cast<std::size_t>(rows), nullptr);
  if (selectedRow_ >= rows) selectedRow_ = -1;
  reloadedRows_.reset();
  didChange(ViewChange::rows);
}

void TableView::reloadRows(const std::set<int>& rows) {
  auto& reloaded = reloadedRows_.emplace();
  for (const int row : rows) {
    if (!hasRow(row)) continue;
    recycle(std::move(cells_[static_cast<std::size_t>(row)]));
    reloaded.insert(row);
  }
  didChange(ViewChange::rows);
}

std::shared_ptr<TableCellView> TableView::reusableView(const std::string& identifier) {
  if (findReusableView_) return findReusableView_(identifier);
  const auto found = std::find_if(reusable_.begin(), reusable_.end(), [&](const auto& cell) {
    return cell->identifier() == identifier;
  });
  if (found == reusable_.end()) return nullptr;
  auto cell = std::move(*found);
  reusable_.erase(found);
  return cell;
}

int TableView::selectedRow() const {
  const Window* window = this->window();
  const auto keptByDesktop =
      window != nullptr ? window->peer()->selectedRow(*this) : std::optional<int>();
  return keptByDesktop.value_or(selectedRow_);
}

std::shared_ptr<View> TableView::cellForRow(int row) {
  if (!hasRow(row)) return nullptr;
  auto& cell = cells_[static_cast<std::size_t>(row)];
  if (!cell) cell = askForCell(row);
  return cell;
}

std::shared_ptr<View> TableView::makeCell(int row, FindReusableView findReusableView) {
  if (!hasRow(row)) return nullptr;
  findReusableView_ = std::move(findReusableView);
  auto cell = askForCell(row);
  findReusableView_ = nullptr;
  return cell;
}

void TableView::personDidSelectRow(int row) { selectedRow_ = hasRow(row) ? row : -1; }

void TableView::personDidDoubleClick() { doubleAction_.send(); }

std::shared_ptr<View> TableView::askForCell(int row) {
  const auto delegate = delegate_.lock();
  if (!delegate || columns_.empty()) return nullptr;
  return delegate->viewForRow(*this, columns_.front(), row);
}

bool TableView::hasRow(int row) const { return row >= 0 && row < numberOfRows(); }

void TableView::recycle(std::shared_ptr<View> cell) {
  if (auto reusable = std::dynamic_pointer_cast<TableCellView>(std::move(cell))) {
    reusable_.push_back(std::move(reusable));
  }
}

}  // namespace vistrel::platform
