#include "platform/linux/qt/widgets/WidgetTree.h"

#include <QLabel>
#include <QPushButton>
#include <cmath>

#include "platform/linux/qt/paint/Colors.h"
#include "platform/linux/qt/paint/Fonts.h"
#include "platform/linux/qt/paint/PlainText.h"
#include "platform/linux/qt/widgets/RowsView.h"

namespace vistrel::platform::linux_desktop {

namespace {

constexpr double noticePointSize = 11;
constexpr int aboveNotice = 6;

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

}  // namespace

WidgetTree::WidgetTree(QWidget& parent, const std::string& notice)
    : parent_(parent), notice_(notice) {
  notice_.setFont({.pointSize = noticePointSize});
  notice_.setLineBreakMode(LineBreakMode::wordWrapping);
}

void WidgetTree::rebuild(const View& contentView) {
  clear();
  realiseAll(contentView);
  dress();
  place();
  reloadRows();
}

void WidgetTree::dress() {
  for (const auto& [view, widget] : realised_) {
    widget->setToolTip(withoutMarkup(view->toolTip()));
    if (const auto* label = dynamic_cast<const Label*>(view.get())) {
      dressLabel(*label, static_cast<QLabel&>(*widget));
    } else if (const auto* button = dynamic_cast<const Button*>(view.get())) {
      dressButton(*button, static_cast<QPushButton&>(*widget));
    }
  }
  if (noticeWidget_ != nullptr) dressLabel(notice_, *noticeWidget_);
}

void WidgetTree::place() {
  for (const auto& [view, widget] : realised_) {
    QRect area = wholePoints(view->frameInWindowFromTop());
    if (noticeWidget_ != nullptr && widget == tables_.front()) area = placeNotice(area);
    widget->setGeometry(area);
    widget->setVisible(!view->isHiddenOrHasHiddenAncestor());
  }
}

QRect WidgetTree::placeNotice(const QRect& area) {
  const int height = noticeWidget_->heightForWidth(area.width());
  noticeWidget_->setGeometry(area.adjusted(0, area.height() - height, 0, 0));
  noticeWidget_->show();
  return area.adjusted(0, 0, 0, -height - aboveNotice);
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
  for (const auto& [view, widget] : realised_) {
    widget->hide();
    widget->deleteLater();  // its own click may be what changes the tree
  }
  realised_.clear();
  if (noticeWidget_ == nullptr) return;
  noticeWidget_->hide();
  noticeWidget_->deleteLater();
  noticeWidget_ = nullptr;
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
  if (tables_.empty() && !notice_.stringValue().empty()) {
    noticeWidget_ = realiseLabel();
    // It may tell a command, which nobody likes to type.
    noticeWidget_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  }
  tables_.push_back(table);
  return table;
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
