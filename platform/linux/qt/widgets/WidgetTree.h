#pragma once

#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "platform/Controls.h"

class QLabel;

namespace vistrel::platform::linux_desktop {

class RowsView;

/// The widgets that stand for a tree of views: labels, buttons and tables; views that only hold
/// others have none. Widgets are children of one parent, placed by their views' frames; a notice
/// stands under the first table and takes its room from that.
class WidgetTree {
 public:
  /// An empty notice is none.
  WidgetTree(QWidget& parent, const std::string& notice);
  WidgetTree(const WidgetTree&) = delete;
  WidgetTree& operator=(const WidgetTree&) = delete;
  ~WidgetTree() { clear(); }

  QWidget& parent() const { return parent_; }
  /// Makes all widgets anew, for another tree or one with other views.
  void rebuild(const View& contentView);
  /// Texts, fonts, colours, tooltips.
  void dress();
  /// Frames and what is hidden.
  void place();
  void reloadRows();
  /// Gives the keyboard to the first table, if there is one.
  void focusTable();

 private:
  /// A widget and its view, which goes only after the widget: a tree that changes says so.
  struct Realised {
    std::shared_ptr<View> view;
    QWidget* widget;
  };

  void clear();
  void realiseAll(const View& container);
  QWidget* realise(const std::shared_ptr<View>& view);
  QLabel* realiseLabel();
  QWidget* realiseButton(const std::shared_ptr<Button>& button);
  QWidget* realiseTable(const ScrollView& scrollView);
  /// What is left of the table's area.
  QRect placeNotice(const QRect& area);

  QWidget& parent_;
  Label notice_;
  QLabel* noticeWidget_ = nullptr;  // none without a table, or without a notice
  std::vector<Realised> realised_;
  std::vector<RowsView*> tables_;
};

}  // namespace vistrel::platform::linux_desktop
