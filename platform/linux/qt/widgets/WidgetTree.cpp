#include "platform/linux/qt/widgets/WidgetTree.h"

#include <QLabel>
#include <QPushButton>
#include <cmath>
#include <utility>

#include "platform/linux/qt/paint/Colors.h"
#include "platform/linux/qt/paint/Fonts.h"
#include "platform/linux/qt/paint/PlainText.h"
#include "platform/linux/qt/widgets/RowsView.h"

namespace vistrel::platform::linux_desktop {

namespace {

constexpr double noticePointSize = 11;
/// Between the table and what stands under it, and from one of these to the next.
constexpr int gapUnderTable = 6;

QRect wholePoints(const Rect& rect) {
  return QRectF(rect.minX(), rect.minY(), rect.width(), rect.height()).toAlignedRect();
}

void dressLabel(const Label& label, QLabel& widget) {
  widget.setText(QString::fromStdString(label.stringValue()));
  widget.setFont(qtFont(label.font()));
  widget.setWordWrap(label.lineBreakMode() == LineBreakMode::wordWrapping);
  widget.setAlignment(
      Qt::AlignVCenter |
      (label.alignment() == TextAlignment::center ? Qt::AlignHCenter : Qt::AlignLeft));
  QPalette palette = widget.parentWidget()->palette();
  palette.setColor(QPalette::WindowText, resolved(label.textColor(), palette));
  widget.setPalette(palette);
}

void dressButton(const Button& button, QPushButton& widget) {
  widget.setText(withoutMnemonics(button.title()));
  widget.setFont(qtFont({}));
  widget.setDefault(button.keyEquivalent() == "\r");
}

QSize sizeUnderTable(const View& view, const QWidget& widget, int width) {
  if (const auto* button = dynamic_cast<const Button*>(&view)) {
    const Size size = button->intrinsicContentSize();
    return QSizeF(size.width, size.height).toSize();
  }
  return {width, widget.heightForWidth(width)};
}

std::shared_ptr<Label> makeNotice(const std::string& text) {
  auto notice = std::make_shared<Label>(text);
  notice->setFont({.pointSize = noticePointSize});
  notice->setLineBreakMode(LineBreakMode::wordWrapping);
  return notice;
}

}  // namespace

WidgetTree::WidgetTree(QWidget& parent, const std::string& notice,
                       std::shared_ptr<PickEntry> pickEntry)
    : parent_(parent), pickEntry_(std::move(pickEntry)), pickStatus_(makeNotice("")) {
  if (pickEntry_) {
    viewsUnderTable_ = {std::make_shared<Button>(PickEntry::title, pickEntry_->action()),
                        pickStatus_};
  }
  if (!notice.empty()) viewsUnderTable_.push_back(makeNotice(notice));
}

void WidgetTree::rebuild(const View& contentView) {
  clear();
  realiseAll(contentView);
  dress();
  place();
  reloadRows();
}

void WidgetTree::dress() {
  for (const Realised& each : realised_) dress(each);
  if (pickEntry_) updatePickEntry();
  for (const Realised& each : underTable_) dress(each);
}

void WidgetTree::dress(const Realised& realised) {
  const auto& [view, widget] = realised;
  widget->setToolTip(withoutMarkup(view->toolTip()));
  if (const auto* label = dynamic_cast<const Label*>(view.get())) {
    dressLabel(*label, static_cast<QLabel&>(*widget));
  } else if (const auto* button = dynamic_cast<const Button*>(view.get())) {
    dressButton(*button, static_cast<QPushButton&>(*widget));
  }
}

void WidgetTree::updatePickEntry() {
  const std::string status = pickEntry_->status();
  pickStatus_->setStringValue(status);
  pickStatus_->setHidden(status.empty());
  if (underTable_.empty()) return;
  QWidget& button = *underTable_.front().widget;
  button.setEnabled(pickEntry_->isEnabled());
  button.setAccessibleDescription(QString::fromStdString(status));
}

void WidgetTree::place() {
  for (const auto& [view, widget] : realised_) {
    const QRect area = wholePoints(view->frameInWindowFromTop());
    const bool isFirstTable = !tables_.empty() && widget == tables_.front();
    widget->setGeometry(isFirstTable ? placeUnderTable(area) : area);
    widget->setVisible(!view->isHiddenOrHasHiddenAncestor());
  }
}

QRect WidgetTree::placeUnderTable(QRect area) {
  for (auto each = underTable_.rbegin(); each != underTable_.rend(); ++each) {
    const auto& [view, widget] = *each;
    widget->setVisible(!view->isHidden());
    if (view->isHidden()) continue;
    const QSize size = sizeUnderTable(*view, *widget, area.width());
    widget->setGeometry({area.bottomLeft() - QPoint(0, size.height() - 1), size});
    area.adjust(0, 0, 0, -size.height() - gapUnderTable);
  }
  return area;
}

void WidgetTree::reloadRows() {
  for (RowsView* table : tables_) table->reload();
}

void WidgetTree::focusTable() {
  if (!tables_.empty()) tables_.front()->setFocus(Qt::OtherFocusReason);
}

void WidgetTree::clear() {
  for (RowsView* table : tables_) table->abandon();
  tables_.clear();
  for (std::vector<Realised>* all : {&realised_, &underTable_}) {
    for (const auto& [view, widget] : *all) {
      widget->hide();
      widget->deleteLater();  // its own click may be what changes the tree
    }
    all->clear();
  }
}

void WidgetTree::realiseAll(const View& container) {
  for (const auto& view : container.subviews()) {
    if (QWidget* widget = realise(view)) {
      realised_.push_back({view, widget});
    } else {
      realiseAll(*view);
    }
  }
}

QWidget* WidgetTree::realise(const std::shared_ptr<View>& view) {
  if (std::dynamic_pointer_cast<Label>(view)) return realiseLabel();
  if (const auto button = std::dynamic_pointer_cast<Button>(view)) return realiseButton(button);
  const auto scrollView = std::dynamic_pointer_cast<ScrollView>(view);
  return scrollView && scrollView->documentView() ? realiseTable(*scrollView) : nullptr;
}

QLabel* WidgetTree::realiseLabel() {
  auto* widget = new QLabel(&parent_);
  widget->setTextFormat(Qt::PlainText);
  return widget;
}

QWidget* WidgetTree::realiseTable(const ScrollView& scrollView) {
  auto* table = new RowsView(*scrollView.documentView(), &parent_);
  if (scrollView.borderType() == BorderType::none) table->setFrameShape(QFrame::NoFrame);
  if (!scrollView.hasVerticalScroller()) table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  if (tables_.empty()) realiseUnderTable();
  tables_.push_back(table);
  return table;
}

void WidgetTree::realiseUnderTable() {
  for (const auto& view : viewsUnderTable_) {
    QWidget* const widget = realise(view);
    underTable_.push_back({view, widget});
    // They may tell a command, which nobody likes to type.
    if (auto* label = qobject_cast<QLabel*>(widget)) {
      label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
  }
}

QWidget* WidgetTree::realiseButton(const std::shared_ptr<Button>& button) {
  auto* widget = new QPushButton(&parent_);
  widget->setFlat(!button->isBordered());
  QObject::connect(widget, &QPushButton::clicked, widget, [weak = std::weak_ptr<Button>(button)] {
    if (const auto pressed = weak.lock()) pressed->performClick();
  });
  return widget;
}

}  // namespace vistrel::platform::linux_desktop
